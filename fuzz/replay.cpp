// Runs a fuzzed unit without a fuzzer: every file of its corpus, and seeded mutations of each.
//
//   <unit>_replay CORPUS_FOLDER [MUTATIONS_PER_FILE [SEED]]
//   <unit>_replay INPUT_FILE
//
// Every corpus file is run in a process of its own. When that ends badly, the input that it ended on is written to
// crash-input in the working folder, and the status is 1.
#include "fuzz/fuzz.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr std::size_t kLargestInput = 4096;
constexpr unsigned long kMutations = 3000;
constexpr unsigned long kSeed = 20240506;

// The input that is being tried, where the parent can see it.
struct Tried {
    std::size_t size;
    char bytes[kLargestInput];
};

const std::string kPieces[] = {
    "<",
    ">",
    "/",
    "/>",
    "</",
    "</>",
    "\"",
    "'",
    "=",
    " ",
    "  ",
    "?",
    "?>",
    "<!--",
    "-->",
    "-",
    "<![CDATA[",
    "]]>",
    "\n",
    "\t",
    "0",
    "-1",
    "1e",
    "e+",
    ".",
    "e308",
    "e-320",
    "9999999999",
    "100",
    "x=\"1\"",
    "shape",
    "line",
    "/ ",
    std::string("\0\0\0\0", 4),
    std::string("\1\0\0\0", 4),
    std::string("\3\0\0\0", 4),
    "\xFF\xFF\xFF\xFF",
    "\x80",
};

class Mutations {
public:
    Mutations(const std::vector<std::string>& corpus, std::uint64_t seed) : corpus_(corpus), random_(seed) {}

    std::string of(std::string input)
    {
        for (std::size_t changes = 1 + below(5); changes > 0; --changes)
            change(input);
        input.resize(std::min(input.size(), kLargestInput));
        return input;
    }

private:
    std::size_t below(std::size_t bound)
    {
        return static_cast<std::size_t>(random_() % std::max<std::size_t>(bound, 1));
    }

    std::string some_of(const std::string& text)
    {
        const std::size_t begin = below(text.size() + 1);
        return text.substr(begin, below(std::min<std::size_t>(text.size() - begin, 64) + 1));
    }

    void change(std::string& input)
    {
        const std::size_t place = below(input.size() + 1);
        const bool inside = place < input.size();
        switch (below(7)) {
        case 0:
            if (inside)
                input[place] = static_cast<char>(input[place] ^ (1 << below(8)));
            break;
        case 1:
            if (inside)
                input[place] = static_cast<char>(random_());
            break;
        case 2: input.erase(place, 1 + below(8)); break;
        case 3: input.insert(place, some_of(input)); break;
        case 4: input.insert(place, some_of(corpus_[below(corpus_.size())])); break;
        case 5: input.insert(place, kPieces[below(std::size(kPieces))]); break;
        default:
            if (const std::string& piece = kPieces[below(std::size(kPieces))]; inside)
                input.replace(place, piece.size(), piece);
        }
    }

    const std::vector<std::string>& corpus_;
    std::mt19937_64 random_;
};

void try_input(Tried& tried, const std::string& input)
{
    tried.size = std::min(input.size(), kLargestInput);
    std::copy_n(input.data(), tried.size, tried.bytes);
    // A copy of exactly that size, so that reading past its end shows.
    const std::vector<std::uint8_t> exact(input.begin(), input.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

// In a process of its own; true when that ended well.
template <class Body>
bool ends_well(Body body)
{
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        body();
        std::exit(0); // with what a sanitizer looks for at the end
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

std::string content_of(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::vector<std::filesystem::path> files_of(const std::filesystem::path& place)
{
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::is_directory(place))
        return {place};
    for (const auto& entry : std::filesystem::directory_iterator(place))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

bool replay(Tried& tried, const std::filesystem::path& place, unsigned long mutations, unsigned long seed)
{
    const std::vector<std::filesystem::path> files = files_of(place);
    std::vector<std::string> corpus;
    for (const std::filesystem::path& file : files)
        corpus.push_back(content_of(file));
    for (std::size_t i = 0; i < files.size(); ++i) {
        const bool good = ends_well([&] {
            try_input(tried, corpus[i]);
            Mutations mutated(corpus, seed + i);
            for (unsigned long run = 0; run < mutations; ++run)
                try_input(tried, mutated.of(corpus[i]));
        });
        if (!good) {
            std::ofstream("crash-input", std::ios::binary)
                .write(tried.bytes, static_cast<std::streamsize>(tried.size));
            std::fprintf(
                stderr,
                "replay: failed on %s or a mutation of it (seed %lu); the input stands in crash-input\n",
                files[i].c_str(), seed);
            return false;
        }
    }
    std::printf("%zu files, %lu mutations of each, seed %lu\n", files.size(), mutations, seed);
    return !files.empty();
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2 || argc > 4 || !std::filesystem::exists(argv[1])) {
        std::fprintf(stderr, "usage: %s CORPUS_FOLDER [MUTATIONS_PER_FILE [SEED]]\n       %s INPUT_FILE\n",
                     argv[0], argv[0]);
        return 2;
    }
    void* const shared =
        mmap(nullptr, sizeof(Tried), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        std::perror("replay: mmap");
        return 2;
    }
    const bool one_input = !std::filesystem::is_directory(argv[1]);
    const unsigned long mutations =
        argc > 2 ? std::strtoul(argv[2], nullptr, 10) : (one_input ? 0 : kMutations);
    const unsigned long seed = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : kSeed;
    return replay(*static_cast<Tried*>(shared), argv[1], mutations, seed) ? 0 : 1;
}
