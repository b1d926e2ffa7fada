// The reader of journals. The input: a journal's text, or lines behind its head.
#include "fuzz/fuzz.h"
#include "sketch/core/journal_text.h"

#include <string>

using vnt::sketch::JournalReading;

namespace {

// The sketch as the shortest journal that makes it.
std::string written(const JournalReading& reading)
{
    std::string text = vnt::sketch::journal_head() + vnt::sketch::journal_sheet(reading.sheet);
    std::size_t index = 0;
    for (const vnt::sketch::StrokePtr& stroke : reading.document.strokes())
        text += vnt::sketch::journal_insert(index++, *stroke);
    return text;
}

void check(const std::string& text)
{
    const JournalReading reading = vnt::sketch::read_journal(text);
    fuzz::require(reading.known || reading.document.strokes().empty(),
                  "nothing is read of what is not known");
    fuzz::require(!reading.whole || text.empty() || text.back() == '\n', "what is whole ends its last line");
    const std::string once = written(reading);
    const JournalReading again = vnt::sketch::read_journal(once);
    fuzz::require(again.known && again.whole, "what was read can be written and read", "", once);
    fuzz::require(again.document.strokes().size() == reading.document.strokes().size(),
                  "every stroke is there");
    fuzz::require(written(again) == once, "the same sketch as before", once, written(again));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = fuzz::text_of(data, size);
    check(text);
    check(vnt::sketch::journal_head() + text);
    return 0;
}
