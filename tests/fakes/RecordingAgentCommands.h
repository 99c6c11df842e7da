#pragma once

#include "core/base/AgentCommands.h"

#include <QStringList>

#include <utility>

namespace korvale::fakes {

/// Writes down in `done` what the agent was asked for, and keeps whom the log level was for.
class RecordingAgentCommands final : public AgentCommands {
public:
    explicit RecordingAgentCommands(QStringList& done) : m_done(done) {}

    void forwardFolderScan(const QString& folder) override {
        m_done << QStringLiteral("forwardFolderScan ") + folder;
    }
    void scanBackground() override { m_done << QStringLiteral("scanBackground"); }
    void stopScan() override { m_done << QStringLiteral("stopScan"); }
    void checkUpdates() override { m_done << QStringLiteral("checkUpdates"); }
    void checkPolicyUpdates() override { m_done << QStringLiteral("checkPolicyUpdates"); }
    void readLogLevel(int checkedPosition, LogLevelApplied applied) override {
        m_done << QStringLiteral("readLogLevel %1").arg(checkedPosition);
        answer = std::move(applied);
    }
    void logging(int position, LogLevelApplied applied) override {
        m_done << QStringLiteral("logging %1").arg(position);
        answer = std::move(applied);
    }

    LogLevelApplied answer;

private:
    QStringList& m_done;
};

} // namespace korvale::fakes
