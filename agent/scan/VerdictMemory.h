#pragma once

#include "agent/engine/Engine.h"
#include "agent/scan/TreeWalk.h"

#include <chrono>
#include <mutex>
#include <string>
#include <vector>

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
        std::uint64_t doubts = 0; ///< see EngineState
    };

    /// `cache` may be null: nothing is known then. Both are borrowed.
    VerdictMemory(VerdictCache* cache, const Engine& engine);

    /// The engine may have other signatures: only verdicts by these count from now on. begin() does
    /// the same.
    void useCurrentSignatures() { static_cast<void>(currentKey()); }
    [[nodiscard]] bool isKnownClean(const WalkedFile& file) const;
    [[nodiscard]] Begun begin(const WalkedFile& file);
    /// Remembers that the file is clean, if it still is the one that was begun with, and the
    /// engine's signatures are the same, too; a provisional verdict only once it holds. False: it
    /// may be another one unnoticed, or not hold, and nothing was remembered yet.
    bool remember(const WalkedFile& file, const Begun& begun, bool provisional = false);
    /// Whether provisional verdicts wait for the engine's next proof.
    [[nodiscard]] bool isOpen();
    /// Paths of files whose provisional verdicts do not hold: to be judged again. Each once.
    [[nodiscard]] std::vector<std::string> takeDoubted();
    void flush();

private:
    /// Few: the engine proves itself again soon after each.
    struct Open {
        FileIdentity file;
        bool keeps; ///< it may be remembered
        std::string path;
    };
    std::string currentKey() { return settle(m_engine.state()); }
    std::string settle(const EngineState& state);
    void settleLocked(const EngineState& state);
    [[nodiscard]] bool mayKeep(const WalkedFile& file, const Begun& begun, const std::string& key);

    VerdictCache* m_cache;
    const Engine& m_engine;
    std::mutex m_mutex;
    std::string m_key;
    std::vector<Open> m_open;
    std::vector<std::string> m_doubted;
    std::uint64_t m_proofs = 0;
    std::uint64_t m_doubts = 0;
};

} // namespace korvale::agent
