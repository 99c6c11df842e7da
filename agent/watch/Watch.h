#pragma once

#include "agent/engine/EngineState.h"
#include "agent/scan/MainThreadPost.h"
#include "agent/watch/BackOff.h"
#include "agent/watch/EventReader.h"
#include "agent/watch/GuardProcess.h"

#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace korvale::agent {

class VerdictCache;

/// Everything that the kernel tells of files: what was written is judged, and programs before they
/// run. Main thread; the work is done elsewhere.
class Watch : public QObject {
    Q_OBJECT
public:
    /// `cache` may be null. Both are borrowed and outlive it.
    Watch(GuardProcess guard, Engine& engine, VerdictCache* cache, QObject* parent = nullptr);
    ~Watch() override;

    void configure(const WatchOptions& options);
    /// After each answer of the engine: with other signatures old verdicts do not count; what it
    /// did not judge while it was away is asked again.
    void engineAnswered(const EngineState& state);
    /// Processes that must not wait for themselves: the engine's.
    void exempt(const std::vector<pid_t>& processes);
    /// Whether a person allowed that content (SHA-256, hex) to be there, and to run.
    void setAllowed(const std::string& digest, bool allowed);
    /// The machine is about to sleep, or awake again.
    void sleep(bool asleep);
    static constexpr std::chrono::seconds readyTime{5};

    /// A child has stopped or ended: a stopped guard is ended, so that nothing waits for it; one
    /// that ended is started again, after a while.
    void childChanged();
    /// To be called now and then: a guard that did not answer since the last time is ended.
    void checkGuard();

    /// The agent is about to end: no program is asked for any more, and no guard started.
    void end();

    /// As if events had been lost.
    void lookThroughAll() { m_files->lookThroughAll(); }

    [[nodiscard]] std::vector<WatchedSystem> systems() const;
    /// Every file system that shall be watched is, in every way.
    [[nodiscard]] bool isComplete() const;
    /// What a person should know; empty as a rule.
    [[nodiscard]] QString problem() const;
    [[nodiscard]] const WrittenFiles& written() const { return *m_files; }
    [[nodiscard]] const GuardPage* guardCounts() const; ///< null without a guard
    [[nodiscard]] pid_t guardProcess() const { return m_guard.pid(); }
    [[nodiscard]] const WatchOptions& options() const { return *m_options; }

Q_SIGNALS:
    void found(const korvale::agent::FoundFile& file);
    /// A program was not run.
    void refused(const std::string& path);
    /// What systems(), isComplete() or problem() say.
    void changed();

private:
    class Starts;

    void guardEnded();
    void restartGuard();
    void guardReady(int error);
    void marked(std::uint64_t fileSystem, int error);

    GuardProcess m_guard;
    const int m_guardTrouble; ///< errno of its start
    std::shared_ptr<MainThreadPost> m_post;
    VerdictMemory m_memory;
    FilePlaces m_places;
    std::shared_ptr<const WatchOptions> m_options;
    std::vector<WatchedSystem> m_systems;
    std::set<std::uint64_t> m_asked; ///< file systems whose programs the guard asks for
    std::string m_signatures;
    std::uint64_t m_doubts = 0; ///< of the engine, as of its last answer
    bool m_reachable = false;
    bool m_guardLost = false; ///< it ended, and no other one has its place yet
    BackOff m_backOff;
    QTimer m_restart;
    QTimer m_tooLate; ///< for a new guard to be ready
    bool m_ending = false;
    std::uint64_t m_ping = 0;
    bool m_asksGuard = false; ///< a ping is out since the last look at the guard
    // The threads, in the order in which they need each other.
    std::unique_ptr<Starts> m_starts;
    std::unique_ptr<WrittenFiles> m_files;
    std::unique_ptr<StartJudge> m_judge;
    std::unique_ptr<EventReader> m_reader;
};

} // namespace korvale::agent
