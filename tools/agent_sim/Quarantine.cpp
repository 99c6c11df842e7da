#include "agent_sim/Quarantine.h"

#include "agent/publish/HostCacheLists.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace korvale::sim {
namespace {

QString notOnTheList() {
    return QStringLiteral("not on the threat list (scan its folder, or use threat)");
}

/// A name in `folder` that no file has yet.
QString freeName(const QString& folder, const QString& id) {
    QString path = folder + u'/' + id;
    for (int number = 2; QFileInfo::exists(path); ++number) {
        path = QStringLiteral("%1/%2-%3").arg(folder, id).arg(number);
    }
    return path;
}

} // namespace

Quarantine::Quarantine(HostCacheLists& model, QString folder)
    : m_model(model), m_folder(std::move(folder)) {}

QString Quarantine::take(const QString& path) {
    std::optional<FileThreat> threat = m_model.file(path);
    if (!threat) {
        return notOnTheList();
    }
    if ((threat->state & file_state::kQuarantined) != 0) {
        return QStringLiteral("in quarantine already");
    }
    const QFileInfo info(path);
    if (info.isSymLink() || !info.isFile()) {
        return QStringLiteral("not a file");
    }
    if (!QDir().mkpath(m_folder)) {
        return QStringLiteral("cannot create ") + m_folder;
    }
    // The identifier came from a command: a slash in it must not lead out of the folder.
    QString name = threat->id;
    const QString target = freeName(m_folder, name.replace(u'/', u'_'));
    QFile file(path);
    if (!file.rename(target)) {
        return QStringLiteral("cannot move it to %1: %2").arg(target, file.errorString());
    }
    QFile::setPermissions(target, QFileDevice::ReadOwner);
    threat->state = (threat->state & ~file_state::kWaived) | file_state::kQuarantined;
    m_model.setFile(path, *threat);
    m_model.addThreatEvent(path, threat->state, threat_event::kQuarantined);
    return {};
}

QString Quarantine::waive(const QString& path) {
    std::optional<FileThreat> threat = m_model.file(path);
    if (!threat) {
        return notOnTheList();
    }
    threat->state |= file_state::kWaived;
    m_model.setFile(path, *threat);
    m_model.addThreatEvent(path, threat->state, threat_event::kWaived);
    return {};
}

} // namespace korvale::sim
