#include "platform/IniUserDefaults.h"

#include "core/base/Logging.h"
#include "platform/IniText.h"
#include "platform/LeadingValue.h"
#include "platform/PrivateFile.h"
#include "platform/SmallFile.h"
#include "platform/XdgFolders.h"

#include <QFileInfo>

#include <utility>

namespace korvale {
namespace {

constexpr qint64 largestFile = 1 << 20;

} // namespace

IniUserDefaults::IniUserDefaults()
    : IniUserDefaults(userConfigFolder() + QStringLiteral("/Korvale/KorvaleUI.conf")) {}

IniUserDefaults::IniUserDefaults(QString filePath) : path(std::move(filePath)) {}

bool IniUserDefaults::boolForKey(const QString& key) const {
    const QByteArray name = key.toUtf8();
    const auto unsaved = m_unsaved.find(name);
    const Value value =
        unsaved != m_unsaved.end()
            ? unsaved->second
            : iniValue(readSmallFile(path, largestFile).value_or(QByteArray()), name);
    return value && leadingBoolean({value->constData(), static_cast<std::size_t>(value->size())});
}

void IniUserDefaults::setInteger(const QString& key, int value) {
    change(key, QByteArray::number(value));
}

void IniUserDefaults::removeObject(const QString& key) {
    change(key, std::nullopt);
}

void IniUserDefaults::change(const QString& key, Value value) {
    const bool isTold = !m_unsaved.empty();
    m_unsaved.insert_or_assign(key.toUtf8(), std::move(value));
    if (save()) {
        m_unsaved.clear();
    } else if (!isTold) {
        logLine(LogLevel::Warn,
                "%@ cannot be written: what was chosen holds until the program ends.", path);
    }
}

bool IniUserDefaults::save() const {
    const auto present = readSmallFile(path, largestFile);
    if (!present && QFileInfo::exists(path)) {
        return false; // not ours to replace
    }
    QByteArray settings = present.value_or(QByteArray());
    for (const auto& [key, value] : m_unsaved) {
        settings = withIniValue(settings, key, value);
    }
    return settings == present.value_or(QByteArray()) || writePrivateFile(path, settings);
}

} // namespace korvale
