#pragma once

#include "platform/FileLook.h"
#include "platform/FileManager.h"

#include <QDBusConnection>
#include <QObject>

#include <chrono>

namespace korvale {

class LinkOpener;

/// Asks org.freedesktop.FileManager1 on the session bus to show a file. Where there is none, or it
/// says nothing within the limit, the file's folder is opened as the desktop opens folders.
class BusFileManager final : public QObject, public FileManager {
    Q_OBJECT
public:
    static constexpr std::chrono::milliseconds answerLimit{5000};

    /// `opener` outlives the object.
    explicit BusFileManager(LinkOpener& opener, std::chrono::milliseconds limit = answerLimit,
                            QObject* parent = nullptr);

    /// Again for each new connection; until then only folders are opened.
    void useSessionBus(const QDBusConnection& sessionBus) { m_bus = sessionBus; }

    void lookFor(const QString& path, QObject* context, Answer answer) override;
    void show(const QString& path, QObject* context, Answer answer) override;

private:
    void askManager(const QString& path, const Answer& answer);
    void openFolderOf(const QString& path, const Answer& answer);

    LinkOpener& m_opener;
    std::chrono::milliseconds m_limit;
    QDBusConnection m_bus{QString()};
    FileLook m_look;
};

} // namespace korvale
