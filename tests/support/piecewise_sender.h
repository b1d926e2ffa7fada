// Sends bytes in pieces that the reader sees as pieces: each goes when the one before has been taken.
#pragma once

#include "tests/support/descriptors.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <string>
#include <thread>

namespace support {

constexpr std::size_t kAllAtOnce = 0;

class PiecewiseSender {
public:
    // Sends bytes from sender to reader, the other end of the same stream, first of them in one piece and
    // then piece_size at a time.
    PiecewiseSender(int sender, int reader, std::string bytes, std::size_t piece_size, std::size_t first = 0)
        : thread_([=, this, bytes = std::move(bytes)] { run(sender, reader, bytes, piece_size, first); })
    {
    }

    PiecewiseSender(const PiecewiseSender&) = delete;
    PiecewiseSender& operator=(const PiecewiseSender&) = delete;
    ~PiecewiseSender() { finish(); }

    // To be called when the reader takes no more: what is left is then sent as it comes.
    void finish()
    {
        reading_ = false;
        if (thread_.joinable())
            thread_.join();
    }

private:
    void run(int sender, int reader, const std::string& bytes, std::size_t piece_size, std::size_t first)
    {
        for (std::size_t sent = 0; sent < bytes.size();) {
            const std::size_t wanted = sent < first ? first - sent : piece_size;
            const std::size_t size = wanted == kAllAtOnce ? bytes.size() - sent : wanted;
            const std::string piece = bytes.substr(sent, size);
            send_all(sender, piece);
            sent += piece.size();
            while (reading_ && bytes_waiting(reader) > 0)
                std::this_thread::yield();
        }
    }

    std::atomic<bool> reading_ = true;
    std::thread thread_;
};

} // namespace support
