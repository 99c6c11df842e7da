#pragma once

#include "agent/bus/ControlPort.h"

namespace korvale::agent {

class AgentStatus;
class FindingsKeeper;
class Gatekeeper;
class Scans;
struct Caller;

/// Answers korvale-agentctl. Main thread; what waits for a disk is done by the keeper's thread.
class ControlRequests : public ControlHandler {
public:
    /// All must outlive this object.
    ControlRequests(Gatekeeper& gatekeeper, AgentStatus& status, FindingsKeeper& keeper,
                    Scans& scans)
        : m_gatekeeper(gatekeeper), m_status(status), m_keeper(keeper), m_scans(scans) {}

    void control(const ControlCall& call) override;

private:
    void admitted(const ControlCall& call, const Caller& caller);
    void threats(const ControlCall& call, const Caller& caller);
    void startScan(const ControlCall& call, const Caller& caller);
    void stopScan(const ControlCall& call, const Caller& caller);
    void stopWithConsent(const ControlCall& call);

    Gatekeeper& m_gatekeeper;
    AgentStatus& m_status;
    FindingsKeeper& m_keeper;
    Scans& m_scans;
};

} // namespace korvale::agent
