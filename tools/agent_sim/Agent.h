#pragma once

#include "agent/bus/AgentBus.h"
#include "agent/bus/AgentObject.h"
#include "agent/bus/RequestPort.h"
#include "agent/publish/HostCacheLists.h"
#include "agent/publish/HostCacheWriter.h"
#include "agent/publish/UpdaterStatusWriter.h"
#include "agent_sim/AgentRooms.h"
#include "agent_sim/Answers.h"
#include "agent_sim/FolderScan.h"
#include "agent_sim/Quarantine.h"
#include "agent_sim/ReplyFaults.h"
#include "agent_sim/RequestLog.h"
#include "agent_sim/ScanReporter.h"
#include "agent_sim/SimRequests.h"

#include <QElapsedTimer>
#include <QObject>

namespace korvale::sim {

/// The stand-in agent: owns its parts and joins them. Commands act on the parts, and on the few
/// operations here that concern more than one of them. Operations give an empty text, or what
/// failed.
class Agent : public QObject, private ScanRequests {
    Q_OBJECT
public:
    struct Folders {
        QString hostCache;
        QString updaterStatus;
        QString quarantine;
        QString backgroundScan; ///< empty: background scans are refused
    };

    explicit Agent(Folders folders, QObject* parent = nullptr);

    AgentSettings& settings() { return m_settings; }
    HostCacheLists& model() { return m_model; }
    HostCacheWriter& hostCache() { return m_hostCache; }
    UpdaterStatusWriter& updaterStatus() { return m_updaterStatus; }
    Quarantine& quarantine() { return m_quarantine; }
    RequestLog& requests() { return m_requests; }
    ReplyFaults& faults() { return m_faults; }
    AgentBus& bus() { return m_bus; }
    FolderScan& scan() { return m_scan; }
    ScanReporter& scanReporter() { return m_scanReporter; }
    Folders& folders() { return m_folders; }

    QString post(const QString& notification);
    /// Writes one host-cache file and posts `notification`.
    QString writeAndPost(const QString& file, const QJsonObject& content,
                         const QString& notification);
    /// Writes the lists that changed with "header.log" and posts the aggregated-messages
    /// notification.
    QString publish(std::optional<std::uint32_t> mask = std::nullopt);
    /// `publish`, unless changes are being collected.
    QString changed();
    void collectChanges(bool collect) { m_collecting = collect; }
    [[nodiscard]] bool collectsChanges() const { return m_collecting; }
    /// False for a moment after `publish`, in which a reader would miss a further batch.
    [[nodiscard]] bool lastBatchIsRead() const;

    QString startFolderScan(const QString& folder) override;
    QString startBackgroundScan() override;
    QString stopScan() override;

Q_SIGNALS:
    /// Something happened that no command asked for; one line for people and test drivers.
    void note(const QString& line);

private:
    void reportProblem(const QString& problem);
    void scanEnded(bool complete, bool background, const QString& summary);

    Folders m_folders;
    AgentSettings m_settings;
    HostCacheLists m_model;
    HostCacheWriter m_hostCache;
    UpdaterStatusWriter m_updaterStatus;
    Quarantine m_quarantine;
    RequestLog m_requests;
    ReplyFaults m_faults;
    FolderScan m_scan;
    ScanReporter m_scanReporter;
    Answers m_answers;
    SimRequests m_handler;
    RequestPort m_port;
    AgentObject m_object;
    AgentBus m_bus;
    QElapsedTimer m_sincePublish;
    bool m_collecting = false;
};

} // namespace korvale::sim
