#include "agent_sim/AgentModel.h"

#include "agent_sim/HostCacheNames.h"
#include "agent_sim/HostCacheWriter.h"

namespace korvale::sim {
namespace {

constexpr int kScannerIdle = 1;
constexpr int kScannerBusy = 2;

QJsonObject exploitRecord(const Exploit& exploit, const QString& when) {
    return {{QStringLiteral("When"), when},
            {QStringLiteral("Category"), QStringLiteral("Exploit")},
            {QStringLiteral("Path"), exploit.path},
            {QStringLiteral("Event"), exploit.state},
            {QStringLiteral("ItemType"), exploit.type},
            {QStringLiteral("PID"), exploit.pid}};
}

} // namespace

QString AgentModel::when() const {
    return m_eventTime.isEmpty()
               ? QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
               : m_eventTime;
}

void AgentModel::setFile(const QString& path, const FileThreat& threat) {
    if (threat.state == 0) {
        m_files.remove(path);
    } else {
        m_files.put(path, {{QStringLiteral("State"), threat.state},
                           {QStringLiteral("ID"), threat.id},
                           {QStringLiteral("Score"), threat.score}});
    }
    m_changed |= bit::kFileStates;
}

std::optional<FileThreat> AgentModel::file(const QString& path) const {
    const std::optional<QJsonObject> record = m_files.find(path);
    if (!record) {
        return std::nullopt;
    }
    return FileThreat{record->value(QStringLiteral("State")).toInt(),
                      record->value(QStringLiteral("ID")).toString(),
                      record->value(QStringLiteral("Score"))};
}

void AgentModel::setProcess(const QString& key, int state, const QString& path,
                            const QJsonValue& pid, const QString& count) {
    m_processes.put(key, {{QStringLiteral("State"), state},
                          {QStringLiteral("Path"), path},
                          {QStringLiteral("PID"), pid},
                          {QStringLiteral("Count"), count}});
    m_changed |= bit::kProcesses;
}

void AgentModel::putEvent(const QString& key, const QJsonObject& record) {
    m_events.putAsNewest(key, record);
    m_changed |= bit::kProcesses;
}

void AgentModel::addThreatEvent(const QString& path, int state, int event) {
    // The list is an object: one path has one record, its latest event.
    putEvent(path, {{QStringLiteral("When"), when()},
                    {QStringLiteral("Category"), QStringLiteral("Threat")},
                    {QStringLiteral("Path"), path},
                    {QStringLiteral("State"), state},
                    {QStringLiteral("Event"), event}});
}

void AgentModel::addExploitEvent(const Exploit& exploit) {
    putEvent(QStringLiteral("exploit-%1").arg(m_nextExploit++), exploitRecord(exploit, when()));
}

void AgentModel::addExploit(const Exploit& exploit) {
    setProcess(QString::number(exploit.pid), exploit.state, exploit.path, exploit.pid,
               exploit.count);
    addExploitEvent(exploit);
}

void AgentModel::putDeviceEvent(const QString& key, const QJsonObject& record) {
    m_devices.put(key, record);
    m_changed |= bit::kDeviceEvents;
}

void AgentModel::addDeviceEvent(const DeviceEvent& event) {
    QJsonObject record{{QStringLiteral("Device Type"), event.type},
                       {QStringLiteral("When"), when()},
                       {QStringLiteral("Action"), event.action}};
    const auto add = [&](const QString& member, const QString& value) {
        if (!value.isEmpty()) {
            record.insert(member, value);
        }
    };
    add(QStringLiteral("Vendor ID"), event.vendor);
    add(QStringLiteral("Product ID"), event.product);
    add(QStringLiteral("Serial Number"), event.serial);
    putDeviceEvent(QStringLiteral("device-%1").arg(m_nextDevice++), record);
}

void AgentModel::setScanning(bool scanning) {
    m_scanning = scanning;
    m_changed |= bit::kScannerState;
}

void AgentModel::addAnalysed(qint64 files) {
    setAnalysed(m_analysed + files);
}

void AgentModel::setAnalysed(qint64 files) {
    m_analysed = files;
    m_changed |= bit::kAnalysisCount;
}

void AgentModel::clearLists() {
    m_files.clear();
    m_processes.clear();
    m_events.clear();
    m_devices.clear();
    m_changed |= bit::kFileStates | bit::kProcesses | bit::kDeviceEvents;
}

bool AgentModel::publish(HostCacheWriter& writer, std::optional<std::uint32_t> mask) {
    using Order = RecordList::Order;
    const auto write = [&](const QString& name, const auto& content) {
        return (maskBitOfFile(name) & m_changed) == 0 || writer.write(name, content());
    };
    const auto number = [](const QString& member, qint64 value) {
        return '{' + quotedJson(member) + ':' + QByteArray::number(value) + '}';
    };
    const auto processes = [&] { return m_processes.toJson(Order::OldestFirst); };
    const bool written =
        write(QStringLiteral("file_states.log"),
              [&] { return m_files.toJson(Order::OldestFirst); }) &&
        write(QStringLiteral("scanner_state.log"),
              [&] {
                  return number(QStringLiteral("ScannerState"),
                                m_scanning ? kScannerBusy : kScannerIdle);
              }) &&
        write(QStringLiteral("analysis_count.log"),
              [&] { return number(QStringLiteral("AnalyzedCount"), m_analysed); }) &&
        write(QStringLiteral("external_device_control_events.log"),
              [&] { return m_devices.toJson(Order::OldestFirst); }) &&
        write(QStringLiteral("process_states.log"), processes) &&
        write(QStringLiteral("process_state.log"), processes) &&
        // The newest event first: the exploit at hand is the one that the first record names.
        write(QStringLiteral("file_process_events.log"),
              [&] { return m_events.toJson(Order::NewestFirst); }) &&
        writer.write(QStringLiteral("header.log"),
                     number(QStringLiteral("MessageMask"), mask.value_or(m_changed)));
    if (written) {
        m_changed = 0;
    }
    return written;
}

} // namespace korvale::sim
