#include "agent/app/ThreatJson.h"

#include "agent/base/FileUri.h"
#include "agent/store/Finding.h"

namespace korvale::agent {
namespace {

QString wordOf(FindingState state) {
    switch (state) {
    case FindingState::Detected:
        return QStringLiteral("detected");
    case FindingState::Quarantined:
        return QStringLiteral("quarantined");
    case FindingState::Waived:
        return QStringLiteral("waived");
    case FindingState::Deleted:
        break;
    }
    return QStringLiteral("deleted");
}

} // namespace

QString shownText(const std::string& bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

void insertPath(QJsonObject& object, const std::string& path) {
    object.insert(QStringLiteral("path"), shownText(path));
    object.insert(QStringLiteral("uri"), QString::fromStdString(fileUri(path)));
}

std::optional<std::string> pathArgument(const QJsonObject& arguments) {
    const QJsonValue uri = arguments.value(QStringLiteral("uri"));
    if (uri.isString()) {
        return pathOfUri(uri.toString().toStdString());
    }
    const std::string path = arguments.value(QStringLiteral("path")).toString().toStdString();
    const bool good = path.starts_with('/') && path.find('\0') == std::string::npos;
    return good ? std::optional(path) : std::nullopt;
}

QJsonObject threatObject(const Finding& finding) {
    QJsonObject object{
        {QStringLiteral("number"), static_cast<qint64>(finding.number)},
        {QStringLiteral("id"), shownText(finding.id)},
        {QStringLiteral("name"), shownText(finding.virusName)},
        {QStringLiteral("kind"), finding.kind == ThreatKind::Unsafe ? QStringLiteral("unsafe")
                                                                    : QStringLiteral("abnormal")},
        {QStringLiteral("state"), wordOf(finding.state)},
        {QStringLiteral("first_seen"), static_cast<qint64>(finding.firstSeen)},
        {QStringLiteral("last_seen"), static_cast<qint64>(finding.lastSeen)},
        {QStringLiteral("owner"), static_cast<qint64>(finding.owner)},
        {QStringLiteral("size"), static_cast<qint64>(finding.size)},
    };
    insertPath(object, finding.path);
    return object;
}

} // namespace korvale::agent
