#pragma once

#include "agent/bus/Caller.h"
#include "agent/bus/IncomingRequest.h"

#include <QStringView>

namespace korvale::agent {

class AgentTasks;
class Gatekeeper;
enum class Task;

/// Answers the ten commands. Whatever a request holds, it gets exactly one reply, and a refusal
/// says why in "RESP".
class Requests : public RequestHandler {
public:
    /// Both must outlive this object.
    Requests(Gatekeeper& gatekeeper, AgentTasks& tasks)
        : m_gatekeeper(gatekeeper), m_tasks(tasks) {}

    void request(const IncomingRequest& request) override;

private:
    using Handler = void (Requests::*)(const IncomingRequest&, const Caller&);
    struct Entry {
        QStringView command;
        Task task;
        Handler handler;
    };
    static const Entry kEntries[];

    void scan(const IncomingRequest& request, const Caller& caller);
    void stopScans(const IncomingRequest& request, const Caller& caller);
    void checkUpdates(const IncomingRequest& request, const Caller& caller);
    void readConfiguration(const IncomingRequest& request, const Caller& caller);
    void logLevel(const IncomingRequest& request, const Caller& caller);
    void setLogLevel(const IncomingRequest& request, const Caller& caller);
    void driver(const IncomingRequest& request, const Caller& caller);
    void version(const IncomingRequest& request, const Caller& caller);
    void deviceName(const IncomingRequest& request, const Caller& caller);
    void policy(const IncomingRequest& request, const Caller& caller);
    void policyTime(const IncomingRequest& request, const Caller& caller);
    void withConsent(const IncomingRequest& request, Task task, Handler handler);

    Gatekeeper& m_gatekeeper;
    AgentTasks& m_tasks;
};

} // namespace korvale::agent
