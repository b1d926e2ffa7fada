// Figures from their text form, as exchange type 0 reads them.
#include "fuzz/figure_model.h"
#include "fuzz/fuzz.h"

#include <sstream>
#include <string>

namespace {

struct TextSource {
    static constexpr bool kFlagFirst = false;

    std::istream* in;

    std::uint32_t count()
    {
        const std::int32_t value = integer(0);
        return value > 0 ? static_cast<std::uint32_t>(value) : 0;
    }
    std::int32_t tag() { return integer(-1); }
    bool flag()
    {
        bool value = false;
        *in >> value;
        return value;
    }
    double number(double if_none)
    {
        *in >> if_none;
        return if_none;
    }
    std::int32_t integer(std::int32_t if_none)
    {
        std::int32_t value = 0;
        return *in >> value ? value : if_none;
    }
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = fuzz::text_of(data, size);
    std::istringstream in(text);
    fuzz::Words expected;
    try {
        expected = fuzz::FigureModel(TextSource{&in}).read();
    } catch (const fuzz::TooMany&) {
        return 0;
    }
    std::istringstream stream(text);
    vnt::FigPrimInfo figure;
    stream >> figure;
    fuzz::require(fuzz::Flattened(figure).words == expected, "the figure of a text");
    fuzz::require(stream.fail() == in.fail(), "the state of its stream");
    fuzz::require_copies_and_forms(figure);
    return 0;
}
