#pragma once

#include "agent/watch/EventGroup.h"
#include "agent/watch/FilePlaces.h"
#include "agent/watch/MountTable.h"
#include "agent/watch/StartJudge.h"
#include "agent/watch/WatchOptions.h"
#include "agent/watch/WatchedSystem.h"
#include "agent/watch/WrittenFiles.h"

#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace korvale::agent {

/// A thread that hears of written files, has them judged, and follows what is mounted and unmounted
/// meanwhile.
class EventReader {
public:
    /// Called on the thread, whenever it differs from before.
    using Changed = std::function<void(std::vector<WatchedSystem> systems)>;

    /// `starts` may be null: nobody asks for programs. All are borrowed and outlive it.
    EventReader(FilePlaces& places, WrittenFiles& files, StartJudge* starts, Changed changed);
    ~EventReader();
    EventReader(const EventReader&) = delete;
    EventReader& operator=(const EventReader&) = delete;

    void configure(std::shared_ptr<const WatchOptions> options);
    /// Processes whose files are not looked at: the engine's own. Any thread.
    void exempt(std::vector<pid_t> processes);

private:
    void run();
    void look(const WatchOptions& options);
    [[nodiscard]] WatchedSystem watch(const Mount& mount, const WatchOptions& options,
                                      std::vector<WatchedRoot>& roots);
    void markWritten(WatchedSystem& system, int folder) const;
    void take(const EventGroup& group);
    [[nodiscard]] bool isOwn(pid_t process) const;

    FilePlaces& m_places;
    WrittenFiles& m_files;
    StartJudge* m_starts;
    const Changed m_changed;
    const EventGroup m_names{EventGroup::Kind::Names};
    const EventGroup m_closed{EventGroup::Kind::Descriptors};
    UniqueFd m_mounts; ///< /proc/self/mountinfo, which tells of its changes
    UniqueFd m_wake;
    mutable std::mutex m_mutex; ///< for what follows
    std::shared_ptr<const WatchOptions> m_options;
    std::set<pid_t> m_exempt;
    bool m_ending = false;
    bool m_configured = false;
    std::vector<WatchedSystem> m_systems; ///< the thread's own
    std::thread m_thread;
};

} // namespace korvale::agent
