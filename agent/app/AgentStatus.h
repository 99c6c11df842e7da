#pragma once

#include <QJsonObject>

#include <string>

namespace korvale::agent {

/// What korvale-agentctl is told of the agent itself; docs/agent-control.md has the members. Main
/// thread.
class AgentStatus {
public:
    virtual ~AgentStatus() = default;
    [[nodiscard]] virtual QJsonObject status() const = 0;
    [[nodiscard]] virtual QJsonObject policy() const = 0;
    [[nodiscard]] virtual QJsonObject devices() const = 0;
    /// `path` is absolute.
    [[nodiscard]] virtual QJsonObject why(const std::string& path) const = 0;
};

} // namespace korvale::agent
