#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"
#include "platform/Clock.h"

#include <QObject>
#include <QString>

namespace korvale {

/// The one line at the bottom of the details window that says what the agent does. Holds the line
/// whether or not a window shows it. Main thread.
class StatusLine : public QObject, public StatusDisplay {
    Q_OBJECT

public:
    StatusLine(AppState& state, const Clock& clock, QObject* parent = nullptr);

    /// Stores `state` (any number) and the moment, and words it. While the driver is known to be
    /// missing nothing is changed at all, until something sets driverConnected again.
    void updateStatusMessage(StatusState state) override;

    [[nodiscard]] const QString& text() const { return m_text; }
    [[nodiscard]] const QString& toolTip() const { return m_toolTip; }

Q_SIGNALS:
    /// The text or its tooltip is another than before.
    void changed();

private:
    [[nodiscard]] QString inspectingText(std::optional<double> previousReport) const;

    AppState& m_state;
    const Clock& m_clock;
    QString m_text;
    QString m_toolTip;
};

} // namespace korvale
