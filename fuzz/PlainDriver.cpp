// Runs a target without libFuzzer: NAME COUNT FOLDER runs each file of the corpus FOLDER and then
// COUNT inputs made from them, always the same ones. Fails when the target does, and when it hardly
// took an input for valid. NAME COUNT FOLDER NUMBER writes that one of them to standard
// output instead of running it.

#include "Target.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;
using korvale::fuzz::Random;

constexpr std::size_t largestInput = 16384;
constexpr std::size_t mostKept = 500;

volatile std::size_t running = 0; ///< number of the input in hand

extern "C" void tellWhichInput(int signal) {
    std::array<char, 32> digits{};
    const auto* end =
        std::to_chars(digits.data(), digits.data() + digits.size(), std::size_t{running}).ptr;
    constexpr std::string_view before = "fuzz: it was input ";
    (void)!write(STDERR_FILENO, before.data(), before.size());
    (void)!write(STDERR_FILENO, digits.data(), static_cast<std::size_t>(end - digits.data()));
    (void)!write(STDERR_FILENO, "\n", 1);
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

std::vector<std::string> corpusOf(const fs::path& folder) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<std::string> corpus;
    for (const fs::path& file : files) {
        std::ifstream stream(file, std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(stream),
                            std::istreambuf_iterator<char>());
    }
    return corpus;
}

void run(const std::string& input) {
    // On the heap and without a byte to spare, so that reading past its end shows.
    const std::vector<std::uint8_t> exact(input.begin(), input.end());
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

/// Each input is made from a file, or from an earlier input that was worth keeping.
class Generator {
public:
    explicit Generator(std::vector<std::string> corpus) : m_pool(std::move(corpus)) {}

    std::string make(std::size_t number) const {
        Random random(number);
        std::string input = m_pool[random() % m_pool.size()];
        for (std::size_t i = random() % 2 + 1; i > 0; --i) {
            input = korvale::fuzz::mutated(korvale::fuzz::targetGrammar(), input, random);
        }
        input.resize(std::min(input.size(), largestInput));
        return input;
    }
    void keep(std::string input) {
        if (m_pool.size() < mostKept && input.size() < largestInput / 4) {
            m_pool.push_back(std::move(input));
        }
    }

private:
    std::vector<std::string> m_pool;
};

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv, argv + argc);
    if (arguments.size() < 3) {
        std::fprintf(stderr, "usage: %s COUNT CORPUS [NUMBER]\n", argv[0]);
        return 2;
    }
    const std::vector<std::string> corpus = corpusOf(arguments[2]);
    const std::size_t only = arguments.size() > 3 ? std::stoul(arguments[3]) : 0;
    const std::size_t count = std::stoul(arguments[1]);
    std::signal(SIGABRT, tellWhichInput);
    std::signal(SIGSEGV, tellWhichInput);
    for (const std::string& input : corpus) {
        run(input);
    }
    Generator generator(corpus);
    for (std::size_t number = 1; number <= count; ++number) {
        std::string input = generator.make(number);
        running = number;
        if (number == only) {
            std::fwrite(input.data(), 1, input.size(), stdout);
            return 0;
        }
        const std::size_t before = korvale::fuzz::taken;
        run(input);
        if (korvale::fuzz::taken != before) {
            generator.keep(std::move(input));
        }
    }
    std::printf("%zu of %zu files and %zu inputs were taken\n", korvale::fuzz::taken, corpus.size(),
                count);
    return korvale::fuzz::taken * 20 >= count ? 0 : 1;
}
