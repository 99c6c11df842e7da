#include "agent_sim/Answers.h"

#include <algorithm>
#include <iterator>

namespace korvale::sim {
namespace {

QJsonObject status(const QString& text) {
    return {{QStringLiteral("RESP"), text}};
}

} // namespace

constexpr Answers::Entry Answers::kEntries[] = {
    {u"SCAN", &Answers::scan},        {u"CHKU", &Answers::accept},
    {u"PLYU", &Answers::accept},      {u"GLOG", &Answers::logLevel},
    {u"SLOG", &Answers::setLogLevel}, {u"GDRV", &Answers::driver},
    {u"GOPV", &Answers::companion},   {u"CUST", &Answers::deviceName},
    {u"POLY", &Answers::policy},      {u"GPUT", &Answers::policyUpdated},
};

Answers::Answers(AgentSettings& settings, ScanRequests& scans)
    : m_settings(settings), m_scans(scans) {}

QJsonObject Answers::answer(const QJsonObject& request) {
    const QString command = request.value(QStringLiteral("CMD_")).toString();
    const auto* entry = std::find_if(std::begin(kEntries), std::end(kEntries),
                                     [&](const Entry& known) { return known.command == command; });
    if (entry == std::end(kEntries)) {
        return status(QStringLiteral("unknown command"));
    }
    return (this->*entry->answer)(request);
}

QJsonObject Answers::value(const QString& text) const {
    QJsonObject reply = status(m_settings.status);
    reply.insert(QStringLiteral("VALU"), text);
    return reply;
}

QJsonObject Answers::scan(const QJsonObject& request) {
    const QString folder = request.value(QStringLiteral("START")).toString();
    QString refusal;
    if (request.contains(QStringLiteral("STOP"))) {
        refusal = m_scans.stopScan();
    } else if (folder == QLatin1String(" ")) {
        refusal = m_scans.startBackgroundScan();
    } else {
        refusal = m_scans.startFolderScan(folder);
    }
    return status(refusal.isEmpty() ? m_settings.status : refusal);
}

QJsonObject Answers::accept(const QJsonObject& /*request*/) {
    return status(m_settings.status);
}

QJsonObject Answers::logLevel(const QJsonObject& /*request*/) {
    return value(QString::number(m_settings.logLevel));
}

QJsonObject Answers::setLogLevel(const QJsonObject& request) {
    bool isNumber = false;
    const int level = request.value(QStringLiteral("VALU")).toString().toInt(&isNumber);
    if (!isNumber || level < 0 || level > 3) {
        return status(QStringLiteral("no such log level"));
    }
    m_settings.logLevel = level;
    return status(m_settings.status);
}

QJsonObject Answers::driver(const QJsonObject& /*request*/) {
    return value(m_settings.driverValue);
}

QJsonObject Answers::companion(const QJsonObject& /*request*/) {
    return value(m_settings.companionVersion);
}

QJsonObject Answers::deviceName(const QJsonObject& /*request*/) {
    return value(m_settings.deviceName);
}

QJsonObject Answers::policy(const QJsonObject& /*request*/) {
    QJsonObject reply = status(m_settings.status);
    reply.insert(QStringLiteral("PNAME"), m_settings.policyName);
    reply.insert(QStringLiteral("PMODE"), m_settings.policyMode);
    reply.insert(QStringLiteral("PNOTF"),
                 m_settings.policyNotifications ? QStringLiteral("OK") : QStringLiteral("NO"));
    return reply;
}

QJsonObject Answers::policyUpdated(const QJsonObject& /*request*/) {
    return value(m_settings.policyUpdated);
}

} // namespace korvale::sim
