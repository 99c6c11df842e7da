#include "agent/quarantine/WriteLease.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>

namespace korvale::agent {

WriteLease::WriteLease(int descriptor) : m_descriptor(descriptor), m_state(State::Impossible) {
    // The kernel tells of a waiting writer by a signal: SIGURG is ignored by default, the usual
    // SIGIO would end the process.
    if (::fcntl(descriptor, F_SETSIG, SIGURG) != 0) {
        return;
    }
    if (::fcntl(descriptor, F_SETLEASE, F_RDLCK) == 0) {
        m_state = State::Held;
    } else if (errno == EAGAIN) {
        m_state = State::OpenForWriting;
    }
}

WriteLease::~WriteLease() {
    if (m_state == State::Held) {
        ::fcntl(m_descriptor, F_SETLEASE, F_UNLCK);
    }
}

bool WriteLease::undisturbed() const {
    return m_state == State::Held && ::fcntl(m_descriptor, F_GETLEASE) == F_RDLCK;
}

} // namespace korvale::agent
