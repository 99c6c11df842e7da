// One kind of work on one list, so that a profiler or the kernel can count what it takes.
#include "Batch.h"

#include "ListGenerator.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <simdjson.h>
#include <string>
#include <string_view>

namespace {

constexpr const char* usage =
    "korvale-bench-batch --mode=MODE [--repeat=N] FILE\n"
    "  dom        simdjson's DOM parse alone, of a text that is already in memory\n"
    "  batch      a changed list: read, compared, grouped, made rows and counters\n"
    "  unchanged  a list with the bytes that were seen last\n"
    "  memory     two changed lists, one after the other; prints the peak in kB over the start\n"
    "  generate   writes a list of N records to FILE (--repeat gives N)\n";

/// A figure of /proc/self/status, in kB.
long statusFigure(std::string_view name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name)) {
            return std::atol(line.c_str() + name.size() + 1);
        }
    }
    return 0;
}

int parseDom(const std::string& file, long repeat) {
    const auto text = simdjson::padded_string::load(file);
    simdjson::dom::parser parser;
    for (long i = 0; i < repeat; ++i) {
        if (text.error() != simdjson::SUCCESS ||
            parser.parse(text.value_unsafe()).error() != simdjson::SUCCESS) {
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}

int runBatches(const QFileInfo& file, long repeat, bool fresh) {
    korvale::bench::Batch batch(file.absolutePath());
    for (long i = 0; i < repeat; ++i) {
        const auto expected =
            fresh || i == 0 ? korvale::ListState::Changed : korvale::ListState::Unchanged;
        if (batch.run(file.fileName(), fresh) != expected) {
            return EXIT_FAILURE;
        }
    }
    return EXIT_SUCCESS;
}

int generate(const std::string& file, long records) {
    std::ofstream out(file, std::ios::binary);
    out << korvale::bench::fileStateList({static_cast<std::size_t>(records)});
    return out.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// A first batch of one record, so that the program itself is in memory.
int warmUp() {
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("one.log"));
    return generate(name.toStdString(), 1) == EXIT_SUCCESS ? runBatches(QFileInfo(name), 1, true)
                                                           : EXIT_FAILURE;
}

int measureMemory(const QFileInfo& file) {
    if (warmUp() != EXIT_SUCCESS) {
        return EXIT_FAILURE;
    }
    const long before = statusFigure("VmHWM:");
    const int result = runBatches(file, 2, true);
    const long peak = statusFigure("VmHWM:") - before;
    std::printf("peak_kB %ld file_kB %lld ratio %.2f\n", peak,
                static_cast<long long>(file.size() / 1024),
                static_cast<double>(peak) * 1024.0 / static_cast<double>(file.size()));
    return result;
}

} // namespace

int main(int argc, char** argv) {
    std::string mode;
    std::string file;
    long repeat = 1;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (argument.starts_with("--mode=")) {
            mode = argument.substr(7);
        } else if (argument.starts_with("--repeat=")) {
            repeat = std::atol(argv[i] + 9);
        } else {
            file = argument;
        }
    }
    const QFileInfo info(QString::fromStdString(file));
    if (mode == "dom") {
        return parseDom(file, repeat);
    }
    if (mode == "batch" || mode == "unchanged") {
        return runBatches(info, repeat, mode == "batch");
    }
    if (mode == "memory") {
        return measureMemory(info);
    }
    if (mode == "generate") {
        return generate(file, repeat);
    }
    std::fputs(usage, stderr);
    return EXIT_FAILURE;
}
