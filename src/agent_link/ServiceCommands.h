#pragma once

#include "agent_link/RequestChannel.h"
#include "agent_link/ServiceCommand.h"
#include "core/base/AppState.h"
#include "core/base/Displays.h"

#include <QString>

#include <functional>

namespace korvale {

/// How a one-shot start waits for its reply and ends. Off by default; the functions are not called
/// then.
struct AutomationMode {
    bool on = false;
    std::function<void()> sleepOneSecond; ///< holds up the main thread
    std::function<void()> terminate;      ///< asks the application to end
};

/// Told that the agent's log level is now `level` (any number). `previous` is the position whose
/// check mark is to be cleared; -1, or any other position without an item, means none.
using LogLevelApplied = std::function<void(int previous, int level)>;

/// Sends the ten commands and applies their replies. Main thread. Nothing waits, except the five
/// user commands in automation mode, which hold the main thread until the reply was handled or 15
/// sleeps have passed, and then ask the application to end.
class ServiceCommands {
public:
    ServiceCommands(AppState& state, RequestChannel& channel, StatusDisplay& status,
                    IconDisplay& icon, AutomationMode automation = {});

    // The user commands. Their only outcome is a log line.
    void forwardFolderScan(const QString& folder); ///< the path travels unchanged
    void scanBackground();
    void stopScan();
    void checkUpdates();
    void checkPolicyUpdates();

    /// Asks for the agent's log level, when the submenu is about to open. `checkedPosition` is that
    /// of the item checked now, -1 for none; `applied` is called only when the level differs from
    /// it.
    void readLogLevel(int checkedPosition, LogLevelApplied applied);
    /// Sets the agent's log level to the position (0 to 3) of the chosen item. `applied` is called
    /// once the agent has agreed; nothing is sent when the level is that already.
    void logging(int position, LogLevelApplied applied);

    void checkDriverConnection();
    void getSondarVersion();

    /// Any command without a value, for a sender who reads the reply itself.
    void request(ServiceCommand command, ReplyHandler handler);

private:
    void sendUserCommand(ServiceCommand command, const QString& value = {});
    void sendAndWait(const QVariantMap& envelope, const ReplyHandler& handler);

    AppState& m_state;
    RequestChannel& m_channel;
    StatusDisplay& m_status;
    IconDisplay& m_icon;
    AutomationMode m_automation;
};

} // namespace korvale
