#pragma once

#include "Target.h"
#include "core/base/Displays.h"
#include "core/base/LogSink.h"
#include "core/base/Logging.h"
#include "platform/Clock.h"
#include "platform/UserDefaults.h"

namespace korvale::fuzz {

/// Takes log lines, which must be one line each.
class CheckingSink final : public LogSink {
public:
    CheckingSink() { setLogSink(this); }
    ~CheckingSink() override { setLogSink(nullptr); }
    CheckingSink(const CheckingSink&) = delete;
    CheckingSink& operator=(const CheckingSink&) = delete;

    void write(LogLevel /*level*/, const QByteArray& line) override {
        require(!line.contains('\n') && !line.contains('\r') && !line.contains('\x1b'));
    }
};

/// What is shown goes nowhere.
class SilentDisplays final : public NotificationSender,
                             public StatusDisplay,
                             public IconDisplay,
                             public CounterDisplay,
                             public DeviceNameDisplay,
                             public NotificationMark {
public:
    void SendNotification(const QString& /*message*/, const QString& /*subtitle*/,
                          int /*image*/) override {}
    void SendConsumerNotification(const QString& /*message*/, const QString& /*url*/) override {}
    void SendSondarNotification(const QString& /*message*/) override {}
    void updateStatusMessage(StatusState /*state*/) override {}
    void setIconDispColor(IconColor /*color*/) override {}
    void updateDisplay() override {}
    void showDeviceName() override {}
    void setShowNotificationsMark(bool /*isOn*/) override {}
};

class NoDefaults final : public UserDefaults {
public:
    [[nodiscard]] bool boolForKey(const QString& /*key*/) const override { return false; }
    void setInteger(const QString& /*key*/, int /*value*/) override {}
    void removeObject(const QString& /*key*/) override {}
};

class StoppedClock final : public Clock {
public:
    [[nodiscard]] double now() const override { return 1; }
    [[nodiscard]] QDateTime localTime() const override { return {}; }
};

} // namespace korvale::fuzz
