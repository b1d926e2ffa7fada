// What the benchmark programs share: their options, the tables they print, and Google Benchmark's medians.
//
// Shapes: a program prints one section of docs/performance.md to standard output, in Markdown, and how it
//         gets on to standard error.
// Errors: std::runtime_error, out of which run_program makes exit status 1. Wrong usage is 2.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace bench {

enum class Effort {
    smoke, // whether it runs at all: the smallest sizes, once
    quick, // a look
    full,  // figures to keep
};

// The median of values that are not empty.
double median(std::vector<double> values);

// "12.3" of 12.34 with one decimal.
std::string fixed(double value, int decimals);

// A figure beside the one that it has to reach: "**2.04** (target: at least 1.5)", with "MISSED" where it
// does not.
std::string at_least(double value, double target);
std::string at_most(double value, double target);

// A Markdown table. The first column stands left, figures stand right.
class Table {
public:
    explicit Table(std::vector<std::string> header);
    void add(std::vector<std::string> row);
    std::string text() const;

private:
    std::vector<std::vector<std::string>> rows_;
};

// The seconds of one iteration, by the registered name: medians of the repetitions.
class Medians {
public:
    void add(const std::string& name, std::vector<double> seconds);

    // Throws std::runtime_error when nothing of that name ran, as when a filter left it out.
    double of(const std::string& name) const;

private:
    std::map<std::string, double> seconds_;
};

// Takes the program's own options and Google Benchmark's, which may override ours. Ends the program on --help
// and on wrong usage; about says what the program measures.
Effort start(int argc, char** argv, std::string_view about);

// Runs all that is registered, repetitions interleaved. Throws std::runtime_error when one of them fails.
Medians run_registered();

// What main returns: 0, or 1 with the reason on standard error when the program throws.
int run_program(int argc, char** argv, void (*program)(int argc, char** argv));

} // namespace bench
