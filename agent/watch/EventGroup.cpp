#include "agent/watch/EventGroup.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <fcntl.h>
#include <sys/fanotify.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr std::size_t kBuffer = std::size_t{64} << 10;

} // namespace

EventGroup::EventGroup(Kind kind)
    : m_kind(kind),
      m_group(::fanotify_init(FAN_CLASS_NOTIF | FAN_CLOEXEC | FAN_NONBLOCK |
                                  (kind == Kind::Names ? unsigned{FAN_REPORT_DFID_NAME} : 0U),
                              O_RDONLY | O_LARGEFILE | O_CLOEXEC | O_NOATIME)) {}

int EventGroup::mark(int folder) const {
    const std::uint64_t events = m_kind == Kind::Names
                                     ? std::uint64_t{FAN_CLOSE_WRITE | FAN_MOVED_TO | FAN_ONDIR}
                                     : std::uint64_t{FAN_CLOSE_WRITE};
    const int marked =
        ::fanotify_mark(m_group.get(), FAN_MARK_ADD | FAN_MARK_FILESYSTEM, events, folder, nullptr);
    return marked == 0 ? 0 : errno;
}

void EventGroup::unmarkAll() const {
    ::fanotify_mark(m_group.get(), FAN_MARK_FLUSH | FAN_MARK_FILESYSTEM, 0, AT_FDCWD, nullptr);
}

FileEvents EventGroup::read() const {
    std::array<char, kBuffer> buffer; // NOLINT(*-member-init): as much as was read counts
    const ssize_t got = ::read(m_group.get(), buffer.data(), buffer.size());
    return got <= 0 ? FileEvents()
                    : parseFileEvents(std::span(buffer).first(static_cast<std::size_t>(got)));
}

} // namespace korvale::agent
