// Numbers against a stream in the classic locale.
#include "Source/vntClientCom/number_text.h"
#include "fuzz/fuzz.h"

#include <cstring>
#include <locale>
#include <sstream>
#include <string>

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = fuzz::text_of(data, size);
    std::istringstream stream(text);
    stream.imbue(std::locale::classic());
    double expected = 0.0;
    stream >> expected; // 0 where there is no number, the largest where it is too large
    const double found = vnt::number_of_text(text);
    fuzz::require(std::memcmp(&expected, &found, sizeof found) == 0, "a number is what a stream takes",
                  std::to_string(expected), std::to_string(found));
    return 0;
}
