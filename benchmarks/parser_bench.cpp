// How fast an answer becomes a tree, and how much memory that takes: parser beside other parsers.
#include "benchmarks/answer_document.h"
#include "benchmarks/cold_process.h"
#include "benchmarks/markup_peers.h"
#include "benchmarks/support.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using bench::MarkupPeer;
using bench::Sample;

struct Workload {
    std::string name;
    std::size_t shapes;
    bench::Lie lie;
    bool repeated; // also several times in one process
    bool judged;   // large enough for the memory that any process has to be no matter
};

struct Result {
    Sample cold;
    double repeated = 0.0; // seconds; 0 where it was not measured
};

struct Results {
    Workload workload;
    double bytes = 0.0;               // of the document
    std::map<std::string, Result> of; // by the peer's name
};

std::vector<Workload> workloads(bench::Effort effort)
{
    const Workload small{"100 shapes", 100, bench::Lie::in_space, true, false};
    const Workload middle{"10,000 shapes", 10000, bench::Lie::in_space, true, true};
    const Workload large{"100,000 shapes", 100000, bench::Lie::in_space, false, true};
    const Workload flat{"10,000 shapes in a plane", 10000, bench::Lie::flat, true, false};
    switch (effort) {
    case bench::Effort::smoke: return {small};
    case bench::Effort::quick: return {small, middle};
    case bench::Effort::full: break;
    }
    return {small, middle, large, flat};
}

