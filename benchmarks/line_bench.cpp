// How fast a line comes off the socket: BaseCom's operator>>, which takes no byte behind the line feed,
// beside plain buffered reads, which do.
#include "Source/vntClientCom/BaseCom.h"
#include "benchmarks/answer_document.h"
#include "benchmarks/loopback.h"
#include "benchmarks/support.h"

#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstring>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>

namespace {

constexpr std::size_t kPlainBytes = 64 * 1024;
constexpr char kBehind[] = "behind the line feed";

class Link : public BaseCom {
public:
    explicit Link(unsigned int port) : connected_(connect_server(port, bench::kLoopback) == 1) {}
    ~Link() override
    {
        if (connected_)
            close_socket(data_socket);
        data_socket = listen_socket = -1; // what the base closes again
    }

    bool connected() const { return connected_; }
    int socket() const { return data_socket; }

private:
    bool connected_;
};

// Reads on until a line feed has come, and takes whatever comes with it.
void read_plainly(Link& link, std::stringstream& into)
{
    static char buffer[kPlainBytes];
    for (;;) {
        const ssize_t got = recv(link.socket(), buffer, sizeof buffer, 0);
        if (got <= 0)
            return;
        const auto size = static_cast<std::size_t>(got);
        const auto* const line_feed = static_cast<const char*>(std::memchr(buffer, '\n', size));
        into.write(buffer, line_feed != nullptr ? line_feed - buffer : got);
        if (line_feed != nullptr)
            return;
    }
}

void read_line(Link& link, std::stringstream& into) { link >> into; }

using Reader = std::function<void(Link&, std::stringstream&)>;

// One iteration is one connection and one line. keeps_rest: what lies behind the line feed has to be there
// still.
void measure(benchmark::State& state, unsigned int port, const std::string& line, const Reader& reader,
             bool keeps_rest)
{
    for (auto _ : state) {
        Link link(port);
        if (!link.connected())
            return state.SkipWithError("no connection");
        std::stringstream into;
        const auto begin = std::chrono::steady_clock::now();
        link << std::string();
        reader(link, into);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(taken.count());
        if (into.str() != line)
            return state.SkipWithError("the line did not arrive as it was sent");
        const std::string rest = bench::received_until_close(link.socket());
        if (keeps_rest && rest != kBehind)
            return state.SkipWithError("bytes behind the line feed were taken from the socket");
    }
}

struct Size {
    std::size_t megabytes;
    int repetitions;
};

Size size_of(bench::Effort effort)
{
    switch (effort) {
    case bench::Effort::smoke: return {1, 1};
    case bench::Effort::quick: return {10, 21};
    case bench::Effort::full: break;
    }
    return {50, 41};
}

void run(int argc, char** argv)
{
    const bench::Effort effort = bench::start(argc, argv, "Reads one long line over loopback TCP.");
    const auto [megabytes, repetitions] = size_of(effort);
    constexpr std::size_t kMegabyte = 1000 * 1000;
    std::string line = bench::answer_document(megabytes * 1000);
    line.resize(megabytes * kMegabyte, ' ');
    const bench::SendingPeer peer(line + '\n' + kBehind);

    const auto add = [&, times = repetitions](const char* name, const Reader& reader, bool keeps_rest) {
        benchmark::RegisterBenchmark(name, measure, peer.port(), line, reader, keeps_rest)
            ->UseManualTime()
            ->Iterations(1)
            ->Repetitions(times)
            ->Unit(benchmark::kMillisecond);
    };
    add("line", read_line, true);
    add("plain", read_plainly, false);
    const bench::Medians seconds = bench::run_registered();

    const double size = static_cast<double>(megabytes);
    const auto speed = [&](const char* name) { return size / seconds.of(name); };
    bench::Table table({"reader", "MB/s", "against plain reads"});
    table.add({"`BaseCom::operator>>`", bench::fixed(speed("line"), 0),
               bench::at_least(speed("line") / speed("plain"), 0.9)});
    table.add({"plain 64 KB reads into a string stream", bench::fixed(speed("plain"), 0), "1"});
    std::cout << "## A line off the socket\n\n"
              << "One line of " << megabytes
              << " MB over loopback TCP, sent by another process, into a fresh string stream; medians.\n"
              << "`operator>>` takes nothing behind the line feed: each reading is followed by a look at "
                 "what the socket still holds,\n"
              << "which has to be every byte that was sent behind it. The plain reads take what they get.\n\n"
              << table.text();
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
