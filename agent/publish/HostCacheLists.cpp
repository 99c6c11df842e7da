#include "agent/publish/HostCacheLists.h"

#include "agent/publish/HostCacheNames.h"
#include "agent/publish/HostCacheWriter.h"

#include <algorithm>
#include <utility>

namespace korvale::agent {
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

QString HostCacheLists::when() const {
    return m_eventTime.isEmpty()
               ? QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))
               : m_eventTime;
}

void HostCacheLists::setFile(const QString& path, const FileThreat& threat) {
    if (threat.state == 0) {
        m_files.remove(path);
    } else {
        m_files.put(path, {{QStringLiteral("State"), threat.state},
                           {QStringLiteral("ID"), threat.id},
                           {QStringLiteral("Score"), threat.score}});
    }
    m_changed |= bit::kFileStates;
}

std::optional<FileThreat> HostCacheLists::file(const QString& path) const {
    const std::optional<QJsonObject> record = m_files.find(path);
    if (!record) {
        return std::nullopt;
    }
    return FileThreat{record->value(QStringLiteral("State")).toInt(),
                      record->value(QStringLiteral("ID")).toString(),
                      record->value(QStringLiteral("Score"))};
}

void HostCacheLists::setProcess(const QString& key, int state, const QString& path,
                                const QJsonValue& pid, const QString& count) {
    m_processes.put(key, {{QStringLiteral("State"), state},
                          {QStringLiteral("Path"), path},
                          {QStringLiteral("PID"), pid},
                          {QStringLiteral("Count"), count}});
    m_changed |= bit::kProcesses;
}

void HostCacheLists::removeProcess(const QString& key) {
    if (m_processes.remove(key)) {
        m_changed |= bit::kProcesses;
    }
}

void HostCacheLists::putEvent(const QString& key, const QJsonObject& record) {
    m_events.putAsNewest(key, record);
    m_events.keepNewest(m_eventLimit);
    m_changed |= bit::kProcesses;
}

void HostCacheLists::addThreatEvent(const QString& path, int state, int event) {
    // The list is an object: one path has one record, its latest event.
    putEvent(path, {{QStringLiteral("When"), when()},
                    {QStringLiteral("Category"), QStringLiteral("Threat")},
                    {QStringLiteral("Path"), path},
                    {QStringLiteral("State"), state},
                    {QStringLiteral("Event"), event}});
}

void HostCacheLists::addExploitEvent(const Exploit& exploit) {
    putEvent(QStringLiteral("exploit-%1").arg(m_nextExploit++), exploitRecord(exploit, when()));
}

void HostCacheLists::addExploit(const Exploit& exploit) {
    setProcess(QString::number(exploit.pid), exploit.state, exploit.path, exploit.pid,
               exploit.count);
    addExploitEvent(exploit);
}

void HostCacheLists::markChanged(std::uint32_t bits) {
    m_changed |= bits;
    if ((bits & bit::kDeviceEvents) != 0) {
        m_devicesTaken = false;
    }
}

void HostCacheLists::putDeviceEvent(const QString& key, const QJsonObject& record) {
    if (m_devicesOnce && std::exchange(m_devicesTaken, false)) {
        m_devices.clear();
    }
    m_devices.put(key, record);
    m_changed |= bit::kDeviceEvents;
}

void HostCacheLists::addDeviceEvent(const DeviceEvent& event) {
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

void HostCacheLists::setScanning(bool scanning) {
    m_scanning = scanning;
    m_changed |= bit::kScannerState;
}

void HostCacheLists::addAnalysed(qint64 files) {
    setAnalysed(m_analysed + files);
}

void HostCacheLists::setAnalysed(qint64 files) {
    m_analysed = files;
    m_changed |= bit::kAnalysisCount;
}

void HostCacheLists::clearLists() {
    m_files.clear();
    m_processes.clear();
    m_events.clear();
    m_devices.clear();
    m_changed |= bit::kFileStates | bit::kProcesses | bit::kDeviceEvents;
}

HostCacheBatch HostCacheLists::takeBatch(std::optional<std::uint32_t> mask) {
    using Order = RecordList::Order;
    HostCacheBatch batch;
    const auto add = [&](const QString& name, const auto& content) {
        if ((maskBitOfFile(name) & m_changed) != 0) {
            batch.files.push_back({name, content()});
        }
    };
    const auto number = [](const QString& member, qint64 value) {
        return '{' + quotedJson(member) + ':' + QByteArray::number(value) + '}';
    };
    const auto processes = [&] { return m_processes.toJson(Order::OldestFirst); };
    add(QStringLiteral("file_states.log"), [&] { return m_files.toJson(Order::OldestFirst); });
    add(QStringLiteral("scanner_state.log"), [&] {
        return number(QStringLiteral("ScannerState"), m_scanning ? kScannerBusy : kScannerIdle);
    });
    add(QStringLiteral("analysis_count.log"),
        [&] { return number(QStringLiteral("AnalyzedCount"), m_analysed); });
    add(QStringLiteral("external_device_control_events.log"),
        [&] { return m_devices.toJson(Order::OldestFirst); });
    add(QStringLiteral("process_states.log"), processes);
    add(QStringLiteral("process_state.log"), processes);
    // The newest event first: the exploit at hand is the one that the first record names.
    add(QStringLiteral("file_process_events.log"),
        [&] { return m_events.toJson(Order::NewestFirst); });
    batch.files.push_back({QStringLiteral("header.log"),
                           number(QStringLiteral("MessageMask"), mask.value_or(m_changed))});
    batch.bits = std::exchange(m_changed, 0);
    m_devicesTaken = m_devicesTaken || (batch.bits & bit::kDeviceEvents) != 0;
    return batch;
}

bool HostCacheLists::publish(HostCacheWriter& writer, std::optional<std::uint32_t> mask) {
    const HostCacheBatch batch = takeBatch(mask);
    const bool written =
        std::all_of(batch.files.begin(), batch.files.end(), [&](const HostCacheBatch::File& file) {
            return writer.write(file.name, file.content);
        });
    if (!written) {
        markChanged(batch.bits);
    }
    return written;
}

} // namespace korvale::agent
