// The parser by runs against the parser by characters. The input: a number of cuts, that many piece sizes, and the
// document, which is cut into pieces of these sizes over and over.
#include "fuzz/fuzz.h"
#include "tests/markup/parser_probe.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

using markup_test::OwnedParser;
using markup_test::whole_text;

namespace {

constexpr std::size_t kMostCuts = 8;

void feed_pieces(parser& p, const std::string& document, const std::vector<std::size_t>& sizes)
{
    std::size_t begin = 0;
    for (std::size_t i = 0; begin < document.size(); ++i) {
        const std::size_t wanted = sizes.empty() ? document.size() : sizes[i % sizes.size()];
        const std::size_t end = std::min(begin + wanted, document.size());
        // A copy without a byte behind it, so that the address sanitizer sees a read past its end.
        const std::vector<char> piece(document.data() + begin, document.data() + end);
        const int result = p.feed(piece.data(), piece.size());
        fuzz::require(result == (p.checkerror() ? -1 : 0), "what feed returns");
        begin = end;
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const std::size_t cuts = std::min<std::size_t>(data[0] % (kMostCuts + 1), size - 1);
    std::vector<std::size_t> sizes;
    for (std::size_t i = 1; i <= cuts; ++i)
        sizes.push_back(std::max<std::size_t>(data[i], 1));
    const std::string document = fuzz::text_of(data + 1 + cuts, size - 1 - cuts);

    OwnedParser by_characters;
    OwnedParser by_pieces;
    for (const char c : document) {
        const int result = by_characters.p.step(static_cast<signed char>(c));
        fuzz::require(result == 0 || by_characters.p.checkerror(), "a step fails without an error");
    }
    feed_pieces(by_pieces.p, document, sizes);
    fuzz::require(whole_text(by_characters.p) == whole_text(by_pieces.p), "feed does what step does",
                  whole_text(by_characters.p), whole_text(by_pieces.p));

    if (const tagrec* const root = by_pieces.p.root; root != nullptr) {
        std::vector<tagrec*> found;
        const int shapes = root->find(found, "shape");
        const int absolute = root->path(found, "/shape");
        root->path(found, document.substr(0, 40));
        fuzz::require(absolute == 0 && found.size() >= static_cast<std::size_t>(shapes),
                      "what queries return");
        root->dump();
    }
    return 0;
}
