#pragma once

#include <QJsonObject>

#include <functional>
#include <string>

namespace korvale::agent {

/// What korvale-agentctl is told of the agent itself; docs/agent-control.md has the members. Main
/// thread.
class AgentStatus {
public:
    using Answer = std::function<void(const QJsonObject& answer)>;

    virtual ~AgentStatus() = default;
    [[nodiscard]] virtual QJsonObject status() const = 0;
    [[nodiscard]] virtual QJsonObject policy() const = 0;
    [[nodiscard]] virtual QJsonObject devices() const = 0;
    /// `path` is absolute. `answer` is called once, later.
    virtual void why(const std::string& path, const Answer& answer) = 0;
};

} // namespace korvale::agent
