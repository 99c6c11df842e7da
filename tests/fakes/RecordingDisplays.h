#pragma once

#include "core/base/AppState.h"
#include "core/base/Displays.h"

#include <QString>
#include <QStringList>

#include <cstdint>

namespace korvale::fakes {

/// Writes down, one line each and in order, everything that would be shown: "status 5", "icon 2",
/// "counters", "notify message|subtitle|image", "consumer message|url", "sondar message" (null
/// texts as "-"). Keeps the shown colour and status in `state`, as the real ones do.
class RecordingDisplays final : public StatusDisplay,
                                public IconDisplay,
                                public CounterDisplay,
                                public NotificationSender {
public:
    explicit RecordingDisplays(AppState& state) : m_state(state) {}

    void updateStatusMessage(StatusState status) override {
        m_state.statusState = status;
        shown << QStringLiteral("status %1").arg(static_cast<std::uint32_t>(status));
    }
    void setIconDispColor(IconColor color) override {
        m_state.curIconDispColor = color;
        shown << QStringLiteral("icon %1").arg(static_cast<std::int64_t>(color));
    }
    void updateDisplay() override { shown << QStringLiteral("counters"); }
    void SendNotification(const QString& message, const QString& subtitle, int image) override {
        shown << QStringLiteral("notify %1|%2|%3").arg(text(message), text(subtitle)).arg(image);
    }
    void SendUrgentNotification(const QString& message, const QString& subtitle,
                                int image) override {
        ++urgent;
        SendNotification(message, subtitle, image);
    }
    void SendConsumerNotification(const QString& message, const QString& url) override {
        shown << QStringLiteral("consumer %1|%2").arg(text(message), text(url));
    }
    void SendSondarNotification(const QString& message) override {
        shown << QStringLiteral("sondar ") + text(message);
    }

    QStringList shown;
    int urgent = 0; ///< how many of them were

private:
    static QString text(const QString& given) {
        return given.isNull() ? QStringLiteral("-") : given;
    }

    AppState& m_state;
};

} // namespace korvale::fakes