// Figures of two machines compare only when their documents are the same.
void check_documents()
{
    constexpr std::uint64_t kKnown = 17520425237414226030U;
    std::uint64_t hash = 14695981039346656037U; // FNV-1a, 64 bits
    for (const bench::Lie lie : {bench::Lie::in_space, bench::Lie::flat}) {
        for (const char c : bench::answer_document(100, lie))
            hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    if (hash != kKnown)
        throw std::runtime_error("the documents are not the known ones but " + std::to_string(hash));
}

// One parse of a file in this process, or the median of several, freed in between.
[[noreturn]] void sample_parse(const std::string& name, const std::string& file, std::size_t shapes,
                               int parses)
{
    const std::vector<MarkupPeer> peers = bench::markup_peers();
    const auto peer =
        std::find_if(peers.begin(), peers.end(), [&](const MarkupPeer& p) { return p.name == name; });
    const std::string document = bench::file_content(file);
    std::vector<Sample> samples;
    if (parses > 1)
        bench::keep_freed_memory();
    bool well_done = true;
    for (int i = 0; i < parses; ++i) {
        std::shared_ptr<void> tree;
        samples.push_back(bench::timed([&] { tree = peer->parse(document); }));
        well_done = well_done && tree != nullptr && peer->shapes(tree.get()) == shapes;
    }
    bench::end_sample(bench::median(samples), well_done);
}

// Peers in turn, so that a slow moment of the machine falls on all of them.
Results measured(const Workload& workload, const std::vector<MarkupPeer>& peers, int samples, int parses)
{
    const std::string document = bench::answer_document(workload.shapes, workload.lie);
    const bench::TemporaryFile file(document);
    std::cerr << workload.name << ": " << samples << " samples of each parser\n";
    std::map<std::string, std::vector<Sample>> cold;
    std::map<std::string, std::vector<Sample>> repeated;
    const auto sample = [&](const MarkupPeer& peer, int times) {
        return bench::cold_sample(
            {peer.name, file.name(), std::to_string(workload.shapes), std::to_string(times)});
    };
    for (int i = 0; i < samples; ++i) {
        for (const MarkupPeer& peer : peers) {
            cold[peer.name].push_back(sample(peer, 1));
            if (workload.repeated)
                repeated[peer.name].push_back(sample(peer, parses));
        }
    }
    Results results{workload, static_cast<double>(document.size()), {}};
    for (const auto& [name, list] : cold)
        results.of[name].cold = bench::median(list);
    for (const auto& [name, list] : repeated)
        results.of[name].repeated = bench::median(list).seconds;
    return results;
}

double cold_seconds(const Result& result) { return result.cold.seconds; }

double repeated_seconds(const Result& result) { return result.repeated; }

// How many times as fast as expat, at its better; 0 when there is nothing to compare.
double times_expat(const std::vector<MarkupPeer>& peers, const Results& results, const char* name,
                   double (*seconds)(const Result&))
{
    const double own = seconds(results.of.at(name));
    double least = std::numeric_limits<double>::infinity();
    for (const MarkupPeer& peer : peers) {
        if (peer.is_expat)
            least = std::min(least, seconds(results.of.at(peer.name)));
    }
    return own > 0.0 && std::isfinite(least) ? least / own : 0.0;
}

std::string figure(double value) { return value > 0.0 ? bench::fixed(value, 2) : "-"; }

std::string summary_table(const std::vector<MarkupPeer>& peers, const std::vector<Results>& all)
{
    bench::Table table(
        {"document", "`feed`, cold", "`feed`, repeated", "`step`, cold", "peak memory of `feed`"});
    for (const Results& results : all) {
        const double cold = times_expat(peers, results, "feed", cold_seconds);
        const double peak = results.of.at("feed").cold.peak / results.bytes;
        table.add({results.workload.name, cold > 0.0 ? bench::at_least(cold, 1.5) : "-",
                   figure(times_expat(peers, results, "feed", repeated_seconds)),
                   figure(times_expat(peers, results, "step", cold_seconds)),
                   results.workload.judged ? bench::at_most(peak, 9.0) : figure(peak)});
    }
    return table.text();
}

std::string peer_table(const std::vector<MarkupPeer>& peers, const Results& results)
{
    bench::Table table({"parser", "cold, ms", "MB/s", "repeated, ms", "peak memory", "tree alone"});
    for (const MarkupPeer& peer : peers) {
        const auto& [cold, repeated] = results.of.at(peer.name);
        table.add({peer.text, figure(cold.seconds * 1e3), bench::fixed(results.bytes / cold.seconds / 1e6, 0),
                   figure(repeated * 1e3), figure(cold.peak / results.bytes),
                   figure((cold.peak - cold.before) / results.bytes)});
    }
    return table.text();
}

void explain(int samples, int parses)
{
    std::cout << "## Parsing\n\n"
                 "An answer to a tree: the speed of `parser` as a multiple of expat's, which fills a minimal "
                 "tree of the\n"
                 "same standard types (the faster of its two rows).\n\n"
                 "- Cold: each sample is a process of its own that reads the document into a string and then "
                 "makes one\n"
                 "  tree; parsers in turn, medians of "
              << samples
              << " samples.\n"
                 "- Repeated: "
              << parses
              << " times in one process, which keeps the memory of the tree before; freeing is not counted.\n"
                 "  Medians of its parses, and of as many such processes.\n"
                 "- Peak memory: the most that the cold process ever had (VmHWM), in bytes a byte of "
                 "document, with the\n"
                 "  document's own bytes (1 of them) and the few MB of any process, which a small document "
                 "does not\n"
                 "  outweigh. Tree alone: what came on top of what was there before the parse.\n"
                 "- In a plane: a flat drawing, whose numbers are often just `0` or `1` and take hardly less "
                 "memory in a\n"
                 "  tree than long ones.\n\n";
}

void run(int argc, char** argv)
{
    const std::vector<std::string> sample = bench::sample_arguments(argc, argv);
    if (sample.size() == 4)
        sample_parse(sample[0], sample[1], std::stoul(sample[2]), std::stoi(sample[3]));

    const bench::Effort effort = bench::start(argc, argv, "Makes trees of answer documents.");
    check_documents();
    const int samples = effort == bench::Effort::full ? 11 : effort == bench::Effort::quick ? 3 : 1;
    const std::vector<MarkupPeer> peers = bench::markup_peers();
    const int parses = effort == bench::Effort::smoke ? 2 : 9;
    std::vector<Results> all;
    for (const Workload& workload : workloads(effort))
        all.push_back(measured(workload, peers, samples, parses));
    explain(samples, parses);
    std::cout << summary_table(peers, all);
    for (const Results& results : all) {
        std::cout << "\n### " << results.workload.name << " (" << bench::fixed(results.bytes / 1e6, 1)
                  << " MB)\n\n"
                  << peer_table(peers, results);
    }
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
