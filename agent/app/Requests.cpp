#include "agent/app/Requests.h"

#include "agent/app/AgentTasks.h"
#include "agent/app/Gatekeeper.h"

#include <algorithm>
#include <iterator>

namespace korvale::agent {
namespace {

const QString kOk = QStringLiteral("OK");

QJsonObject status(const QString& text) {
    return {{QStringLiteral("RESP"), text}};
}

QJsonObject value(const QString& text) {
    return {{QStringLiteral("RESP"), kOk}, {QStringLiteral("VALU"), text}};
}

QString nameOf(const IncomingRequest& request) {
    const bool known = request.command.size() == 4;
    return QStringLiteral("\"%1\"").arg(known ? request.command : QStringLiteral("?"));
}

/// Replies with the outcome, and logs one that is a refusal.
AgentTasks::Done replyTo(const IncomingRequest& request, const Caller& caller) {
    return [request, caller](const QString& refusal) {
        if (!refusal.isEmpty()) {
            Gatekeeper::logRefusal(nameOf(request), caller, refusal);
        }
        request.reply(status(refusal.isEmpty() ? kOk : refusal));
    };
}

} // namespace

constexpr Requests::Entry Requests::kEntries[] = {
    {u"SCAN", Task::Scan, &Requests::scan},
    {u"CHKU", Task::Update, &Requests::checkUpdates},
    {u"PLYU", Task::Update, &Requests::readConfiguration},
    {u"GLOG", Task::Ask, &Requests::logLevel},
    {u"SLOG", Task::SetLogLevel, &Requests::setLogLevel},
    {u"GDRV", Task::Ask, &Requests::driver},
    {u"GOPV", Task::Ask, &Requests::version},
    {u"CUST", Task::Ask, &Requests::deviceName},
    {u"POLY", Task::Ask, &Requests::policy},
    {u"GPUT", Task::Ask, &Requests::policyTime},
};

void Requests::request(const IncomingRequest& request) {
    const auto* entry =
        std::find_if(std::begin(kEntries), std::end(kEntries),
                     [&](const Entry& known) { return known.command == request.command; });
    if (entry == std::end(kEntries)) {
        m_gatekeeper.admit(
            request.connection, request.caller(), Task::Ask, nameOf(request),
            [request](const Caller& caller) {
                replyTo(request, caller)(QStringLiteral("There is no such command."));
            },
            [request](const QString& reason) { request.reply(status(reason)); });
        return;
    }
    // Stopping one's own scan is part of scanning; whose scan it is shows only later.
    withConsent(request, entry->task, entry->handler);
}

void Requests::withConsent(const IncomingRequest& request, Task task, Handler handler) {
    m_gatekeeper.admit(
        request.connection, request.caller(), task, nameOf(request),
        [this, request, handler](const Caller& caller) { (this->*handler)(request, caller); },
        [request](const QString& reason) { request.reply(status(reason)); });
}

void Requests::scan(const IncomingRequest& request, const Caller& caller) {
    const QString folder = request.object.value(QStringLiteral("START")).toString();
    if (request.object.contains(QStringLiteral("STOP"))) {
        if (caller.isRoot() || m_tasks.ownsEveryScan(caller.uid)) {
            stopScans(request, caller);
        } else {
            withConsent(request, Task::StopScans, &Requests::stopScans);
        }
    } else if (folder == QLatin1String(" ")) {
        m_tasks.startBackgroundScan(caller, replyTo(request, caller));
    } else if (!folder.startsWith(u'/') || folder.contains(QChar::Null)) {
        replyTo(request, caller)(QStringLiteral("The folder needs a path that begins with /."));
    } else {
        m_tasks.startFolderScan(caller, folder, replyTo(request, caller));
    }
}

void Requests::stopScans(const IncomingRequest& request, const Caller& caller) {
    m_tasks.stopScans(replyTo(request, caller));
}

void Requests::checkUpdates(const IncomingRequest& request, const Caller& caller) {
    m_tasks.checkUpdates(replyTo(request, caller));
}

void Requests::readConfiguration(const IncomingRequest& request, const Caller& caller) {
    m_tasks.readConfiguration(replyTo(request, caller));
}

void Requests::logLevel(const IncomingRequest& request, const Caller& /*caller*/) {
    request.reply(value(QString::number(static_cast<int>(m_tasks.facts().logLevel))));
}

void Requests::setLogLevel(const IncomingRequest& request, const Caller& caller) {
    const QString text = request.object.value(QStringLiteral("VALU")).toString();
    const bool known = text.size() == 1 && text >= QLatin1String("0") && text <= QLatin1String("3");
    if (!known) {
        replyTo(request, caller)(QStringLiteral("The log level is 0, 1, 2 or 3."));
        return;
    }
    m_tasks.setLogLevel(static_cast<LogLevel>(text.toInt()));
    request.reply(status(kOk));
}

void Requests::driver(const IncomingRequest& request, const Caller& /*caller*/) {
    request.reply(
        value(m_tasks.facts().driverConnected ? QStringLiteral("1") : QStringLiteral("0")));
    // Programs ask this when they connect: the moment to tell them what was signalled before.
    m_tasks.greet();
}

void Requests::version(const IncomingRequest& request, const Caller& /*caller*/) {
    request.reply(value(m_tasks.facts().version));
}

void Requests::deviceName(const IncomingRequest& request, const Caller& /*caller*/) {
    request.reply(value(m_tasks.facts().deviceName));
}

void Requests::policy(const IncomingRequest& request, const Caller& /*caller*/) {
    const AgentFacts facts = m_tasks.facts();
    QJsonObject reply = status(kOk);
    reply.insert(QStringLiteral("PNAME"), facts.policyName);
    reply.insert(QStringLiteral("PMODE"), facts.policyMode);
    reply.insert(QStringLiteral("PNOTF"), facts.notifications ? kOk : QStringLiteral("NO"));
    request.reply(reply);
}

void Requests::policyTime(const IncomingRequest& request, const Caller& /*caller*/) {
    request.reply(value(m_tasks.facts().policyTime));
}

} // namespace korvale::agent
