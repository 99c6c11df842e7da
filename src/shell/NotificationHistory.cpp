#include "shell/NotificationHistory.h"

#include "core/base/Logging.h"
#include "platform/Clock.h"
#include "platform/NotificationServer.h"
#include "platform/PrivateFile.h"
#include "platform/SmallFile.h"
#include "platform/XdgFolders.h"

#include <utility>

namespace korvale {

/// What the worker does at one go.
struct HistoryJob {
    QString path;
    bool reads = false;
    bool writes = false;
    NotificationRecords known;
    NotificationRecords before; ///< what the file held, if it was read
    bool hasFailed = false;

    void run() {
        if (reads) {
            const auto content = readSmallFile(path, largestNotificationFile);
            before =
                notificationRecords(content.value_or(QByteArray())).value_or(NotificationRecords());
        }
        if (writes) {
            NotificationRecords all = before + known;
            keepLast(all);
            hasFailed = !writePrivateFile(path, toJson(all));
        }
    }
};

NotificationHistory::NotificationHistory(QString path, const Clock& clock, QObject* parent)
    : QObject(parent), m_path(std::move(path)), m_clock(clock) {
    m_worker.setMaxThreadCount(1);
    m_worker.setExpiryTimeout(0);
}

NotificationHistory::~NotificationHistory() {
    blockSignals(true);
    while (m_job) {
        m_worker.waitForDone();
        takeResult();
    }
}

QString NotificationHistory::userPath() {
    return userStateFolder() + QLatin1String("/Korvale/KorvaleUI-notifications.json");
}

void NotificationHistory::add(const DesktopNotification& notification, bool isHeldBack) {
    m_records.append({.when = m_clock.localTime().toMSecsSinceEpoch(),
                      .title = notification.title,
                      .subtitle = notification.subtitle,
                      .message = notification.message,
                      .link = notification.link,
                      .isHeldBack = isHeldBack});
    keepLast(m_records);
    m_isUnsaved = true;
    Q_EMIT added();
    work();
}

void NotificationHistory::load() {
    m_isWanted = true;
    work();
}

void NotificationHistory::clear() {
    m_records.clear();
    m_isLoaded = true; // whatever the file holds
    m_isUnsaved = true;
    Q_EMIT replaced();
    work();
}

/// One job at a time, so that neither a slow disk nor many notifications pile up anything.
void NotificationHistory::work() {
    const bool reads = !m_isLoaded && (m_isWanted || m_isUnsaved);
    if (m_job || (!reads && !m_isUnsaved)) {
        return;
    }
    m_job = std::make_shared<HistoryJob>();
    m_job->path = m_path;
    m_job->reads = reads;
    m_job->writes = std::exchange(m_isUnsaved, false);
    m_job->known = m_records;
    m_worker.start([this, job = m_job] {
        job->run();
        QMetaObject::invokeMethod(this, &NotificationHistory::takeResult, Qt::QueuedConnection);
    });
}

void NotificationHistory::takeResult() {
    const auto job = std::exchange(m_job, nullptr);
    if (job->writes) {
        if (job->hasFailed && !m_isFailureKnown) {
            logLine(LogLevel::Warn, "Notifications cannot be kept in %@: they go with the program.",
                    m_path);
        }
        m_isFailureKnown = job->hasFailed;
    }
    // Those cleared meanwhile do not come back.
    if (job->reads && !m_isLoaded) {
        m_isLoaded = true;
        m_records = job->before + m_records;
        keepLast(m_records);
        Q_EMIT replaced();
    }
    work();
}

} // namespace korvale
