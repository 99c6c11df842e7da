#include "platform/BusFileManager.h"

#include "platform/BusCalls.h"
#include "platform/LinkOpener.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QPointer>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace korvale {
namespace {

QDBusMessage showItems(const QString& path) {
    auto call = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.FileManager1"),
                                               QStringLiteral("/org/freedesktop/FileManager1"),
                                               QStringLiteral("org.freedesktop.FileManager1"),
                                               QStringLiteral("ShowItems"));
    const QByteArray address = QUrl::fromLocalFile(path).toEncoded();
    call << QStringList{QString::fromLatin1(address)} << QString(); // no token to start with
    return call;
}

QString folderOf(const QString& path) {
    return path.left(std::max<qsizetype>(path.lastIndexOf(u'/'), 1));
}

} // namespace

BusFileManager::BusFileManager(LinkOpener& opener, std::chrono::milliseconds limit, QObject* parent)
    : QObject(parent), m_opener(opener), m_limit(limit) {}

void BusFileManager::lookFor(const QString& path, QObject* context, Answer answer) {
    m_look.ask(path, context, [answer = std::move(answer)](FileLook::Kind kind) {
        answer(kind != FileLook::Kind::None);
    });
}

void BusFileManager::show(const QString& path, QObject* context, Answer answer) {
    const Answer whileThere = [guard = QPointer<QObject>(context), answer](bool isShown) {
        if (guard) {
            answer(isShown);
        }
    };
    // It may have gone since somebody looked for it.
    m_look.ask(path, this, [this, path, whileThere](FileLook::Kind kind) {
        if (kind == FileLook::Kind::None) {
            whileThere(false);
        } else {
            askManager(path, whileThere);
        }
    });
}

void BusFileManager::askManager(const QString& path, const Answer& answer) {
    const QDBusPendingCall question =
        m_bus.asyncCall(showItems(path), static_cast<int>(m_limit.count()));
    if (hasFailedAtOnce(question)) {
        openFolderOf(path, answer);
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(question, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, path, answer] {
        watcher->deleteLater();
        if (watcher->isError()) {
            openFolderOf(path, answer);
        } else {
            answer(true);
        }
    });
}

void BusFileManager::openFolderOf(const QString& path, const Answer& answer) {
    const QString folder = folderOf(path);
    m_look.ask(folder + u'/', this, [this, folder, answer](FileLook::Kind kind) {
        answer(kind == FileLook::Kind::Folder && m_opener.openFolder(folder));
    });
}

} // namespace korvale
