#include "agent_sim/Agent.h"

#include "agent/publish/HostCacheNames.h"

namespace korvale::sim {
namespace {

constexpr qint64 kReadingMilliseconds = 100;

} // namespace

Agent::Agent(Folders folders, QObject* parent)
    : QObject(parent),
      m_folders(std::move(folders)),
      m_hostCache(m_folders.hostCache),
      m_updaterStatus(m_folders.updaterStatus),
      m_quarantine(m_model, m_folders.quarantine),
      m_scanReporter(m_scan, m_model),
      m_answers(m_settings, *this),
      m_handler(m_answers, m_requests, m_faults),
      m_port(m_handler),
      m_object({&m_port}),
      m_bus(m_object) {
    connect(&m_scanReporter, &ScanReporter::analysing, this, [this](const QString& path) {
        reportProblem(writeAndPost(QStringLiteral("analyzer_status.log"),
                                   {{QStringLiteral("CurrentFile"), path}},
                                   QStringLiteral("com.korvale.analyzerstatus_messages")));
    });
    connect(&m_scanReporter, &ScanReporter::batchReady, this, [this] { reportProblem(changed()); });
    connect(&m_scanReporter, &ScanReporter::ended, this, &Agent::scanEnded);
    connect(&m_handler, &SimRequests::requested, this, [this](const QString& command) {
        Q_EMIT note(QStringLiteral("request ") +
                    QString::fromUtf8(quotedJson(command)).mid(1).chopped(1));
    });
}

QString Agent::post(const QString& notification) {
    return m_bus.post(notification) ? QString() : QStringLiteral("not on the bus, nothing posted");
}

QString Agent::writeAndPost(const QString& file, const QJsonObject& content,
                            const QString& notification) {
    if (!m_hostCache.write(file, content)) {
        return m_hostCache.error();
    }
    m_model.markChanged(maskBitOfFile(file));
    return post(notification);
}

QString Agent::publish(std::optional<std::uint32_t> mask) {
    if (!m_model.publish(m_hostCache, mask)) {
        return m_hostCache.error();
    }
    m_sincePublish.start();
    return post(QStringLiteral("com.korvale.timer.aggregated_messages"));
}

bool Agent::lastBatchIsRead() const {
    return !m_sincePublish.isValid() || m_sincePublish.hasExpired(kReadingMilliseconds);
}

QString Agent::changed() {
    return m_collecting ? QString() : publish();
}

QString Agent::startFolderScan(const QString& folder) {
    return m_scanReporter.start(folder, false);
}

QString Agent::startBackgroundScan() {
    return m_folders.backgroundScan.isEmpty()
               ? QStringLiteral("no folder for background scans")
               : m_scanReporter.start(m_folders.backgroundScan, true);
}

QString Agent::stopScan() {
    return m_scan.stop() ? QString() : QStringLiteral("no scan is running");
}

void Agent::scanEnded(bool complete, bool background, const QString& summary) {
    if (complete && background) {
        reportProblem(post(QStringLiteral("com.korvale.btdscancomplete")));
    }
    Q_EMIT note((complete ? QStringLiteral("scan finished ") : QStringLiteral("scan stopped ")) +
                summary);
}

void Agent::reportProblem(const QString& problem) {
    if (!problem.isEmpty()) {
        Q_EMIT note(QStringLiteral("problem ") + problem);
    }
}

} // namespace korvale::sim
