#pragma once

#include "core/base/AppState.h"

#include <QString>

#include <cstdint>

namespace korvale {

// What the model and the agent link need of the rooms above them. Main thread, all of it.

/// The one line that says what the agent does.
class StatusDisplay {
public:
    virtual ~StatusDisplay() = default;
    virtual void updateStatusMessage(StatusState state) = 0;
};

/// The status item's colour.
class IconDisplay {
public:
    virtual ~IconDisplay() = default;
    virtual void setIconDispColor(IconColor color) = 0;
};

/// Everything the details window counts, and the colour that follows from it.
class CounterDisplay {
public:
    virtual ~CounterDisplay() = default;
    virtual void updateDisplay() = 0;
};

/// The device's name, where it is shown.
class DeviceNameDisplay {
public:
    virtual ~DeviceNameDisplay() = default;
    /// Shows the present `customName` of the state.
    virtual void showDeviceName() = 0;
};

/// The check mark of the menu's "CM_ShowNotifications".
class NotificationMark {
public:
    virtual ~NotificationMark() = default;
    virtual void setShowNotificationsMark(bool isOn) = 0;
};

/// Index of no picture: the notification has none.
inline constexpr int noImage = -1;
/// Index of the picture beside news of threats and exploits.
inline constexpr int threatImage = 4;

/// How much a notification may disturb. Desktops let what is critical through while they are told
/// not to disturb, and leave it on the screen until it is closed, in front of others: so only what
/// is new and what nobody has handled is.
enum class Urgency : std::uint8_t { Normal = 1, Critical = 2 };

/// Desktop notifications, gated by the user's choice or the policy.
class NotificationSender {
public:
    virtual ~NotificationSender() = default;
    /// `image` is an index of Resources::getImage, or noImage. A null or empty subtitle is none.
    virtual void SendNotification(const QString& message, const QString& subtitle, int image) = 0;
    /// The same for what is new and nobody has handled: Urgency::Critical where that can be told.
    virtual void SendUrgentNotification(const QString& message, const QString& subtitle,
                                        int image) {
        SendNotification(message, subtitle, image);
    }
    /// `url` may be null: then a click does nothing.
    virtual void SendConsumerNotification(const QString& message, const QString& url) = 0;
    virtual void SendSondarNotification(const QString& message) = 0;
};

} // namespace korvale
