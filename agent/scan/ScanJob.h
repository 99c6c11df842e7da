#pragma once

#include "agent/engine/Engine.h"
#include "agent/scan/CallerFolder.h"
#include "agent/scan/EnginePatience.h"
#include "agent/scan/FileQueue.h"
#include "agent/scan/Permits.h"
#include "agent/scan/ProgressPace.h"
#include "agent/scan/ScanTypes.h"
#include "agent/scan/TreeWalk.h"
#include "agent/scan/VerdictMemory.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace korvale::agent {

/// What a scan tells. Called from its threads, one call at a time.
class ScanListener {
public:
    ScanListener() = default;
    ScanListener(const ScanListener&) = delete;
    ScanListener& operator=(const ScanListener&) = delete;
    virtual ~ScanListener() = default;

    /// The folder may be read, and is; or not (`trouble`), then ended() follows at once.
    virtual void began(const std::string& path, const std::string& trouble) = 0;
    /// At most five times a second.
    virtual void progress(const std::string& path, std::uint64_t analysed) = 0;
    virtual void found(FoundFile file) = 0;
    /// The last call.
    virtual void ended(const ScanSummary& summary) = 0;
};

/// One scan of one tree: a thread that walks with the caller's rights and some that wait for the
/// engine. Lives on the thread that made it.
class ScanJob final : private WalkVisitor {
public:
    static constexpr std::size_t workers = 8;
    static constexpr std::size_t foundOnTheirWay = 32;
    static constexpr std::size_t longestRetryList = 10'000;

    /// `cache` may be null. All are borrowed and outlive the job.
    ScanJob(std::uint64_t id, ScanRequest request, Engine& engine, VerdictCache* cache,
            ScanListener& listener);
    ~ScanJob() override; ///< stops it and waits for its threads

    [[nodiscard]] const ScanRequest& request() const { return m_request; }
    void start();
    /// ended() comes within a second, unless the kernel itself hangs in the file system.
    void stop();

private:
    void run();
    void scan(CallerFolder folder);
    void work();
    void judge(WalkedFile& file);
    void conclude(WalkedFile& file, Judgement judgement);
    void unanswered(const std::string& path);
    void askAgain();
    std::vector<std::string> takeDoubted();
    void count(const std::string& path);
    void report(const WalkedFile& file, Judgement judgement);

    void choose(std::vector<WalkedFile>& files) override;
    void file(WalkedFile file) override;
    void skipped(Skipped reason, const std::string& path) override;

    const ScanRequest m_request;
    Engine& m_engine;
    ScanListener& m_listener;
    std::stop_source m_stop;
    FileQueue m_queue;
    TreeWalk m_walk;
    std::unique_ptr<VerdictMemory> m_memory;
    VerdictCache* m_cache;
    EnginePatience m_patience;
    const std::shared_ptr<Permits> m_permits;
    ProgressPace m_pace;

    std::mutex m_mutex; ///< for what follows, and the listener's calls
    ScanSummary m_summary;
    std::vector<std::string> m_retries;
    std::atomic<bool> m_lastTry = false;
    std::thread m_thread;
};

} // namespace korvale::agent
