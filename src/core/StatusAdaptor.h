#pragma once

#include "core/StatusProperties.h"

#include <QDBusAbstractAdaptor>

#include <functional>

namespace korvale {

/// com.korvale.ui.Status1: how the machine is, to be read only. StatusPublisher tells of changes.
class StatusAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.korvale.ui.Status1")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString State READ state)
    Q_PROPERTY(QString Severity READ severity)
    Q_PROPERTY(QString Reason READ reason)
    Q_PROPERTY(QString Color READ color)
    Q_PROPERTY(qlonglong NewThreats READ newThreats)
    Q_PROPERTY(qlonglong NewExploits READ newExploits)
    Q_PROPERTY(qlonglong NewEvents READ newEvents)
    Q_PROPERTY(qlonglong Analyzed READ analyzed)
    Q_PROPERTY(qlonglong Quarantined READ quarantined)
    Q_PROPERTY(qlonglong Waived READ waived)
    Q_PROPERTY(bool AgentRunning READ agentRunning)
    Q_PROPERTY(bool ManagementConnected READ managementConnected)
    Q_PROPERTY(bool CloudConnected READ cloudConnected)
    Q_PROPERTY(bool DriverConnected READ driverConnected)
    Q_PROPERTY(QString PolicyName READ policyName)
    Q_PROPERTY(QString PolicyMode READ policyMode)
    Q_PROPERTY(QString UpdaterText READ updaterText)
    Q_PROPERTY(qlonglong LastScanEnd READ lastScanEnd)
public:
    using Properties = std::function<QVariantMap()>;

    /// Becomes an interface of `object`, wherever that is exported. `properties` outlives it.
    StatusAdaptor(QObject& object, Properties properties)
        : QDBusAbstractAdaptor(&object), m_properties(std::move(properties)) {}

    [[nodiscard]] uint version() const { return value("Version").toUInt(); }
    [[nodiscard]] QString state() const { return text("State"); }
    [[nodiscard]] QString severity() const { return text("Severity"); }
    [[nodiscard]] QString reason() const { return text("Reason"); }
    [[nodiscard]] QString color() const { return text("Color"); }
    [[nodiscard]] qlonglong newThreats() const { return count("NewThreats"); }
    [[nodiscard]] qlonglong newExploits() const { return count("NewExploits"); }
    [[nodiscard]] qlonglong newEvents() const { return count("NewEvents"); }
    [[nodiscard]] qlonglong analyzed() const { return count("Analyzed"); }
    [[nodiscard]] qlonglong quarantined() const { return count("Quarantined"); }
    [[nodiscard]] qlonglong waived() const { return count("Waived"); }
    [[nodiscard]] bool agentRunning() const { return flag("AgentRunning"); }
    [[nodiscard]] bool managementConnected() const { return flag("ManagementConnected"); }
    [[nodiscard]] bool cloudConnected() const { return flag("CloudConnected"); }
    [[nodiscard]] bool driverConnected() const { return flag("DriverConnected"); }
    [[nodiscard]] QString policyName() const { return text("PolicyName"); }
    [[nodiscard]] QString policyMode() const { return text("PolicyMode"); }
    [[nodiscard]] QString updaterText() const { return text("UpdaterText"); }
    [[nodiscard]] qlonglong lastScanEnd() const { return count("LastScanEnd"); }

private:
    [[nodiscard]] QVariant value(const char* name) const {
        return m_properties().value(QString::fromLatin1(name));
    }
    [[nodiscard]] QString text(const char* name) const { return value(name).toString(); }
    [[nodiscard]] qlonglong count(const char* name) const { return value(name).toLongLong(); }
    [[nodiscard]] bool flag(const char* name) const { return value(name).toBool(); }

    Properties m_properties;
};

} // namespace korvale
