#pragma once

#include "agent/app/AgentTasks.h"

#include <QStringList>

namespace korvale::agent {

/// Keeps what it is told to do, and refuses as told.
class FakeTasks : public AgentTasks {
public:
    [[nodiscard]] AgentFacts facts() const override { return currentFacts; }
    void greet() override { did.append(QStringLiteral("greet")); }
    void startFolderScan(const Caller& caller, const QString& folder, const Done& done) override {
        note(QStringLiteral("scan %1 for %2").arg(folder).arg(caller.uid), done);
    }
    void startBackgroundScan(const Caller& caller, const Done& done) override {
        note(QStringLiteral("background scan for %1").arg(caller.uid), done);
    }
    [[nodiscard]] bool ownsEveryScan(std::uint32_t /*uid*/) const override { return scansAreOwn; }
    void stopScans(const Done& done) override { note(QStringLiteral("stop"), done); }
    void checkUpdates(const Done& done) override { note(QStringLiteral("update"), done); }
    void readConfiguration(const Done& done) override {
        note(QStringLiteral("configuration"), done);
    }
    void setLogLevel(LogLevel level) override {
        did.append(QStringLiteral("level %1").arg(static_cast<int>(level)));
    }

    AgentFacts currentFacts;
    QString refusal;
    bool scansAreOwn = true;
    QStringList did;

private:
    void note(const QString& what, const Done& done) {
        did.append(what);
        done(refusal);
    }
};

} // namespace korvale::agent
