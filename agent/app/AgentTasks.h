#pragma once

#include "agent/base/Log.h"
#include "agent/bus/Caller.h"

#include <QString>

#include <functional>

namespace korvale::agent {

/// What the agent says of itself when it is asked.
struct AgentFacts {
    QString deviceName;
    QString policyName;
    QString policyMode;
    QString policyTime; ///< when the configuration in use was read
    QString version;
    bool notifications = true;   ///< the policy allows desktop notifications
    bool driverConnected = true; ///< every file system that shall be watched is
    LogLevel logLevel = LogLevel::Info;
};

/// What requests make the agent do. `Done` is called once, now or later, with an empty text or why
/// it was not done, a sentence for the caller.
class AgentTasks {
public:
    using Done = std::function<void(const QString& refusal)>;

    virtual ~AgentTasks() = default;
    [[nodiscard]] virtual AgentFacts facts() const = 0;
    /// A program has connected and knows nothing yet.
    virtual void greet() = 0;
    /// The folder is opened with the caller's own rights.
    virtual void startFolderScan(const Caller& caller, const QString& folder, const Done& done) = 0;
    virtual void startBackgroundScan(const Caller& caller, const Done& done) = 0;
    /// Whether all scans that run or wait were begun by that user. True when there are none.
    [[nodiscard]] virtual bool ownsEveryScan(std::uint32_t uid) const = 0;
    virtual void stopScans(const Done& done) = 0;
    virtual void checkUpdates(const Done& done) = 0;
    virtual void readConfiguration(const Done& done) = 0;
    virtual void setLogLevel(LogLevel level) = 0;
};

} // namespace korvale::agent
