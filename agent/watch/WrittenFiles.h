#pragma once

#include "agent/engine/Engine.h"
#include "agent/scan/Permits.h"
#include "agent/scan/ScanTypes.h"
#include "agent/scan/VerdictMemory.h"
#include "agent/watch/FilePlaces.h"
#include "agent/watch/PathQueue.h"
#include "agent/watch/WatchOptions.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

namespace korvale::agent {

/// Judges files that were written or moved to where they are, on a few threads that let everything
/// else go first. Any thread may add.
class WrittenFiles {
public:
    static constexpr std::size_t workers = 3;
    static constexpr std::size_t foundOnTheirWay = 32;
    /// Beyond that many files that the engine did not judge, all folders are looked through when it
    /// is back.
    static constexpr std::size_t longestRetryList = 10'000;

    /// Called on any of the threads.
    using Found = std::function<void(FoundFile file)>;

    /// `memory` and what else is borrowed outlives it.
    WrittenFiles(Engine& engine, VerdictMemory& memory, const FilePlaces& places, Found found);
    ~WrittenFiles(); ///< stops and waits for its threads
    WrittenFiles(const WrittenFiles&) = delete;
    WrittenFiles& operator=(const WrittenFiles&) = delete;

    void configure(std::shared_ptr<const WatchOptions> options);
    /// A file was written or moved there; a folder was (`isTree`). What is not watched is dropped.
    void add(const std::string& path, bool isTree);
    /// Events were lost: everything that is watched is looked through, what is known aside.
    void lookThroughAll();
    /// What the engine said of these does not hold: they are asked again with those that it did not
    /// judge.
    void doubt(const std::vector<std::string>& paths);
    /// The engine answers (again): what it did not judge is asked again.
    void askAgain();

    struct Counts {
        std::atomic<std::uint64_t> judged = 0; ///< also those that were known
        std::atomic<std::uint64_t> notScanned = 0;
        std::atomic<std::uint64_t> lost = 0; ///< times that events or paths were dropped
    };
    [[nodiscard]] const Counts& counts() const { return m_counts; }
    [[nodiscard]] std::size_t waiting() const { return m_queue.size(); }
    [[nodiscard]] std::size_t unanswered() const;

private:
    class Tree;

    void work();
    void look(const PathQueue::Job& job);
    void lookThrough(const std::string& folder, const WatchOptions& options);
    void judge(WalkedFile& file, const WatchOptions& options);
    void noAnswer(const std::string& path);
    [[nodiscard]] bool isWorthLooking(const WalkedFile& file, const WatchOptions& options);
    [[nodiscard]] std::shared_ptr<const WatchOptions> options() const;

    Engine& m_engine;
    VerdictMemory& m_memory;
    const FilePlaces& m_places;
    const Found m_found;
    PathQueue m_queue;
    Counts m_counts;
    const std::shared_ptr<Permits> m_permits;
    std::stop_source m_stop;
    mutable std::mutex m_mutex;
    std::shared_ptr<const WatchOptions> m_options;
    std::unordered_set<std::string> m_unanswered;
    bool m_tooManyUnanswered = false;
    std::array<std::thread, workers> m_threads;
};

} // namespace korvale::agent
