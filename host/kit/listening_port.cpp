#include "host/kit/listening_port.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace vnt::host {
namespace {

constexpr std::size_t kWordDigits = 8;
constexpr std::uint32_t kListenState = 0x0A;
constexpr std::uint32_t kMappedPrefix = 0xFFFF; // third word of an IPv4 address within IPv6

// Takes what comes before the separator from the front of text, and the separator.
std::string_view take_until(std::string_view& text, char separator)
{
    const std::string_view taken = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(text.size(), taken.size() + 1));
    return taken;
}

std::string_view take_field(std::string_view& line)
{
    line.remove_prefix(std::min(line.size(), line.find_first_not_of(' ')));
    return take_until(line, ' ');
}

std::optional<std::uint32_t> hexadecimal(std::string_view digits)
{
    std::uint32_t number = 0;
    const char* const end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, number, 16);
    return read.ec == std::errc() && read.ptr == end ? std::optional(number) : std::nullopt;
}

// Whether a socket that is bound to the address takes connections to 127.0.0.1; none: it is no address.
std::optional<bool> takes_loopback(std::string_view address)
{
    std::array<std::uint32_t, 4> words{}; // of an IPv4 address only the last
    if (address.size() != kWordDigits && address.size() != words.size() * kWordDigits)
        return std::nullopt;
    const bool is_ipv4 = address.size() == kWordDigits;
    for (std::size_t i = is_ipv4 ? words.size() - 1 : 0; i < words.size(); ++i) {
        const std::optional<std::uint32_t> word = hexadecimal(address.substr(0, kWordDigits));
        if (!word)
            return std::nullopt;
        words[i] = ntohl(*word);
        address.remove_prefix(kWordDigits);
    }
    if (words[0] != 0 || words[1] != 0)
        return false;
    if (words[3] == INADDR_ANY)
        return words[2] == 0 || words[2] == kMappedPrefix;
    return words[3] == INADDR_LOOPBACK && words[2] == (is_ipv4 ? 0 : kMappedPrefix);
}

// A row is "0: ADDRESS:PORT ADDRESS:PORT STATE ...".
Listening listening_in_row(std::string_view row, std::uint16_t port)
{
    take_field(row);
    std::string_view local = take_field(row);
    take_field(row);
    const std::optional<std::uint32_t> state = hexadecimal(take_field(row));
    const std::optional<bool> takes = takes_loopback(take_until(local, ':'));
    const std::optional<std::uint32_t> local_port = hexadecimal(local);
    if (!state || !takes || !local_port)
        return Listening::unknown;
    return *state == kListenState && *takes && *local_port == port ? Listening::yes : Listening::no;
}

// A certain yes outweighs all else, and what is not known outweighs a no.
Listening either(Listening one, Listening other)
{
    if (one == Listening::yes || other == Listening::yes)
        return Listening::yes;
    return one == Listening::unknown ? one : other;
}

// An error's number, or 0 with the file's text.
int read_table(const char* file, std::string& text)
{
    const int table = open(file, O_RDONLY | O_CLOEXEC);
    if (table < 0)
        return errno;
    // The kernel walks its table anew for each read, so few reads miss less of what changes meanwhile.
    constexpr std::size_t kChunk = std::size_t{256} * 1024;
    const std::unique_ptr<char[]> chunk(new char[kChunk]);
    ssize_t got = 0;
    do {
        got = read(table, chunk.get(), kChunk);
        if (got > 0)
            text.append(chunk.get(), static_cast<std::size_t>(got));
    } while (got > 0 || (got < 0 && errno == EINTR));
    const int error = got < 0 ? errno : 0;
    close(table);
    return error;
}

Listening listening_in_file(const char* file, std::uint16_t port)
{
    std::string text;
    return read_table(file, text) == 0 ? listening_in_table(text, port) : Listening::unknown;
}

} // namespace

Listening listening_in_table(std::string_view table, std::uint16_t port)
{
    if (take_until(table, '\n').find("local_address") == std::string_view::npos)
        return Listening::unknown;
    Listening listening = Listening::no;
    while (!table.empty())
        listening = either(listening, listening_in_row(take_until(table, '\n'), port));
    return listening;
}

Listening listening_on(std::uint16_t port)
{
    const Listening listening = listening_in_file("/proc/net/tcp", port);
    constexpr const char* kTable6 = "/proc/net/tcp6";
    const bool has_ipv6 = access(kTable6, F_OK) == 0 || errno != ENOENT;
    return has_ipv6 ? either(listening, listening_in_file(kTable6, port)) : listening;
}

} // namespace vnt::host
