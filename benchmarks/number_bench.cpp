// How fast text becomes a double: number_of_text beside the ways of the library that it stands for.
#include "Source/vntClientCom/number_text.h"
#include "benchmarks/answer_document.h"
#include "benchmarks/support.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

namespace {

using Texts = std::vector<std::string>;

struct Numbers {
    const char* name;
    Texts texts;
};

double by_stream(const std::string& text)
{
    std::istringstream stream(text);
    double value = 0.0;
    stream >> value;
    return value;
}

double by_strtod(const std::string& text) { return std::strtod(text.c_str(), nullptr); }

double by_from_chars(const std::string& text)
{
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

struct Way {
    const char* name;
    double (*convert)(const std::string&);
};

constexpr Way kWays[] = {
    {"number_of_text",     vnt::number_of_text},
    {"std::istringstream", by_stream          },
    {"strtod",             by_strtod          },
    {"std::from_chars",    by_from_chars      },
};

// The values of an answer's attributes, in its order.
Texts attribute_values(std::size_t count)
{
    const std::string document = bench::answer_document(count / 16 + 1);
    Texts values;
    for (std::size_t at = document.find("<shape"); values.size() < count;) {
        const std::size_t open = document.find('"', at) + 1;
        const std::size_t close = document.find('"', open);
        values.push_back(document.substr(open, close - open));
        at = close + 1;
    }
    return values;
}

// Whatever a double can be, in the 17 digits that tell it from its neighbours: "-1.2345678901234567e-89".
Texts seventeen_digits(std::size_t count)
{
    std::mt19937_64 random(bench::kAnswerSeed);
    Texts texts;
    while (texts.size() < count) {
        const auto digits = static_cast<double>(random() >> 11);
        const int exponent = static_cast<int>(random() % 1000) - 500;
        char text[40];
        std::snprintf(text, sizeof text, "%.16e", std::ldexp(random() % 2 == 0 ? digits : -digits, exponent));
        texts.emplace_back(text);
    }
    return texts;
}

std::vector<Numbers> corpora(std::size_t count)
{
    Texts whole_answer = attribute_values(2 * count);
    Texts sixteen_digits;
    std::copy_if(whole_answer.begin(), whole_answer.end(), std::back_inserter(sixteen_digits),
                 [](const std::string& text) { return text.size() > 16; });
    sixteen_digits.resize(std::min(sixteen_digits.size(), count));
    whole_answer.resize(count);
    return {
        {"16 digits",                 sixteen_digits         },
        {"all numbers of an answer",  whole_answer           },
        {"17 digits and an exponent", seventeen_digits(count)},
    };
}

void convert_all(benchmark::State& state, const Texts& texts, double (*convert)(const std::string&))
{
    for (const std::string& text : texts) {
        if (convert(text) != by_strtod(text))
            return state.SkipWithError(("wrong value of " + text).c_str());
    }
    for (auto _ : state) {
        for (const std::string& text : texts)
            benchmark::DoNotOptimize(convert(text));
    }
}

std::string registered_name(const Numbers& numbers, const Way& way)
{
    return std::string(numbers.name) + ", " + way.name;
}

void run(int argc, char** argv)
{
    const bench::Effort effort = bench::start(argc, argv, "Converts the numbers of a document to doubles.");
    const std::size_t count = effort == bench::Effort::smoke ? 64 : 4096;
    const std::vector<Numbers> all = corpora(count);
    for (const Numbers& numbers : all) {
        for (const Way& way : kWays)
            benchmark::RegisterBenchmark(registered_name(numbers, way).c_str(), convert_all, numbers.texts,
                                         way.convert);
    }
    const bench::Medians seconds = bench::run_registered();

    std::cout << "## Numbers\n\n"
              << "Nanoseconds a number, medians; the speed of `number_of_text` (which `toDouble` is) against "
                 "a fresh\n"
              << "`std::istringstream` in the classic locale. Each way has to give the same doubles.\n\n";
    bench::Table table({"numbers", "`number_of_text`", "`std::istringstream`", "`strtod`",
                        "`std::from_chars`", "times the stream's speed"});
    for (const Numbers& numbers : all) {
        std::vector<std::string> row{numbers.name};
        const auto nanoseconds = [&](const Way& way) {
            return seconds.of(registered_name(numbers, way)) * 1e9 /
                   static_cast<double>(numbers.texts.size());
        };
        for (const Way& way : kWays)
            row.push_back(bench::fixed(nanoseconds(way), 1));
        row.push_back(bench::at_least(nanoseconds(kWays[1]) / nanoseconds(kWays[0]), 10.0));
        table.add(row);
    }
    std::cout << table.text();
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
