// The agent's scan, as its service runs it, and its memory of clean files.
//
//   korvale-bench-agent scan CLAMD_CONFIGURATION CACHE TREE   one scan; a line of figures
//   korvale-bench-agent remember CACHE COUNT                   as many clean files in the cache
//   korvale-bench-agent recall CACHE COUNT                     asks for all of them; KiB of memory
//   korvale-bench-agent starts PROGRAM OTHER COUNT             starts both in turn; nanoseconds,
//   two medians

#include "agent/base/Log.h"
#include "agent/engine/BuiltInEngine.h"
#include "agent/engine/ClamdEngine.h"
#include "agent/engine/CombinedEngine.h"
#include "agent/scan/ScanJob.h"
#include "agent/store/VerdictCache.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <future>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace korvale::agent;

namespace {

class WaitForEnd final : public ScanListener {
public:
    void began(const std::string& /*path*/, const std::string& /*trouble*/) override {}
    void progress(const std::string& /*path*/, std::uint64_t /*analysed*/) override {}
    void found(FoundFile /*file*/) override {}
    void ended(const ScanSummary& summary) override { m_end.set_value(summary); }
    ScanSummary wait() { return m_end.get_future().get(); }

private:
    std::promise<ScanSummary> m_end;
};

int scan(const std::string& configuration, const std::string& cacheFile, const std::string& tree) {
    std::string error;
    const auto cache = VerdictCache::open(cacheFile, error);
    BuiltInEngine builtIn;
    ClamdEngine clamd({configuration, {}, std::chrono::seconds(2), {}});
    CombinedEngine engine(builtIn, &clamd);
    ScanRequest request;
    request.path = tree;
    WaitForEnd listener;
    ScanSummary summary;
    {
        ScanJob job(1, request, engine, cache.get(), listener);
        job.start();
        summary = listener.wait();
    }
    const auto count = [](std::uint64_t number) { return static_cast<unsigned long long>(number); };
    std::printf("{\"analysed\": %llu, \"known\": %llu, \"found\": %llu, \"not_scanned\": %llu, "
                "\"unanswered\": %llu, \"unreadable\": %llu, \"with_engine\": %s}\n",
                count(summary.analysed), count(summary.known), count(summary.found),
                count(summary.notScanned), count(summary.unanswered), count(summary.unreadable),
                summary.withEngine ? "true" : "false");
    return summary.trouble.empty() && cache ? 0 : 1;
}

FileIdentity file(std::uint64_t inode) {
    const auto time = static_cast<std::int64_t>(1'700'000'000'000'000'000 + inode * 7919);
    return {42, inode, static_cast<std::int64_t>(inode % 100'000), time, time};
}

/// Written to by this process alone.
long privateKiB() {
    std::ifstream summary("/proc/self/smaps_rollup");
    std::string word;
    long kib = 0;
    while (summary >> word) {
        if (word == "Private_Dirty:") {
            summary >> kib;
        }
    }
    return kib;
}

int remember(const std::string& cacheFile, std::uint64_t number) {
    std::string error;
    const auto cache = VerdictCache::open(cacheFile, error);
    if (!cache) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    cache->setSignatureKey("bench");
    for (std::uint64_t inode = 1; inode <= number; ++inode) {
        cache->remember(file(inode), KnownVerdict::Clean);
    }
    return cache->flush() ? 0 : 1;
}

int recall(const std::string& cacheFile, std::uint64_t number) {
    std::string error;
    const auto cache = VerdictCache::open(cacheFile, error);
    if (!cache) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return 1;
    }
    const long before = privateKiB();
    cache->setSignatureKey("bench");
    for (std::uint64_t inode = 1; inode <= number; ++inode) {
        if (cache->find(file(inode)) != KnownVerdict::Clean) {
            std::fprintf(stderr, "file %llu is forgotten\n",
                         static_cast<unsigned long long>(inode));
            return 1;
        }
    }
    std::printf("%ld\n", privateKiB() - before);
    return 0;
}

/// From asking for the program until it has ended.
std::int64_t startOnce(const char* program) {
    std::array<char*, 2> arguments{const_cast<char*>(program), nullptr};
    const auto begin = std::chrono::steady_clock::now();
    pid_t pid = 0;
    int status = -1;
    if (::posix_spawn(&pid, program, nullptr, nullptr, arguments.data(), environ) != 0 ||
        ::waitpid(pid, &status, 0) != pid || status != 0) {
        std::fprintf(stderr, "%s does not run\n", program);
        std::exit(1);
    }
    return std::chrono::nanoseconds(std::chrono::steady_clock::now() - begin).count();
}

int starts(const char* program, const char* other, std::uint64_t number) {
    std::array<std::vector<std::int64_t>, 2> taken;
    for (std::uint64_t i = 0; i < number; ++i) {
        taken[0].push_back(startOnce(program));
        taken[1].push_back(startOnce(other));
    }
    for (auto& times : taken) {
        std::nth_element(times.begin(),
                         times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                         times.end());
        std::printf("%lld\n", static_cast<long long>(times[times.size() / 2]));
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    setLogLevel(LogLevel::Warning);
    if (arguments.size() == 4 && arguments[0] == "scan") {
        return scan(arguments[1], arguments[2], arguments[3]);
    }
    if (arguments.size() == 3 && arguments[0] == "remember") {
        return remember(arguments[1], std::strtoull(arguments[2].c_str(), nullptr, 10));
    }
    if (arguments.size() == 3 && arguments[0] == "recall") {
        return recall(arguments[1], std::strtoull(arguments[2].c_str(), nullptr, 10));
    }
    if (arguments.size() == 4 && arguments[0] == "starts") {
        return starts(argv[2], argv[3], std::strtoull(argv[4], nullptr, 10));
    }
    std::fputs("see the head of bench/agent.cpp\n", stderr);
    return 2;
}
