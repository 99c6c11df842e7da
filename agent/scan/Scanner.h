#pragma once

#include "agent/scan/ScanTypes.h"

#include <QObject>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace korvale::agent {

class Engine;
class MainThreadPost;
class ScanJob;
class VerdictCache;

struct ScanInfo {
    std::uint64_t id = 0;
    ScanKind kind = ScanKind::Folder;
    std::string path;     ///< absolute, raw bytes
    uid_t user = 0;       ///< who asked
    bool running = false; ///< else it waits for its turn
    std::uint64_t analysed = 0;
};

/// All scans: one of folders and one in the background at a time, further ones wait. Everything
/// here is on the main thread and never waits for a disk; the work is done elsewhere.
class Scanner : public QObject {
    Q_OBJECT

public:
    static constexpr std::size_t longestQueue = 16;
    static constexpr int checksAtOnce = 8;

    /// The scan's number and nothing, or 0 and why it is refused.
    using Answer = std::function<void(std::uint64_t id, const std::string& error)>;

    /// `cache` may be null. Both are borrowed and outlive the scanner.
    Scanner(Engine& engine, VerdictCache* cache, QObject* parent = nullptr);
    ~Scanner() override; ///< stops all and waits for their ends

    /// Checks with the caller's rights whether the folder may be read, and then scans it as soon as
    /// it is its turn. `answer` is called once, later.
    void start(ScanRequest request, Answer answer);
    /// False: there is no such scan. Its ended() follows.
    bool stop(std::uint64_t id);
    void stopAll();

    [[nodiscard]] std::vector<ScanInfo> scans() const; ///< running ones first
    [[nodiscard]] bool isRunning() const { return !m_running.empty(); }

Q_SIGNALS:
    /// The first one runs, or the last one has ended.
    void runningChanged(bool running);
    void began(const korvale::agent::ScanInfo& scan);
    /// At most five times a second and scan.
    void progress(const korvale::agent::ScanInfo& scan, const std::string& path);
    void found(const korvale::agent::FoundFile& file);
    void ended(const korvale::agent::ScanSummary& summary);

private:
    class Listener;
    struct Running {
        ScanInfo info;
        std::unique_ptr<Listener> listener;
        std::unique_ptr<ScanJob> job;
    };
    struct Waiting {
        std::uint64_t id;
        ScanRequest request;
    };

    void checked(ScanRequest request, const Answer& answer, const std::string& error);
    void startNext(ScanKind kind);
    void startNow(Waiting waiting);
    void jobProgress(std::uint64_t id, const std::string& path, std::uint64_t analysed);
    void jobEnded(const ScanSummary& summary);
    static ScanInfo infoOf(std::uint64_t id, const ScanRequest& request);

    Engine& m_engine;
    VerdictCache* m_cache;
    std::shared_ptr<MainThreadPost> m_post;
    std::map<ScanKind, Running> m_running;
    std::deque<Waiting> m_waiting;
    std::uint64_t m_lastId = 0;
    int m_checks = 0;
    bool m_toldRunning = false;
};

} // namespace korvale::agent
