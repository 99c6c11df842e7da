#include "platform/XdgFolders.h"

#include <QDir>
#include <QFile>

namespace korvale {
namespace {

QString folder(const char* variable, const char* belowHome) {
    const QString chosen = QFile::decodeName(qgetenv(variable));
    return chosen.startsWith(u'/') ? chosen : QDir::homePath() + QString::fromLatin1(belowHome);
}

} // namespace

QString userConfigFolder() {
    return folder("XDG_CONFIG_HOME", "/.config");
}

QString applicationSupportFolder() {
    return folder("XDG_DATA_HOME", "/.local/share");
}

QString userStateFolder() {
    return folder("XDG_STATE_HOME", "/.local/state");
}

} // namespace korvale
