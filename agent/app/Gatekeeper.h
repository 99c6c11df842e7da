#pragma once

#include "agent/bus/CallerLookup.h"
#include "agent/bus/Consent.h"
#include "agent/bus/RequestLimits.h"

#include <functional>

namespace korvale::agent {

/// What somebody on the bus wants of the agent.
enum class Task {
    Ask,           ///< what everybody may know
    Scan,          ///< a scan of what the caller may read, or a background scan
    StopScans,     ///< scans that somebody else began
    Update,        ///< look for signatures, read the configuration again
    SetLogLevel,   ///< of the agent
    View,          ///< threats and states, with korvale-agentctl
    ManageThreats, ///< quarantine, restore, waive, delete
};

/// Decides who may do what: root everything; others as much as their limit allows, and what polkit
/// consents to. Without polkit others may ask and scan. Every refusal is one log line. Main thread;
/// never waits.
class Gatekeeper {
public:
    using Admitted = std::function<void(const Caller&)>;
    /// `reason` is a sentence for the caller.
    using Refused = std::function<void(const QString& reason)>;

    virtual ~Gatekeeper() = default;
    /// `what` names the request in the log. One of the two is called once, now or later.
    virtual void admit(const QDBusConnection& connection, const QString& busName, Task task,
                       const QString& what, const Admitted& admitted, const Refused& refused);
    /// Logs a refusal that was decided elsewhere.
    static void logRefusal(const QString& what, const Caller& caller, const QString& reason);
    /// The bus was lost.
    void forgetCallers() { m_lookup.forget(); }

private:
    void askConsent(const QDBusConnection& connection, const Caller& caller, Task task,
                    const QString& what, const Admitted& admitted, const Refused& refused);

    CallerLookup m_lookup;
    Consent m_consent;
    RequestLimits m_questions{{60, std::chrono::seconds(1)}};
    RequestLimits m_tasks{{20, std::chrono::seconds(3)}};
};

} // namespace korvale::agent
