#include "core/StatusText.h"

#include "platform/SafeText.h"
#include "platform/Texts.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <array>

namespace korvale {
namespace {

constexpr int jsonVersion = 1;

/// What a severity is to scripts and bars.
struct Grade {
    const char* severity;
    int exitCode;
    const char* blockState; ///< of i3status-rs
};
constexpr std::array grades{Grade{"good", 0, "Good"}, Grade{"unknown", 1, "Warning"},
                            Grade{"away", 1, "Critical"}, Grade{"danger", 2, "Critical"}};
constexpr Grade unknownGrade = grades[1];
constexpr Grade notRunning{"not-running", 3, "Critical"};
constexpr Grade noAnswer{"no-answer", 4, "Critical"};

QString textOf(const QVariantMap& properties, const char* name) {
    const QVariant value = properties.value(QString::fromLatin1(name));
    return value.metaType() == QMetaType::fromType<QString>() ? value.toString() : QString();
}

qlonglong countOf(const QVariantMap& properties, const char* name) {
    return properties.value(QString::fromLatin1(name)).toLongLong();
}

bool flagOf(const QVariantMap& properties, const char* name) {
    return properties.value(QString::fromLatin1(name)).toBool();
}

Grade gradeOf(StatusAnswer answer, const QVariantMap& properties) {
    switch (answer) {
    case StatusAnswer::NotRunning:
        return notRunning;
    case StatusAnswer::NoAnswer:
        return noAnswer;
    case StatusAnswer::Known:
        break;
    }
    const QString severity = textOf(properties, "Severity");
    const auto* const found = std::find_if(grades.begin(), grades.end(), [&](const Grade& grade) {
        return severity == QLatin1String(grade.severity);
    });
    return found == grades.end() ? unknownGrade : *found;
}

QString stateOf(StatusAnswer answer, const QVariantMap& properties) {
    return answer == StatusAnswer::Known
               ? textOf(properties, "State")
               : QString::fromLatin1(gradeOf(answer, properties).severity);
}

QString reasonOf(StatusAnswer answer, const QVariantMap& properties) {
    switch (answer) {
    case StatusAnswer::NotRunning:
        return localizedText("HPS_StatusNotRunning");
    case StatusAnswer::NoAnswer:
        return localizedText("HPS_StatusNoAnswer");
    case StatusAnswer::Known:
        break;
    }
    return singleLineText(textOf(properties, "Reason"));
}

QJsonValue moment(qlonglong seconds) {
    return seconds > 0 ? QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate)
                       : QJsonValue(QJsonValue::Null);
}

QJsonObject knownMembers(const QVariantMap& p) {
    return {
        {QStringLiteral("color"), textOf(p, "Color")},
        {QStringLiteral("counts"),
         QJsonObject{{QStringLiteral("newThreats"), countOf(p, "NewThreats")},
                     {QStringLiteral("newExploits"), countOf(p, "NewExploits")},
                     {QStringLiteral("newEvents"), countOf(p, "NewEvents")},
                     {QStringLiteral("analyzed"), countOf(p, "Analyzed")},
                     {QStringLiteral("quarantined"), countOf(p, "Quarantined")},
                     {QStringLiteral("waived"), countOf(p, "Waived")}}},
        {QStringLiteral("agent"),
         QJsonObject{{QStringLiteral("running"), flagOf(p, "AgentRunning")},
                     {QStringLiteral("managementConnected"), flagOf(p, "ManagementConnected")},
                     {QStringLiteral("cloudConnected"), flagOf(p, "CloudConnected")}}},
        {QStringLiteral("driver"),
         QJsonObject{{QStringLiteral("connected"), flagOf(p, "DriverConnected")}}},
        {QStringLiteral("policy"), QJsonObject{{QStringLiteral("name"), textOf(p, "PolicyName")},
                                               {QStringLiteral("mode"), textOf(p, "PolicyMode")}}},
        {QStringLiteral("updater"), textOf(p, "UpdaterText")},
        {QStringLiteral("lastScanEnd"), moment(countOf(p, "LastScanEnd"))}};
}

QJsonObject wholeObject(StatusAnswer answer, const QVariantMap& properties) {
    QJsonObject object = answer == StatusAnswer::Known ? knownMembers(properties) : QJsonObject();
    object[QStringLiteral("version")] = jsonVersion;
    object[QStringLiteral("running")] = answer != StatusAnswer::NotRunning;
    object[QStringLiteral("state")] = stateOf(answer, properties);
    object[QStringLiteral("severity")] = QString::fromLatin1(gradeOf(answer, properties).severity);
    object[QStringLiteral("reason")] = reasonOf(answer, properties);
    return object;
}

QString escapedReasonOf(StatusAnswer answer, const QVariantMap& properties) {
    return reasonOf(answer, properties).toHtmlEscaped(); // both bars take texts for Pango markup
}

QJsonObject waybarObject(StatusAnswer answer, const QVariantMap& properties) {
    const Grade grade = gradeOf(answer, properties);
    return {{QStringLiteral("text"), escapedReasonOf(answer, properties)},
            {QStringLiteral("tooltip"), localizedText("ProductEP").toHtmlEscaped()},
            {QStringLiteral("alt"), QString::fromLatin1(grade.severity)},
            {QStringLiteral("class"), QString::fromLatin1(grade.severity)}};
}

QJsonObject i3StatusRsObject(StatusAnswer answer, const QVariantMap& properties) {
    const qlonglong news = countOf(properties, "NewThreats");
    const QString reason = escapedReasonOf(answer, properties);
    return {{QStringLiteral("text"), reason},
            {QStringLiteral("short_text"), news > 0 ? QString::number(news) : reason},
            {QStringLiteral("state"), QString::fromLatin1(gradeOf(answer, properties).blockState)}};
}

} // namespace

QByteArray statusText(StatusForm form, StatusAnswer answer, const QVariantMap& properties) {
    const auto compact = [](const QJsonObject& object) {
        return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
    };
    switch (form) {
    case StatusForm::Json:
        return compact(wholeObject(answer, properties));
    case StatusForm::Waybar:
        return compact(waybarObject(answer, properties));
    case StatusForm::I3StatusRs:
        return compact(i3StatusRsObject(answer, properties));
    case StatusForm::Line:
        break;
    }
    return reasonOf(answer, properties).toUtf8() + '\n';
}

int statusExitCode(StatusForm form, StatusAnswer answer, const QVariantMap& properties) {
    return isForBar(form) ? 0 : gradeOf(answer, properties).exitCode;
}

} // namespace korvale
