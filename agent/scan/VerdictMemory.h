#pragma once

#include "agent/engine/Engine.h"
#include "agent/scan/TreeWalk.h"

#include <chrono>
#include <mutex>
#include <string>

namespace korvale::agent {

class VerdictCache;

/// What a scan asks of the verdict cache and tells it: only that a file is clean, and only where
/// the next look will notice every change. Any thread.
class VerdictMemory {
public:
    /// A change within this time of another one may leave the same ctime: some kernels count in
    /// ticks.
    static constexpr std::chrono::milliseconds tooYoung{50};

    /// A judging of one file, from before its content was read.
    struct Begun {
        FileIdentity file;
        std::chrono::system_clock::time_point time;
        std::string key;
    };

    /// `cache` may be null: nothing is known then. Both are borrowed.
    VerdictMemory(VerdictCache* cache, const Engine& engine);

    /// The engine may have other signatures: only verdicts by these count from now on. begin() does
    /// the same.
    void useCurrentSignatures() { static_cast<void>(currentKey()); }
    [[nodiscard]] bool isKnownClean(const WalkedFile& file) const;
    [[nodiscard]] Begun begin(const WalkedFile& file);
    /// Remembers that the file is clean, if it still is the one that was begun with, and the
    /// engine's signatures are the same, too. False: it may be another one unnoticed, and nothing
    /// was remembered.
    bool remember(const WalkedFile& file, const Begun& begun);
    void flush();

private:
    std::string currentKey();

    VerdictCache* m_cache;
    const Engine& m_engine;
    std::mutex m_mutex;
    std::string m_key;
};

} // namespace korvale::agent
