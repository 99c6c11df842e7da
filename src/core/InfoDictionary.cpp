#include "core/InfoDictionary.h"

#include "model/Values.h"
#include "platform/RootedPath.h"
#include "platform/SmallFile.h"

#include <QFile>
#include <QFileInfo>

namespace korvale {
namespace {

constexpr qint64 largestFile = 1 << 20;

/// Null unless the file holds a JSON object.
JsonValue readObject(const QString& path) {
    const std::optional<QByteArray> content = readSmallFile(path, largestFile);
    const std::optional<JsonValue> value = content ? JsonValue::parse(*content) : std::nullopt;
    return value && value->isObject() ? *value : JsonValue();
}

} // namespace

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
    JsonValue packaged = readObject(packagedPath);
    JsonValue administrators = readObject(administratorsPath);
    const bool ignoresAdministratorsFile =
        administrators.isNull() && QFileInfo::exists(administratorsPath);
    return {std::move(packaged), std::move(administrators), ignoresAdministratorsFile};
}

JsonValue InfoDictionary::operator[](std::string_view key) const {
    const JsonValue override = m_administrators[key];
    return override.isNull() ? m_packaged[key] : override;
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
