// Points compared bit by bit: zeros by their sign as well, and any NaN equal to any other.
#pragma once

#include "Source/geometry/records.h"
#include "tests/support/describe.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <list>
#include <string>

namespace bits {

inline bool same(double a, double b)
{
    return (std::isnan(a) && std::isnan(b)) ||
           std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
}

inline bool same(const vnt::Point& a, const vnt::Point& b)
{
    return same(a.x, b.x) && same(a.y, b.y) && same(a.z, b.z);
}

inline bool same(const std::list<vnt::Point>& a, const std::list<vnt::Point>& b)
{
    if (a.size() != b.size())
        return false;
    for (auto i = a.begin(), j = b.begin(); i != a.end(); ++i, ++j) {
        if (!same(*i, *j))
            return false;
    }
    return true;
}

inline std::string text_of(const std::list<vnt::Point>& points)
{
    std::string text;
    for (const vnt::Point& point : points)
        text += (text.empty() ? "" : "  ") + support::describe(point);
    return text;
}

} // namespace bits
