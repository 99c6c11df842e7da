#include "agent/app/AgentStatus.h"

#include "agent/app/Agent.h"
#include "agent/app/ThreatJson.h"
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

QJsonObject lastScanObject(const ScanSummary& scan, qint64 ended) {
    const std::uint64_t left = scan.notScanned + scan.unreadable + scan.unanswered;
    QJsonObject object{{QStringLiteral("number"), static_cast<qint64>(scan.id)},
                       {QStringLiteral("kind"), kindOf(scan.kind)},
                       {QStringLiteral("analysed"), static_cast<qint64>(scan.analysed)},
                       {QStringLiteral("found"), static_cast<qint64>(scan.found)},
                       {QStringLiteral("not_scanned"), static_cast<qint64>(left)},
                       {QStringLiteral("stopped"), scan.stopped},
                       {QStringLiteral("ended"), ended}};
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
        {QStringLiteral("watch"), QJsonArray()},
        {QStringLiteral("update"),
         QJsonObject{
             {QStringLiteral("asked"), static_cast<qint64>(m_updates.facts().asked)},
             {QStringLiteral("outcome"), m_updates.facts().outcome},
             {QStringLiteral("wait_until"), static_cast<qint64>(m_updates.facts().waitUntil)}}},
        {QStringLiteral("problems"), QJsonArray::fromStringList(m_problems.values())}};
    const std::vector<ScanInfo> scans = m_scanner.scans();
    if (!scans.empty()) {
        object.insert(QStringLiteral("scan"), scanObject(scans.front()));
    }
    if (m_scanReport.last().id != 0) {
        object.insert(QStringLiteral("last_scan"),
                      lastScanObject(m_scanReport.last(), m_scanReport.lastEnd()));
    }
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
        {QStringLiteral("largest_file"), static_cast<qint64>(configuration.largestFile)},
        {QStringLiteral("quarantine_unsafe"), configuration.quarantineUnsafe},
        {QStringLiteral("quarantine_abnormal"), configuration.quarantineAbnormal}};
    return {{QStringLiteral("policy"), policy},
            {QStringLiteral("problem"), m_configuration.problem()}};
}

QJsonObject Agent::devices() const {
    return {{QStringLiteral("devices"), QJsonArray()}};
}

QJsonObject Agent::why(const std::string& path) const {
    PathRules rules;
    std::string error; // none: the configuration was checked
    for (const std::string& rule : m_configuration.current().exclude) {
        (void)rules.add(rule, error);
    }
    const std::string* excluded = rules.match(path);
    QJsonObject object{
        {QStringLiteral("watched"), false},
        {QStringLiteral("rule"),
         excluded == nullptr
             ? QStringLiteral("no file system is watched; scans look at it")
             : QStringLiteral("scan.exclude = \"%1\"").arg(QString::fromStdString(*excluded))},
        {QStringLiteral("verdict"), QStringLiteral("unknown")},
        {QStringLiteral("verdict_time"), 0}};
    insertPath(object, path);
    return object;
}

} // namespace korvale::agent
