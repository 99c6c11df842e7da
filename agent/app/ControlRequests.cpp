#include "agent/app/ControlRequests.h"

#include "agent/app/AgentStatus.h"
#include "agent/app/FindingsKeeper.h"
#include "agent/app/Gatekeeper.h"
#include "agent/app/Scans.h"
#include "agent/app/ThreatCommands.h"
#include "agent/app/ThreatJson.h"

namespace korvale::agent {
namespace {

Task taskOf(const control::Method& method) {
    switch (method.task) {
    case control::Task::Scan:
        return Task::Scan;
    case control::Task::ManageThreats:
        return Task::ManageThreats;
    case control::Task::View:
        break;
    }
    return Task::View;
}

QString nameOf(const ControlCall& call) {
    return QString::fromUtf8(call.method->name.data(),
                             static_cast<qsizetype>(call.method->name.size()));
}

} // namespace

void ControlRequests::control(const ControlCall& call) {
    m_gatekeeper.admit(
        call.connection, call.caller(), taskOf(*call.method), nameOf(call),
        [this, call](const Caller& caller) { admitted(call, caller); },
        [call](const QString& reason) { call.fail(control::kRefused, reason); });
}

void ControlRequests::admitted(const ControlCall& call, const Caller& caller) {
    const std::string_view method = call.method->name;
    if (ThreatCommands::answers(*call.method)) {
        threats(call, caller);
    } else if (method == "Scan") {
        startScan(call, caller);
    } else if (method == "StopScan") {
        stopScan(call, caller);
    } else if (method == "Status") {
        call.succeed(m_status.status());
    } else if (method == "Policy") {
        call.succeed(m_status.policy());
    } else if (method == "Devices") {
        call.succeed(m_status.devices());
    } else if (method == "Why") {
        const std::optional<std::string> path = pathArgument(call.arguments);
        if (path) {
            m_status.why(*path, [call](const QJsonObject& answer) { call.succeed(answer); });
        } else {
            call.fail(control::kBadArguments, QStringLiteral("An absolute path is needed."));
        }
    } else {
        call.fail(control::kUnavailable, QStringLiteral("This agent cannot do that."));
    }
}

void ControlRequests::threats(const ControlCall& call, const Caller& caller) {
    m_keeper.change(
        [call, uid = caller.uid](Store& store, Vault* vault) -> QJsonObject {
            if (vault == nullptr) {
                return {
                    {QStringLiteral("ok"), false},
                    {QStringLiteral("code"), QStringLiteral("unavailable")},
                    {QStringLiteral("error"), QStringLiteral("The quarantine cannot be used.")}};
            }
            return ThreatCommands(store, *vault).answer(*call.method, call.arguments, uid);
        },
        [call](const QJsonObject& answer) { call.reply(answer); });
}

void ControlRequests::startScan(const ControlCall& call, const Caller& caller) {
    const auto answer = [call](std::uint64_t id, const QString& refusal) {
        if (refusal.isEmpty()) {
            call.succeed({{QStringLiteral("scan"), static_cast<qint64>(id)}});
        } else {
            call.fail(control::kFailed, refusal);
        }
    };
    if (!call.arguments.contains(QStringLiteral("uri")) &&
        !call.arguments.contains(QStringLiteral("path"))) {
        m_scans.startBackground(caller, answer);
        return;
    }
    const std::optional<std::string> path = pathArgument(call.arguments);
    if (path) {
        m_scans.startFolder(caller, *path, answer);
    } else {
        call.fail(control::kBadArguments, QStringLiteral("An absolute path is needed."));
    }
}

void ControlRequests::stopScan(const ControlCall& call, const Caller& caller) {
    if (caller.isRoot() || m_scans.allOf(caller.uid)) {
        stopWithConsent(call);
        return;
    }
    m_gatekeeper.admit(
        call.connection, call.caller(), Task::StopScans, nameOf(call),
        [this, call](const Caller&) { stopWithConsent(call); },
        [call](const QString& reason) { call.fail(control::kRefused, reason); });
}

void ControlRequests::stopWithConsent(const ControlCall& call) {
    const QJsonValue number = call.arguments.value(QStringLiteral("scan"));
    const bool stopped = number.isDouble()
                             ? m_scans.stop(static_cast<std::uint64_t>(number.toInteger()))
                             : m_scans.stopAll();
    if (stopped) {
        call.succeed();
    } else {
        call.fail(control::kUnknown, QStringLiteral("There is no such scan."));
    }
}

} // namespace korvale::agent
