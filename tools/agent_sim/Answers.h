#pragma once

#include <QJsonObject>
#include <QString>

namespace korvale::sim {

/// What the agent says when it is asked.
struct AgentSettings {
    QString deviceName = QStringLiteral("Demonstration machine");
    QString policyName = QStringLiteral("Default policy");
    QString policyMode = QStringLiteral("Managed Policy");
    QString policyUpdated = QStringLiteral("2024-05-14 09:30:00");
    QString companionVersion = QStringLiteral("4.2.1");
    QString driverValue = QStringLiteral("1"); ///< "0": the driver is not connected
    QString status = QStringLiteral("OK");     ///< "RESP" of requests that went well
    int logLevel = 2;                          ///< 0 to 3
    bool policyNotifications = true;
};

/// What a "SCAN" request asks for. Each gives an empty text, or why it is refused.
class ScanRequests {
public:
    virtual ~ScanRequests() = default;
    virtual QString startFolderScan(const QString& folder) = 0;
    virtual QString startBackgroundScan() = 0;
    virtual QString stopScan() = 0;
};

/// Answers the ten commands.
class Answers {
public:
    /// Both must outlive this object.
    Answers(AgentSettings& settings, ScanRequests& scans);

    /// Never fails: an unknown command is answered with a "RESP" that says so.
    [[nodiscard]] QJsonObject answer(const QJsonObject& request);

private:
    QJsonObject scan(const QJsonObject& request);
    QJsonObject accept(const QJsonObject& request);
    QJsonObject logLevel(const QJsonObject& request);
    QJsonObject setLogLevel(const QJsonObject& request);
    QJsonObject driver(const QJsonObject& request);
    QJsonObject companion(const QJsonObject& request);
    QJsonObject deviceName(const QJsonObject& request);
    QJsonObject policy(const QJsonObject& request);
    QJsonObject policyUpdated(const QJsonObject& request);
    [[nodiscard]] QJsonObject value(const QString& text) const;

    struct Entry {
        QStringView command;
        QJsonObject (Answers::*answer)(const QJsonObject&);
    };
    static const Entry kEntries[];

    AgentSettings& m_settings;
    ScanRequests& m_scans;
};

} // namespace korvale::sim
