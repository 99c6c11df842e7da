#pragma once

#include <QString>

#include <functional>

namespace korvale {

/// Told that the agent's log level is now `level` (any number). `previous` is the position whose
/// check mark is to be cleared; -1, or any other position without an item, means none.
using LogLevelApplied = std::function<void(int previous, int level)>;

/// What the person can ask the agent for. Main thread; nothing waits, except in automation mode.
class AgentCommands {
public:
    virtual ~AgentCommands() = default;

    // Their only outcome is a log line.
    virtual void forwardFolderScan(const QString& folder) = 0; ///< the path travels unchanged
    virtual void scanBackground() = 0;
    virtual void stopScan() = 0;
    virtual void checkUpdates() = 0;
    virtual void checkPolicyUpdates() = 0;

    /// Asks for the agent's log level, when the submenu is about to open. `checkedPosition` is that
    /// of the item checked now, -1 for none; `applied` is called only when the level differs from
    /// it.
    virtual void readLogLevel(int checkedPosition, LogLevelApplied applied) = 0;
    /// Sets the agent's log level to the position (0 to 3) of the chosen item. `applied` is called
    /// once the agent has agreed; nothing is sent when the level is that already.
    virtual void logging(int position, LogLevelApplied applied) = 0;
};

} // namespace korvale
