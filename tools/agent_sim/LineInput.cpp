#include "agent_sim/LineInput.h"

#include <array>
#include <cerrno>
#include <unistd.h>

namespace korvale::sim {

LineInput::LineInput(int descriptor, QObject* parent)
    : QObject(parent), m_descriptor(descriptor), m_notifier(descriptor, QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &LineInput::readSome);
}

void LineInput::readSome() {
    std::array<char, 65536> buffer{};
    const ssize_t count = ::read(m_descriptor, buffer.data(), buffer.size());
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
        return;
    }
    if (count > 0) {
        m_partial.append(buffer.data(), count);
        qsizetype from = 0;
        for (qsizetype end = m_partial.indexOf('\n'); end >= 0;
             end = m_partial.indexOf('\n', from)) {
            Q_EMIT line(QString::fromUtf8(m_partial.mid(from, end - from)));
            from = end + 1;
        }
        m_partial.remove(0, from);
    }
    if (count <= 0 || m_partial.size() > kLongestLine) {
        m_notifier.setEnabled(false);
        if (count == 0 && !m_partial.isEmpty()) {
            Q_EMIT line(QString::fromUtf8(m_partial));
        }
        Q_EMIT ended();
    }
}

} // namespace korvale::sim
