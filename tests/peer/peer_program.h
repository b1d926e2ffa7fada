// The real program as a child process, and a client of it that is a bare socket.
//
// Errors: whatever takes longer than kLimit throws std::runtime_error, which fails the test.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace peer_test {

constexpr std::chrono::seconds kLimit(30);

struct ProgramEnd {
    int status = 0;     // minus the signal's number when one ended it
    std::string output; // all of it
    std::string errors;
};

class Program {
public:
    enum class Output { piped, nobody_reads };

    explicit Program(std::vector<std::string> arguments, Output output = Output::piped);
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;
    ~Program(); // ends it where it still runs

    // The port that its first line names; throws when the line is another.
    unsigned int port();

    void send_signal(int number) const;

    // Waits for it.
    ProgramEnd end();

private:
    bool read_some(int timeout_ms);

    pid_t process_ = -1;
    int output_ = -1;
    int errors_ = -1;
    std::string output_text_;
    std::string errors_text_;
};

enum class StreamEnd { closed, reset };

struct Received {
    std::string bytes;
    StreamEnd end = StreamEnd::closed;
    std::size_t reads = 0; // that it took
};

class RawClient {
public:
    // Connects; address is the last of loopback's numbers, 127.0.0.address.
    explicit RawClient(unsigned int port, unsigned int address = 1);
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;
    ~RawClient() { close(); }

    bool is_connected() const { return socket_ >= 0; }

    // False when the connection has gone.
    bool send(std::string_view bytes) const;

    // Sends no more, and can still read.
    void finish_sending() const;

    Received read_to_end() const;

    // The next size bytes, or fewer when the stream ends before.
    std::string read(std::size_t size) const;

    void close();
    void reset();

private:
    int socket_ = -1;
};

} // namespace peer_test
