// How long vant-host takes to draw a recorded answer, file to file, beside a renderer that draws the same shapes.
#include "Source/vntClientCom/vntClientCom.h"
#include "benchmarks/answer_document.h"
#include "benchmarks/cold_process.h"
#include "benchmarks/support.h"
#include "benchmarks/svg_twin.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

extern char** environ;

namespace {

constexpr const char* kPicture =
    "400"; // pixels a side: so small that the renderer does little but read and draw

class Answer : public vnt::ClientCom {
public:
    explicit Answer(const std::string& line) : read_(read_answer(line)) {}
    ~Answer() override { data_socket = listen_socket = -1; } // nothing was opened

    const vnt::FigPrimInfo& content() const
    {
        if (!read_)
            throw std::runtime_error("the link refuses the generator's answer");
        return figure;
    }

private:
    bool read_;
};

// A program run to its end with its messages thrown away. before stays 0.
bench::Sample run_program(std::vector<std::string> words)
{
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const auto begin = std::chrono::steady_clock::now();
    pid_t process = -1;
    const int error = posix_spawn(&process, arguments[0], &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage{};
    if (error != 0 || wait4(process, &status, 0, &usage) != process || status != 0)
        throw std::runtime_error(words[0] + " failed");
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    return {taken.count(), 0, static_cast<double>(usage.ru_maxrss) * 1024};
}

struct Plan {
    std::vector<std::size_t> sizes;
    int samples;
};

Plan plan_of(bench::Effort effort)
{
    switch (effort) {
    case bench::Effort::smoke: return {{100}, 1};
    case bench::Effort::quick: return {{10000}, 3};
    case bench::Effort::full: break;
    }
    return {
        {1000, 10000, 100000},
        11
    };
}

void measure(std::size_t shapes, int samples, bench::Table& table)
{
    constexpr double kMostTimes = 1.2;
    constexpr double kMostMemory = 30;
    const std::string line = bench::answer_document(shapes);
    const bench::TemporaryFile answer(line + '\n');
    const bench::TemporaryFile twin(bench::svg_twin(Answer(line).content()));
    const bench::TemporaryFile drawing("");
    const bench::TemporaryFile picture("");
    std::vector<bench::Sample> drawn, rendered;
    for (int i = 0; i < samples; ++i) { // in turn, so that both see the same machine
        drawn.push_back(run_program({VNT_HOST_PROGRAM, "draw", answer.name(), "-o", drawing.name()}));
        rendered.push_back(run_program({VNT_RSVG_CONVERT, "--unlimited", "-w", kPicture, "-h", kPicture,
                                        twin.name(), "-o", picture.name()}));
    }
    const bench::Sample mine = bench::median(drawn);
    const bench::Sample theirs = bench::median(rendered);
    const auto bytes = static_cast<double>(line.size());
    const bool is_large = shapes >= 10000; // a small answer does not outweigh the bare process
    table.add(
        {bench::fixed(static_cast<double>(shapes), 0) + " shapes", bench::fixed(bytes / 1e6, 1),
         bench::fixed(mine.seconds * 1e3, 1), bench::fixed(theirs.seconds * 1e3, 1),
         bench::at_most(mine.seconds / theirs.seconds, kMostTimes), bench::fixed(mine.peak / 1e6, 1),
         is_large ? bench::at_most(mine.peak / bytes, kMostMemory) : bench::fixed(mine.peak / bytes, 2)});
}

void run(int argc, char** argv)
{
    const bench::Effort effort = bench::start(argc, argv, "Draws recorded answers with vant-host.");
    const Plan plan = plan_of(effort);
    bench::Table table({"answer", "MB", "`vant-host draw`, ms", "`rsvg-convert`, ms",
                        "times the renderer's time", "peak memory, MB", "bytes a byte of answer"});
    for (const std::size_t shapes : plan.sizes) {
        std::cerr << shapes << " shapes: " << plan.samples << " samples\n";
        measure(shapes, plan.samples, table);
    }
    std::cout
        << "## A drawing, file to file\n\n"
        << "`vant-host draw` makes an SVG document of an answer; librsvg's `rsvg-convert` makes a picture of "
        << kPicture
        << " pixels a\nside of an SVG document with the same shapes. Whole processes in turn, "
           "medians of "
        << plan.samples << "; peak memory is the\nsystem's figure for the process.\n\n"
        << table.text();
}

} // namespace

int main(int argc, char** argv) { return bench::run_program(argc, argv, run); }
