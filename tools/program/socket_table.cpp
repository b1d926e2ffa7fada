#include "tools/program/socket_table.h"

#include "tools/program/whole_file.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <optional>
#include <system_error>

namespace vnt::program {
namespace {

constexpr std::size_t kWordDigits = 8;
constexpr std::uint32_t kListenState = 0x0A;
constexpr std::uint32_t kMappedPrefix = 0xFFFF; // third word of an IPv4 address within IPv6

SocketEnd ipv4_end(std::uint32_t address, std::uint16_t port)
{
    return {
        {0, 0, kMappedPrefix, address},
        port
    };
}

bool is_ipv4(const SocketEnd& end)
{
    return end.address[0] == 0 && end.address[1] == 0 && end.address[2] == kMappedPrefix;
}

// ---------------------------------------------------------------------------------------------------- tables

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

template <class Number>
bool try_number(std::string_view digits, Number& number, int base)
{
    const char* const end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, number, base);
    return read.ec == std::errc() && read.ptr == end;
}

// ADDRESS:PORT
bool try_end(std::string_view field, SocketEnd& end)
{
    std::string_view address = take_until(field, ':');
    std::array<std::uint32_t, 4> words{};
    const std::size_t count = address.size() / kWordDigits;
    if (address.size() % kWordDigits != 0 || (count != 1 && count != words.size()))
        return false;
    for (std::size_t i = 0; i < count; ++i, address.remove_prefix(kWordDigits)) {
        if (!try_number(address.substr(0, kWordDigits), words[i], 16))
            return false;
        words[i] = ntohl(words[i]);
    }
    end = count == 1 ? ipv4_end(words[0], 0) : SocketEnd{words, 0};
    return try_number(field, end.port, 16);
}

// A row is "0: LOCAL REMOTE STATE QUEUES TIMER RETRIES USER TIMEOUT INODE ...".
bool try_row(std::string_view line, SocketRow& row)
{
    std::array<std::string_view, 10> fields;
    for (std::string_view& field : fields)
        field = take_field(line);
    std::uint32_t state = 0;
    const bool is_one = try_end(fields[1], row.local) && try_end(fields[2], row.remote) &&
                        try_number(fields[3], state, 16) && try_number(fields[7], row.user, 10) &&
                        try_number(fields[9], row.inode, 10);
    row.listens = state == kListenState;
    return is_one;
}

void add_file(const std::string& file, bool is_needed, SocketTable& table)
{
    std::string text;
    const std::error_code error = read_whole_file(file, text);
    if (error) {
        table.is_whole = table.is_whole && !is_needed && error == std::errc::no_such_file_or_directory;
        return;
    }
    SocketTable more = read_socket_table(text);
    table.rows.insert(table.rows.end(), more.rows.begin(), more.rows.end());
    table.is_whole = table.is_whole && more.is_whole;
}

// --------------------------------------------------------------------------------------------------- sockets

using NameCall = int (*)(int, sockaddr*, socklen_t*);

SocketEnd end_named(int socket, NameCall name)
{
    sockaddr_storage named{};
    socklen_t size = sizeof named;
    if (name(socket, reinterpret_cast<sockaddr*>(&named), &size) != 0)
        return {};
    if (named.ss_family == AF_INET) {
        const auto& is = reinterpret_cast<const sockaddr_in&>(named);
        return ipv4_end(ntohl(is.sin_addr.s_addr), ntohs(is.sin_port));
    }
    if (named.ss_family != AF_INET6)
        return {};
    const auto& is = reinterpret_cast<const sockaddr_in6&>(named);
    SocketEnd end{{}, ntohs(is.sin6_port)};
    std::memcpy(end.address.data(), &is.sin6_addr, sizeof end.address);
    std::transform(end.address.begin(), end.address.end(), end.address.begin(), ntohl);
    return end;
}

} // namespace

std::string text_of(const SocketEnd& end)
{
    std::array<std::uint32_t, 4> words = end.address;
    std::transform(words.begin(), words.end(), words.begin(), htonl);
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (is_ipv4(end))
        inet_ntop(AF_INET, &words[3], text.data(), text.size());
    else
        inet_ntop(AF_INET6, words.data(), text.data(), text.size());
    const std::string address = text.data();
    return (is_ipv4(end) ? address : "[" + address + "]") + ":" + std::to_string(end.port);
}

bool takes_loopback(const SocketEnd& end)
{
    if (is_ipv4(end))
        return end.address[3] == INADDR_LOOPBACK || end.address[3] == INADDR_ANY;
    return end.address == SocketEnd().address;
}

SocketEnd own_end(int socket) { return end_named(socket, getsockname); }

SocketEnd peer_end(int socket) { return end_named(socket, getpeername); }

SocketTable read_socket_table(std::string_view text)
{
    if (take_until(text, '\n').find("local_address") == std::string_view::npos)
        return {{}, false};
    SocketTable table;
    while (!text.empty()) {
        SocketRow row;
        if (try_row(take_until(text, '\n'), row))
            table.rows.push_back(row);
        else
            table.is_whole = false;
    }
    return table;
}

SocketTable system_sockets(const std::string& proc)
{
    SocketTable table;
    add_file(proc + "/net/tcp", true, table);
    add_file(proc + "/net/tcp6", false, table);
    return table;
}

} // namespace vnt::program
