// Figures from their bytes, as exchange type 1 reads them.
#include "fuzz/figure_model.h"
#include "fuzz/fuzz.h"

#include <cstring>
#include <sstream>
#include <string>

namespace {

// After one word comes short, nothing more is read.
struct ByteSource {
    static constexpr bool kFlagFirst = true;

    const std::uint8_t* next;
    std::size_t left;

    template <class Word>
    Word word(Word if_none)
    {
        if (left < sizeof if_none) {
            left = 0;
            return if_none;
        }
        std::memcpy(&if_none, next, sizeof if_none);
        next += sizeof if_none;
        left -= sizeof if_none;
        return if_none;
    }
    std::uint32_t count() { return word(std::uint32_t{0}); }
    std::int32_t tag() { return word(std::int32_t{-1}); }
    bool flag() { return word(std::uint32_t{0}) != 0; }
    double number(double if_none) { return word(if_none); }
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Words expected;
    try {
        expected = fuzz::FigureModel(ByteSource{data, size}).read();
    } catch (const fuzz::TooMany&) {
        return 0;
    }
    std::istringstream stream(fuzz::text_of(data, size));
    vnt::FigPrimInfo figure;
    figure.deserialize(stream);
    fuzz::require(fuzz::Flattened(figure).words == expected, "the figure of some bytes");
    fuzz::require_copies_and_forms(figure);
    return 0;
}
