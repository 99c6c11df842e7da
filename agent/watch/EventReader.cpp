#include "agent/watch/EventReader.h"

#include "agent/base/Log.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>

namespace korvale::agent {
namespace {

/// All of a file of /proc, which is made while it is read.
std::string textOf(int descriptor) {
    std::string text;
    std::array<char, 8192> piece{};
    ::lseek(descriptor, 0, SEEK_SET);
    for (ssize_t got = 0; (got = ::read(descriptor, piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(got));
    }
    return text;
}

} // namespace

EventReader::EventReader(FilePlaces& places, WrittenFiles& files, StartJudge* starts,
                         Changed changed)
    : m_places(places),
      m_files(files),
      m_starts(starts),
      m_changed(std::move(changed)),
      m_mounts(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)),
      m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_options(std::make_shared<WatchOptions>()) {
    m_thread = std::thread([this] { run(); });
}

EventReader::~EventReader() {
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    ::eventfd_write(m_wake.get(), 1);
    m_thread.join();
}

void EventReader::configure(std::shared_ptr<const WatchOptions> options) {
    const std::lock_guard lock(m_mutex);
    m_options = std::move(options);
    m_configured = true;
    ::eventfd_write(m_wake.get(), 1);
}

void EventReader::exempt(std::vector<pid_t> processes) {
    const std::lock_guard lock(m_mutex);
    m_exempt = {processes.begin(), processes.end()};
}

bool EventReader::isOwn(pid_t process) const {
    const std::lock_guard lock(m_mutex);
    return process == ::getpid() || m_exempt.contains(process);
}

void EventReader::run() {
    for (;;) {
        std::array<pollfd, 4> waitFor{
            pollfd{m_wake.get(), POLLIN, 0}, pollfd{m_mounts.get(), POLLPRI, 0},
            pollfd{m_names.descriptor(), POLLIN, 0}, pollfd{m_closed.descriptor(), POLLIN, 0}};
        ::poll(waitFor.data(), waitFor.size(), -1);
        eventfd_t woken = 0;
        ::eventfd_read(m_wake.get(), &woken);
        std::shared_ptr<const WatchOptions> options;
        {
            const std::lock_guard lock(m_mutex);
            if (m_ending) {
                return;
            }
            if (std::exchange(m_configured, false) || waitFor[1].revents != 0) {
                options = m_options;
            }
        }
        if (options) {
            look(*options);
        }
        if (waitFor[2].revents != 0) {
            take(m_names);
        }
        if (waitFor[3].revents != 0) {
            take(m_closed);
        }
    }
}

void EventReader::look(const WatchOptions& options) {
    std::vector<WatchedSystem> systems;
    std::vector<WatchedRoot> roots;
    for (const Mount& mount : mountsOf(parseMounts(textOf(m_mounts.get())), options.folders)) {
        systems.push_back(watch(mount, options, roots));
    }
    if (systems.empty() && !m_systems.empty()) {
        m_names.unmarkAll();
        m_closed.unmarkAll();
    }
    m_places.set(std::move(roots));
    if (systems != m_systems) {
        m_systems = systems;
        m_changed(std::move(systems));
    }
}

WatchedSystem EventReader::watch(const Mount& mount, const WatchOptions& options,
                                 std::vector<WatchedRoot>& roots) {
    WatchedSystem system;
    system.point = mount.point;
    if (!isLocalType(mount.type)) {
        system.mode = WatchMode::Unasked;
        system.problem = "Another machine or program is behind it (" + mount.type + ").";
        return system;
    }
    const UniqueFd folder(
        ::open(mount.point.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK));
    const auto facts = fileSystemFacts(folder.get());
    if (!facts) {
        system.problem = std::string("It cannot be opened: ") + std::strerror(errno) + '.';
        return system;
    }
    system.id = facts->id;
    // Marking again what is marked changes nothing.
    markWritten(system, folder.get());
    roots.push_back({mount.point, *facts, mount.root == "/"});
    if (m_starts != nullptr && options.checkStarts) {
        m_starts->mark(facts->id, folder);
    }
    return system;
}

void EventReader::markWritten(WatchedSystem& system, int folder) const {
    const int error = m_names.mark(folder);
    if (error == 0) {
        system.mode = WatchMode::Full;
        return;
    }
    // No file handles, as on some overlays; or several parts with numbers of their own (btrfs).
    if (m_closed.mark(folder) == 0) {
        system.mode = WatchMode::ClosedOnly;
        system.problem = "What is moved there is not seen.";
    } else {
        system.problem = std::string("The kernel does not watch it: ") + std::strerror(error) + '.';
    }
}

void EventReader::take(const EventGroup& group) {
    const FileEvents read = group.read();
    if (read.overflow) {
        m_files.lookThroughAll();
    }
    for (const FileEvent& event : read.events) {
        const UniqueFd descriptor(event.descriptor);
        if (isOwn(event.process)) {
            continue;
        }
        if (const std::optional<std::string> path = m_places.pathOf(event)) {
            m_files.add(*path, event.isFolder);
        }
    }
}

} // namespace korvale::agent
