#include "core/InfoDictionary.h"

#include "model/Values.h"
#include "platform/RootedPath.h"
#include "platform/SmallFile.h"

#include <QFile>
#include <QFileInfo>

namespace korvale {
namespace {

constexpr qint64 largestFile = 1 << 20;

} // namespace

const char* stateText(InfoFile state) {
    switch (state) {
    case InfoFile::Used:
        return "is used";
    case InfoFile::Absent:
        return "is missing";
    case InfoFile::Unreadable:
        return "cannot be read";
    case InfoFile::NoObject:
        break;
    }
    return "holds no JSON object";
}

QString InfoDictionary::packagedPath() {
    // Not QCoreApplication's path: the dictionary is needed before there is an application object.
    const QString executable = QFile::symLinkTarget(QStringLiteral("/proc/self/exe"));
    return QFileInfo(executable).path() + QStringLiteral("/../share/korvale-ui/Info.json");
}

QString InfoDictionary::administratorsPath() {
    return rootedPath(QStringLiteral("/etc/korvale-ui/Info.json"));
}

InfoDictionary InfoDictionary::load(const QString& packagedPath,
                                    const QString& administratorsPath) {
    return {read(packagedPath), read(administratorsPath)};
}

InfoDictionary::Source InfoDictionary::read(const QString& path) {
    const std::optional<QByteArray> content = readSmallFile(path, largestFile);
    if (!content) {
        return {QFileInfo::exists(path) ? InfoFile::Unreadable : InfoFile::Absent, {}};
    }
    const std::optional<JsonValue> value = JsonValue::parse(*content);
    return value && value->isObject() ? Source{InfoFile::Used, *value}
                                      : Source{InfoFile::NoObject, {}};
}

JsonValue InfoDictionary::operator[](std::string_view key) const {
    const JsonValue override = m_administrators.content[key];
    return override.isNull() ? m_packaged.content[key] : override;
}

bool InfoDictionary::allowsCheckForPolicyUpdate() const {
    const JsonValue value = (*this)["Allow Check For Policy Update"];
    return value.isNull() || booleanValue(value);
}

bool InfoDictionary::isNoUIMode() const {
    return integerValue((*this)["NoKorvaleUI"]) == 1;
}

bool InfoDictionary::usesVexaAppIcon() const {
    return booleanValue((*this)["Use Vexa App Icon"]);
}

} // namespace korvale
