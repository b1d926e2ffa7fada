// A transport whose stream a test holds the other end of.
#pragma once

#include "Source/vntClientCom/BaseCom.h"

#include "tests/support/descriptors.h"
#include "tests/support/interrupting_signal.h"
#include "tests/support/piecewise_sender.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace link_end {

// How long something that must not end is watched, and how long something that must end may take.
constexpr int kNeverMs = 400;
constexpr int kSoonMs = 20000;

// A row of a table, and how many of its bytes its peer sends at a time.
template <class Row>
struct InPieces {
    Row row;
    std::size_t piece_size;
};

// Every row in pieces of 1, 2, 3 and 5 bytes and all at once. Rows that is_long calls so come in as many times
// long_unit: they take too long otherwise.
template <class Row, std::size_t size, class IsLong>
std::vector<InPieces<Row>> in_pieces(const Row (&rows)[size], IsLong is_long, std::size_t long_unit)
{
    std::vector<InPieces<Row>> all;
    for (const Row& row : rows) {
        for (const std::size_t piece_size : {1u, 2u, 3u, 5u})
            all.push_back({row, is_long(row) ? piece_size * long_unit : piece_size});
        all.push_back({row, support::kAllAtOnce});
    }
    return all;
}

template <class Row>
std::string name_in_pieces(const testing::TestParamInfo<InPieces<Row>>& param)
{
    const auto& [row, piece_size] = param.param;
    return std::string(row.name) +
           (piece_size == support::kAllAtOnce ? "AllAtOnce" : "InPiecesOf" + std::to_string(piece_size));
}

struct TestLink : BaseCom {
    using BaseCom::data_socket;
    using BaseCom::listen_socket;

    TestLink() = default;
    explicit TestLink(int socket) { data_socket = socket; }
};

// A link on one end of a stream, with the other end in our hand.
class LinkOnPair : public testing::Test {
protected:
    support::ParkedInput parked;
    support::SocketPair pair;
    TestLink link{pair.link.release()};
    int peer = pair.peer.get();

    std::string line()
    {
        std::stringstream into;
        link >> into;
        return into.str();
    }
};

// Fills what the stream buffers, so that the next send has to wait; returns how many bytes that took.
inline std::size_t fill(int socket)
{
    const std::string bytes(4096, '.');
    std::size_t filled = 0;
    for (std::size_t size = bytes.size(); size > 0;) {
        const ssize_t sent = send(socket, bytes.data(), size, MSG_DONTWAIT | MSG_NOSIGNAL);
        if (sent > 0)
            filled += static_cast<std::size_t>(sent);
        else
            size /= 2;
    }
    return filled;
}

// More than a stream buffers.
constexpr std::size_t kMoreThanBuffered = std::size_t{8} << 20;

// All that comes of a write when a signal ends the send that has put more than the first bytes into the stream:
// the system then sends a part. What is written must be more than the stream buffers.
template <class Write>
std::string arrives_of_a_cut_send(int peer, int first, Write write)
{
    const support::InterruptingSignal signal;
    std::atomic<bool> written = false;
    std::thread writer([&] {
        write();
        written = true;
    });
    while (support::bytes_waiting(peer) <= first)
        std::this_thread::yield();
    support::InterruptingSignal::interrupt(writer, 1);
    std::string arrived;
    while (!written)
        arrived += support::receive_waiting(peer);
    writer.join();
    return arrived + support::receive_waiting(peer);
}

} // namespace link_end
