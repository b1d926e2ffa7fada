#include "benchmarks/support.h"

#include <algorithm>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace bench {
namespace {

// Shows what runs on standard error, and keeps the times.
class Collector : public benchmark::ConsoleReporter {
public:
    Collector() : ConsoleReporter(OO_Tabular)
    {
        SetOutputStream(&std::cerr);
        SetErrorStream(&std::cerr);
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            failed_ = failed_ || run.error_occurred;
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                seconds_[run.run_name.function_name].push_back(run.real_accumulated_time /
                                                               static_cast<double>(run.iterations));
        }
        ConsoleReporter::ReportRuns(runs);
    }

    bool failed() const { return failed_; }

    Medians medians() const
    {
        Medians medians;
        for (const auto& [name, seconds] : seconds_)
            medians.add(name, seconds);
        return medians;
    }

private:
    std::map<std::string, std::vector<double>> seconds_;
    bool failed_ = false;
};

void print_help(std::string_view program, std::string_view about)
{
    std::cout << "usage: " << program << " [--smoke | --quick] [--benchmark_...]\n\n"
              << about << "\n\n"
              << "  --smoke   the smallest sizes, once: whether it runs\n"
              << "  --quick   fewer sizes and repetitions: a look\n"
              << "  --help    this text\n\n"
              << "Options of Google Benchmark are taken too, such as --benchmark_repetitions=5.\n";
}

std::string judged(double value, double target, bool reached, const char* relation)
{
    return "**" + fixed(value, 2) + "** (target: " + relation + " " + fixed(target, 1) +
           (reached ? ")" : ", MISSED)");
}

} // namespace

void Medians::add(const std::string& name, std::vector<double> seconds)
{
    seconds_[name] = median(std::move(seconds));
}

double Medians::of(const std::string& name) const
{
    const auto found = seconds_.find(name);
    if (found == seconds_.end())
        throw std::runtime_error("there is no figure of '" + name + "'; has a filter left it out?");
    return found->second;
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

std::string fixed(double value, int decimals)
{
    std::ostringstream out;
    out << std::fixed << std::setprecision(decimals) << value;
    return out.str();
}

std::string at_least(double value, double target)
{
    return judged(value, target, value >= target, "at least");
}

std::string at_most(double value, double target) { return judged(value, target, value <= target, "at most"); }

Table::Table(std::vector<std::string> header)
{
    std::vector<std::string> rule(header.size(), "---:");
    rule.front() = "---";
    rows_.push_back(std::move(header));
    rows_.push_back(std::move(rule));
}

void Table::add(std::vector<std::string> row) { rows_.push_back(std::move(row)); }

std::string Table::text() const
{
    std::string out;
    for (const auto& row : rows_) {
        out += '|';
        for (const std::string& cell : row)
            out.append(" ").append(cell).append(" |");
        out += '\n';
    }
    return out;
}

Effort start(int argc, char** argv, std::string_view about)
{
    Effort effort = Effort::full;
    std::vector<std::string> theirs;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument == "--help") {
            print_help(argv[0], about);
            std::exit(0);
        }
        if (argument == "--smoke")
            effort = Effort::smoke;
        else if (argument == "--quick")
            effort = Effort::quick;
        else
            theirs.emplace_back(argument);
    }
    // Many short pieces, interleaved, so that a slow moment of the machine falls on every peer alike.
    std::vector<std::string> arguments{argv[0], "--benchmark_enable_random_interleaving=true"};
    switch (effort) {
    case Effort::smoke:
        arguments.insert(arguments.end(), {"--benchmark_repetitions=1", "--benchmark_min_time=0"});
        break;
    case Effort::quick:
        arguments.insert(arguments.end(), {"--benchmark_repetitions=5", "--benchmark_min_time=0.1"});
        break;
    case Effort::full:
        arguments.insert(arguments.end(), {"--benchmark_repetitions=21", "--benchmark_min_time=0.1"});
        break;
    }
    arguments.insert(arguments.end(), theirs.begin(), theirs.end());
    static std::vector<std::string> kept; // Google Benchmark goes on pointing at the program's name
    kept = std::move(arguments);
    std::vector<char*> pointers;
    for (std::string& argument : kept)
        pointers.push_back(argument.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data()))
        std::exit(2);
    return effort;
}

Medians run_registered()
{
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);
    benchmark::Shutdown();
    if (collector.failed())
        throw std::runtime_error("a benchmark failed");
    return collector.medians();
}

int run_program(int argc, char** argv, void (*program)(int argc, char** argv))
{
    try {
        program(argc, argv);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << argv[0] << ": " << error.what() << '\n';
        return 1;
    }
}

} // namespace bench
