#pragma once

#include "agent/audit/Violation.h"
#include "agent/base/UniqueFd.h"

#include <QObject>
#include <QSocketNotifier>

#include <chrono>
#include <cstdint>
#include <memory>

namespace korvale::agent {

/// Hears what the kernel's audit stream says of processes that did what their rules forbid. The
/// kernel is asked to pass on these records alone, so that auditing everything else wakes nobody.
/// Main thread; never waits.
class AuditStream : public QObject {
    Q_OBJECT
public:
    /// So many records are taken at once, and then none for a while: whoever makes his own
    /// processes die all the time must not keep the main thread busy. What does not fit into the
    /// kernel's queue meanwhile is lost, and counted.
    static constexpr int mostAtOnce = 64;
    static constexpr std::chrono::milliseconds rest{250};

    explicit AuditStream(QObject* parent = nullptr);

    /// Begins, or ends, to hear. Ended it has no problem.
    void listen(bool on);
    [[nodiscard]] bool hears() const { return m_notifier != nullptr; }
    /// A sentence; empty: none.
    [[nodiscard]] const std::string& problem() const { return m_problem; }
    /// How often records were dropped before they were heard, or were none.
    [[nodiscard]] std::uint64_t lost() const { return m_lost; }

Q_SIGNALS:
    void violated(const korvale::agent::Violation& violation);

private:
    enum class Taken { Record, Nothing, Failure };

    void take();
    Taken takeOne();
    void judge(std::string_view message);
    void fail(int error);
    void close();

    UniqueFd m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::string m_problem;
    std::uint64_t m_lost = 0;
};

} // namespace korvale::agent
