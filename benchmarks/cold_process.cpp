#include "benchmarks/cold_process.h"

#include "benchmarks/support.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>
#include <string_view>

extern char** environ;

namespace bench {
namespace {

constexpr const char* kSampleOption = "--sample";

// A line of /proc/self/status, such as VmHWM, in bytes.
double status_bytes(std::string_view field)
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, field.size(), field) == 0)
            return std::stod(line.substr(field.size())) * 1024.0;
    }
    throw std::runtime_error("no " + std::string(field) + " in /proc/self/status");
}

// The standard output of this program run again, and whether it exited with 0.
bool run_again(const std::vector<std::string>& arguments, std::string& output)
{
    std::vector<std::string> words{"/proc/self/exe", kSampleOption};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    int ends[2];
    if (pipe(ends) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, ends[0]);
    posix_spawn_file_actions_addclose(&actions, ends[1]);
    pid_t process = -1;
    const bool started =
        posix_spawn(&process, words[0].c_str(), &actions, nullptr, pointers.data(), environ) == 0;
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    char buffer[256];
    for (ssize_t got; (got = read(ends[0], buffer, sizeof buffer)) > 0;)
        output.append(buffer, static_cast<std::size_t>(got));
    close(ends[0]);
    int status = 0;
    return started && waitpid(process, &status, 0) == process && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

} // namespace

Sample cold_sample(const std::vector<std::string>& arguments)
{
    std::string output;
    const bool done = run_again(arguments, output);
    Sample sample;
    std::istringstream in(output);
    if (!done || !(in >> sample.seconds >> sample.before >> sample.peak))
        throw std::runtime_error("a sample failed: " + arguments.front());
    return sample;
}

Sample median(const std::vector<Sample>& samples)
{
    const auto part = [&](double Sample::*which) {
        std::vector<double> values;
        std::transform(samples.begin(), samples.end(), std::back_inserter(values),
                       [&](const Sample& sample) { return sample.*which; });
        return median(std::move(values));
    };
    return {part(&Sample::seconds), part(&Sample::before), part(&Sample::peak)};
}

std::vector<std::string> sample_arguments(int argc, char** argv)
{
    if (argc < 2 || argv[1] != std::string_view(kSampleOption))
        return {};
    return {argv + 2, argv + argc};
}

Sample timed(const std::function<void()>& work)
{
    Sample sample;
    sample.before = status_bytes("VmRSS:");
    const auto begin = std::chrono::steady_clock::now();
    work();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    sample.seconds = taken.count();
    sample.peak = status_bytes("VmHWM:");
    return sample;
}

void keep_freed_memory()
{
#ifdef __GLIBC__
    constexpr int kNever = std::numeric_limits<int>::max();
    mallopt(M_TRIM_THRESHOLD, kNever);
    mallopt(M_MMAP_MAX, 0);
#endif
}

void end_sample(const Sample& sample, bool well_done)
{
    std::printf("%.9f %.0f %.0f\n", sample.seconds, sample.before, sample.peak);
    std::fflush(stdout);
    std::_Exit(well_done ? 0 : 1);
}

TemporaryFile::TemporaryFile(const std::string& bytes)
    : name_((std::filesystem::temp_directory_path() / "vnt_bench_XXXXXX").string())
{
    const int descriptor = mkstemp(name_.data());
    if (descriptor < 0)
        throw std::runtime_error("cannot make a temporary file");
    close(descriptor);
    std::ofstream out(name_, std::ios::binary);
    if (!out.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush())
        throw std::runtime_error("cannot write " + name_);
}

TemporaryFile::~TemporaryFile()
{
    std::error_code ignored;
    std::filesystem::remove(name_, ignored);
}

std::string file_content(const std::string& name)
{
    std::ifstream in(name, std::ios::binary);
    std::string content(static_cast<std::size_t>(std::filesystem::file_size(name)), '\0');
    if (!in.read(content.data(), static_cast<std::streamsize>(content.size())))
        throw std::runtime_error("cannot read " + name);
    return content;
}

} // namespace bench
