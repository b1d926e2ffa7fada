// Samples each taken in a new process: no page of memory is there yet and nothing is in a cache, as when a
// plug-in's command runs once.
//
// A program that takes them starts itself again with --sample and arguments of its own; there it calls timed
// and end_sample.
#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace bench {

struct Sample {
    double seconds = 0.0;
    double before = 0.0; // resident bytes when the work began
    double peak = 0.0;   // most resident bytes that the process ever had
};

// In the parent: one sample. Throws std::runtime_error when the other process fails.
Sample cold_sample(const std::vector<std::string>& arguments);

// The medians of the parts.
Sample median(const std::vector<Sample>& samples);

// In the new process: what stands behind --sample, empty when the program was started by a person.
std::vector<std::string> sample_arguments(int argc, char** argv);

// In the new process: times the work.
Sample timed(const std::function<void()>& work);

// In the new process, to measure work that is no longer cold: what is freed stays the process's, whatever
// lies where on the heap. Else the C library gives some of it back, and then the next work is cold again.
void keep_freed_memory();

// In the new process: reports to the parent and ends the process with all that it has made; when the work was
// not well done, the parent's cold_sample throws.
[[noreturn]] void end_sample(const Sample& sample, bool well_done);

// A file of these bytes, as long as the object lives.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& bytes);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    const std::string& name() const { return name_; }

private:
    std::string name_;
};

// A whole file, in a string without room to spare.
std::string file_content(const std::string& name);

} // namespace bench
