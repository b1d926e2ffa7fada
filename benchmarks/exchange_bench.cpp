// How fast an answer becomes a figure, from the socket on, and how much memory that takes.
#include "Source/vntClientCom/vntClientCom.h"
#include "benchmarks/answer_document.h"
#include "benchmarks/cold_process.h"
#include "benchmarks/loopback.h"
#include "benchmarks/support.h"

#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

class Link : public vnt::ClientCom {
public:
    explicit Link(unsigned int port) : connected_(connect_server(port, bench::kLoopback) == 1)
    {
        com_type = vnt::COM_XML;
    }
    ~Link() override { data_socket = listen_socket = -1; } // what the base closes again

    bool connected() const { return connected_; }
    std::size_t strokes() const { return figure.strokes.size(); }

private:
    bool connected_;
};

// From the moment on when the peer is asked for its answer.
[[noreturn]] void sample_exchange(unsigned int port, std::size_t shapes)
{
    Link link(port);
    if (!link.connected())
        throw std::runtime_error("no connection to the sending process");
    int received = 0;
    const bench::Sample sample = bench::timed([&] {
        link << std::string();
        received = link.recieve_figure_primitive_info();
    });
    bench::end_sample(sample, received == 1 && link.strokes() == shapes);
}

std::vector<std::size_t> sizes(bench::Effort effort)
{
    switch (effort) {
    case bench::Effort::smoke: return {100};
    case bench::Effort::quick: return {100, 10000};
    case bench::Effort::full: break;
    }
    return {100, 10000, 100000};
}

void run(int argc, char** argv)
{
    const std::vector<std::string> sample = bench::sample_arguments(argc, argv);
    if (sample.size() == 2)
        sample_exchange(static_cast<unsigned int>(std::stoul(sample[0])), std::stoul(sample[1]));

    const bench::Effort effort = bench::start(argc, argv, "Receives whole answers over loopback TCP.");
    const int samples = effort == bench::Effort::full ? 11 : effort == bench::Effort::quick ? 3 : 1;
    bench::Table table({"answer", "MB", "ms", "MB/s", "peak memory, MB", "bytes a byte of answer"});
    for (const std::size_t shapes : sizes(effort)) {
        const std::string answer = bench::answer_document(shapes);
        const bench::SendingPeer peer(answer + '\n');
        std::cerr << shapes << " shapes: " << samples << " cold samples\n";
        std::vector<bench::Sample> taken;
        for (int i = 0; i < samples; ++i)
            taken.push_back(bench::cold_sample({std::to_string(peer.port()), std::to_string(shapes)}));
        const bench::Sample middle = bench::median(taken);
        const auto bytes = static_cast<double>(answer.size());
        table.add({bench::fixed(static_cast<double>(shapes), 0) + " shapes", bench::fixed(bytes / 1e6, 1),
                   bench::fixed(middle.seconds * 1e3, 2), bench::fixed(bytes / middle.seconds / 1e6, 0),
                   bench::fixed(middle.peak / 1e6, 1), bench::fixed(middle.peak / bytes, 2)});
    }
    std::cout << "## A whole answer\n\n"
              << "`recieve_figure_primitive_info` of a linked `vnt::ClientCom`: from asking another process "
                 "for its answer\n"
              << "over loopback TCP to the figure. Medians of " << samples
              << " samples, each in a process of its own; peak memory is the\n"
              << "process's (VmHWM), with the process itself and the answer.\n\n"
              << table.text();
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
