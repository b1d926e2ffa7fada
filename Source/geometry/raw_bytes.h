// Numbers as they lie in memory, for the records' byte forms.
//
// Shapes: the bytes of one number or of one record without padding, in the host's byte order.
// Errors: stream state; a number that comes short keeps its old value whole.
#pragma once

#include <istream>
#include <ostream>
#include <type_traits>

namespace vnt {

template <class T>
std::ostream& write_raw(std::ostream& out, const T& value)
{
    static_assert(std::is_trivially_copyable_v<T>);
    return out.write(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class T>
std::istream& read_raw(std::istream& in, T& value)
{
    static_assert(std::is_arithmetic_v<T>);
    T whole{};
    if (in.read(reinterpret_cast<char*>(&whole), sizeof whole))
        value = whole;
    return in;
}

} // namespace vnt
