#include "platform/IniUserDefaults.h"

#include "platform/LeadingValue.h"
#include "platform/XdgFolders.h"

#include <QFileInfo>
#include <QSettings>

#include <utility>

namespace korvale {
namespace {

/// A FIFO or device in the file's place would hold up whoever opens it.
bool isUsable(const QString& path) {
    const QFileInfo info(path);
    return !info.exists() || info.isFile();
}

} // namespace

IniUserDefaults::IniUserDefaults()
    : IniUserDefaults(userConfigFolder() + QStringLiteral("/Korvale/KorvaleUI.conf")) {}

IniUserDefaults::IniUserDefaults(QString filePath) : path(std::move(filePath)) {}

bool IniUserDefaults::boolForKey(const QString& key) const {
    if (!QFileInfo(path).isFile()) {
        return false;
    }
    const QString value = QSettings(path, QSettings::IniFormat).value(key).toString();
    return leadingBoolean(value.toStdString());
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
