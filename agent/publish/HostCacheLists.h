#pragma once

#include "agent/publish/HostCacheBatch.h"
#include "agent/publish/RecordList.h"

#include <QDateTime>
#include <QJsonValue>

#include <cstdint>
#include <limits>
#include <optional>

namespace korvale::agent {

class HostCacheWriter;

/// File threat state bits, and the bits of a threat event.
namespace file_state {
inline constexpr int kUnsafe = 1;
inline constexpr int kAbnormal = 2;
inline constexpr int kWaived = 4;
inline constexpr int kQuarantined = 8;
} // namespace file_state
namespace threat_event {
inline constexpr int kDetected = 1;
inline constexpr int kQuarantined = 2;
inline constexpr int kWaived = 4;
inline constexpr int kRemoved = 8;
} // namespace threat_event

struct FileThreat {
    int state = 0;
    QString id;
    QJsonValue score;
};

struct Exploit {
    qint64 pid = 0;
    QString path;
    int state = 0;
    QString count;
    QString type; ///< decimal number of the violation
};

struct DeviceEvent {
    QString type;
    QString action; ///< "Block" or "FullAccess"
    QString vendor;
    QString product;
    QString serial;
};

/// The content of the host-cache lists, and which of the files are older than that. Nothing is
/// written before `publish` or `takeBatch`. One thread only.
class HostCacheLists {
public:
    /// State 0 takes the file off the list.
    void setFile(const QString& path, const FileThreat& threat);
    [[nodiscard]] std::optional<FileThreat> file(const QString& path) const;
    void setProcess(const QString& key, int state, const QString& path, const QJsonValue& pid,
                    const QString& count);
    void removeProcess(const QString& key);
    void addThreatEvent(const QString& path, int state, int event);
    void addExploitEvent(const Exploit& exploit);
    /// A process record and its event, as an attempt leaves them.
    void addExploit(const Exploit& exploit);
    void addDeviceEvent(const DeviceEvent& event);
    void putEvent(const QString& key, const QJsonObject& record);
    void putDeviceEvent(const QString& key, const QJsonObject& record);
    void setScanning(bool scanning);
    void addAnalysed(qint64 files);
    void setAnalysed(qint64 files);
    void clearLists();

    [[nodiscard]] qint64 analysed() const { return m_analysed; }
    /// Bits of the files whose content changed since the last `publish`.
    [[nodiscard]] std::uint32_t changed() const { return m_changed; }
    void markChanged(std::uint32_t bits);

    /// The changed files, then "header.log" with their mask (or with `mask`, where given). They
    /// count as unchanged from now on; `markChanged(batch.bits)` takes that back.
    [[nodiscard]] HostCacheBatch takeBatch(std::optional<std::uint32_t> mask = std::nullopt);
    /// Writes that batch. What could not be written stays changed.
    bool publish(HostCacheWriter& writer, std::optional<std::uint32_t> mask = std::nullopt);

    /// Beyond that many the oldest events are forgotten.
    void setEventLimit(qsizetype events) { m_eventLimit = events; }

    /// Readers take each device record of an announced file for a new one: records that were taken
    /// by a batch are left out of the next.
    void setDevicesOnce(bool once) { m_devicesOnce = once; }

    /// Time stamp of new events; now when not set.
    void setEventTime(const QString& when) { m_eventTime = when; }

private:
    [[nodiscard]] QString when() const;

    RecordList m_files;
    RecordList m_processes;
    RecordList m_events;
    RecordList m_devices;
    QString m_eventTime;
    qint64 m_analysed = 0;
    qint64 m_nextExploit = 1;
    qint64 m_nextDevice = 1;
    qsizetype m_eventLimit = std::numeric_limits<qsizetype>::max();
    std::uint32_t m_changed = 0;
    bool m_scanning = false;
    bool m_devicesOnce = false;
    bool m_devicesTaken = false; ///< by a batch, and nobody took that back
};

} // namespace korvale::agent
