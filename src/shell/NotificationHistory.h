#pragma once

#include "shell/NotificationRecords.h"

#include <QObject>
#include <QThreadPool>

#include <memory>

namespace korvale {

class Clock;
struct DesktopNotification;
struct HistoryJob;

/// The last desktop notifications, those of earlier runs included, in a file of the user's. The
/// file is read when somebody wants to see them or when the first one comes, and written after
/// each, always by a thread of its own that ends with that; of many that come at once the last
/// write stands for all. Main thread.
class NotificationHistory : public QObject {
    Q_OBJECT

public:
    /// `path`: the file; its folder is made when needed. `clock` outlives the object.
    NotificationHistory(QString path, const Clock& clock, QObject* parent = nullptr);
    /// Waits for what is not written yet.
    ~NotificationHistory() override;

    /// The file under the user's state folder.
    [[nodiscard]] static QString userPath();

    /// What was said just now.
    void add(const DesktopNotification& notification, bool isHeldBack);
    /// Reads the file, once: loaded() follows, unless that was before.
    void load();
    /// Forgets all, in the file too.
    void clear();

    /// Those of this run alone until the file was read.
    [[nodiscard]] const NotificationRecords& records() const { return m_records; }
    [[nodiscard]] bool isLoaded() const { return m_isLoaded; }

Q_SIGNALS:
    /// One more, the last of records(); older ones may have gone for it.
    void added();
    /// All of records() may be others now.
    void replaced();

private:
    void work();
    void takeResult();

    QString m_path;
    const Clock& m_clock;
    NotificationRecords m_records;
    bool m_isLoaded = false;
    bool m_isWanted = false;           ///< the file shall be read
    bool m_isUnsaved = false;          ///< the file shall be written
    bool m_isFailureKnown = false;     ///< the log says so already
    std::shared_ptr<HistoryJob> m_job; ///< under way
    QThreadPool m_worker;
};

} // namespace korvale
