#include "agent/app/AgentStatus.h"

#include "agent/app/Agent.h"
#include "agent/app/ThreatJson.h"
#include "agent/app/WatchJson.h"
#include "agent/publish/BuildSettings.h"

#include <QJsonArray>

namespace korvale::agent {
namespace {

QString kindOf(ScanKind kind) {
    return kind == ScanKind::Folder ? QStringLiteral("folder") : QStringLiteral("background");
}

QJsonObject engineObject(const EngineState& state) {
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const qint64 time = state.signatureTime ? state.signatureTime->time_since_epoch().count() : 0;
    return {{QStringLiteral("reachable"), state.reachable},
            {QStringLiteral("version"), QString::fromStdString(state.version)},
            {QStringLiteral("signatures"), time},
            {QStringLiteral("fresh"), isFresh(state, now)},
            {QStringLiteral("problem"), QString::fromStdString(state.trouble)}};
}

QJsonObject scanObject(const ScanInfo& scan) {
    QJsonObject object{{QStringLiteral("running"), scan.running},
                       {QStringLiteral("number"), static_cast<qint64>(scan.id)},
                       {QStringLiteral("kind"), kindOf(scan.kind)},
                       {QStringLiteral("analysed"), static_cast<qint64>(scan.analysed)}};
    insertPath(object, scan.path);
    return object;
}

QJsonObject endedScanObject(const ScanReport::Ended& ended) {
    const ScanSummary& scan = ended.summary;
    const std::uint64_t left = scan.notScanned + scan.unreadable + scan.unanswered;
    QJsonObject object{{QStringLiteral("number"), static_cast<qint64>(scan.id)},
                       {QStringLiteral("kind"), kindOf(scan.kind)},
                       {QStringLiteral("analysed"), static_cast<qint64>(scan.analysed)},
                       {QStringLiteral("found"), static_cast<qint64>(scan.found)},
                       {QStringLiteral("not_scanned"), static_cast<qint64>(left)},
                       {QStringLiteral("stopped"), scan.stopped},
                       {QStringLiteral("ended"), ended.time}};
    insertPath(object, scan.path);
    return object;
}

QJsonArray listOf(const std::vector<std::string>& texts) {
    QJsonArray list;
    for (const std::string& text : texts) {
        list.append(QString::fromStdString(text));
    }
    return list;
}

} // namespace

QJsonObject Agent::status() const {
    QJsonObject object{
        {QStringLiteral("version"), build::kVersion.toString()},
        {QStringLiteral("engine"), engineObject(m_engineState)},
        {QStringLiteral("threats"),
         QJsonObject{{QStringLiteral("detected"), m_threats.detected()},
                     {QStringLiteral("quarantined"), m_threats.quarantined()},
                     {QStringLiteral("waived"), m_threats.waived()}}},
        {QStringLiteral("watch"), watchList(m_watch)},
        {QStringLiteral("watch_counts"), watchCounts(m_watch)},
        {QStringLiteral("exploits"), m_exploits.status()},
        {QStringLiteral("update"),
         QJsonObject{
             {QStringLiteral("asked"), static_cast<qint64>(m_updates.facts().asked)},
             {QStringLiteral("outcome"), m_updates.facts().outcome},
             {QStringLiteral("wait_until"), static_cast<qint64>(m_updates.facts().waitUntil)}}},
        {QStringLiteral("problems"), QJsonArray::fromStringList(m_problems.values())}};
    QJsonArray scans;
    for (const ScanInfo& scan : m_scanner.scans()) {
        scans.append(scanObject(scan));
    }
    QJsonArray ended;
    for (const ScanReport::Ended& scan : m_scanReport.ended()) {
        ended.append(endedScanObject(scan));
    }
    if (!scans.isEmpty()) {
        object.insert(QStringLiteral("scan"), scans.first());
    }
    if (!ended.isEmpty()) {
        object.insert(QStringLiteral("last_scan"), ended.last());
    }
    object.insert(QStringLiteral("scans"), scans);
    object.insert(QStringLiteral("ended_scans"), ended);
    return object;
}

QJsonObject Agent::policy() const {
    const Configuration& configuration = m_configuration.current();
    const QJsonObject policy{
        {QStringLiteral("file"), QString::fromStdString(m_configuration.file())},
        {QStringLiteral("read"), m_configuration.time()},
        {QStringLiteral("name"), QString::fromStdString(configuration.policyName)},
        {QStringLiteral("notifications"), configuration.policyNotifications},
        {QStringLiteral("background"), listOf(configuration.background)},
        {QStringLiteral("exclude"), listOf(configuration.exclude)},
        {QStringLiteral("other_file_systems"), configuration.otherFileSystems},
        {QStringLiteral("watch"), listOf(configuration.watchFolders)},
        {QStringLiteral("block"),
         configuration.blockExecute ? QStringLiteral("execute") : QStringLiteral("nothing")},
        {QStringLiteral("exploits"), configuration.tellExploits},
        {QStringLiteral("largest_file"), static_cast<qint64>(configuration.largestFile)},
        {QStringLiteral("quarantine_unsafe"), configuration.quarantineUnsafe},
        {QStringLiteral("quarantine_abnormal"), configuration.quarantineAbnormal}};
    return {{QStringLiteral("policy"), policy},
            {QStringLiteral("problem"), m_configuration.problem()}};
}

QJsonObject Agent::devices() const {
    return {{QStringLiteral("devices"), m_devices.list()}};
}

void Agent::why(const std::string& path, const Answer& answer) {
    QJsonObject object = watchRule(m_watch, path);
    insertPath(object, path);
    m_lastVerdict.ask(path, [object, answer](const QJsonObject& verdict) {
        QJsonObject whole = object;
        for (auto member = verdict.begin(); member != verdict.end(); ++member) {
            whole.insert(member.key(), member.value());
        }
        answer(whole);
    });
}

} // namespace korvale::agent
