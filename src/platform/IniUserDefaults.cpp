#include "platform/IniUserDefaults.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>
#include <utility>

namespace korvale {
namespace {

/// $XDG_CONFIG_HOME counts only when it is absolute (XDG Base Directory Specification).
QString configHome() {
    const QString chosen = QFile::decodeName(qgetenv("XDG_CONFIG_HOME"));
    return QDir::isAbsolutePath(chosen) ? chosen : QDir::homePath() + QStringLiteral("/.config");
}

bool isTrue(QStringView text) {
    text = text.trimmed();
    if (text.startsWith(u'+') || text.startsWith(u'-')) {
        text = text.sliced(1);
    }
    while (text.startsWith(u'0')) {
        text = text.sliced(1);
    }
    return !text.isEmpty() && QStringView(u"YyTt123456789").contains(text.front());
}

/// A FIFO or device in the file's place would hold up whoever opens it.
bool isUsable(const QString& path) {
    const QFileInfo info(path);
    return !info.exists() || info.isFile();
}

} // namespace

IniUserDefaults::IniUserDefaults()
    : IniUserDefaults(configHome() + QStringLiteral("/Korvale/KorvaleUI.conf")) {}

IniUserDefaults::IniUserDefaults(QString filePath) : path(std::move(filePath)) {}

bool IniUserDefaults::boolForKey(const QString& key) const {
    if (!QFileInfo(path).isFile()) {
        return false;
    }
    return isTrue(QSettings(path, QSettings::IniFormat).value(key).toString());
}

void IniUserDefaults::setInteger(const QString& key, int value) {
    if (!isUsable(path)) {
        return;
    }
    QSettings settings(path, QSettings::IniFormat);
    settings.setValue(key, value);
    settings.sync();
}

void IniUserDefaults::removeObject(const QString& key) {
    if (!QFileInfo(path).isFile()) {
        return;
    }
    QSettings settings(path, QSettings::IniFormat);
    settings.remove(key);
    settings.sync();
}

} // namespace korvale
