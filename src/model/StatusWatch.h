#pragma once

#include "model/StatusReport.h"

#include <QObject>

namespace korvale {

/// Tells when the StatusReport becomes another one. AppState is a plain struct, so whoever may have
/// changed it calls look(): that is cheap. Main thread.
class StatusWatch final : public QObject {
    Q_OBJECT
public:
    /// `state` outlives the object.
    explicit StatusWatch(const AppState& state, QObject* parent = nullptr)
        : QObject(parent), m_state(state), m_report(statusReport(state)) {}

    /// As of the last look.
    [[nodiscard]] const StatusReport& report() const { return m_report; }

    void look() {
        StatusReport now = statusReport(m_state);
        if (now != m_report) {
            m_report = std::move(now);
            Q_EMIT changed();
        }
    }

Q_SIGNALS:
    void changed();

private:
    const AppState& m_state;
    StatusReport m_report;
};

} // namespace korvale
