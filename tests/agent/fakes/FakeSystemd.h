#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>
#include <QMap>
#include <QStringList>
#include <QVariantMap>

#include <functional>
#include <gtest/gtest.h>

namespace korvale::agent {

/// The service manager on a private bus, with a connection of its own: units with the state they
/// are given, jobs that end when the test says so.
class FakeSystemd : public QDBusVirtualObject {
public:
    struct Unit {
        QString load = QStringLiteral("loaded");
        QString active = QStringLiteral("inactive");
        bool service = true;
        QString result = QStringLiteral("success");
        int exitStatus = 0;
    };

    static QString serviceName() { return QStringLiteral("org.freedesktop.systemd1"); }

    explicit FakeSystemd(const QString& busAddress)
        : m_bus(QDBusConnection::connectToBus(busAddress, QStringLiteral("systemd"))) {
        EXPECT_TRUE(m_bus.registerVirtualObject(QStringLiteral("/org/freedesktop/systemd1"), this,
                                                QDBusConnection::SubPath));
        EXPECT_TRUE(m_bus.registerService(serviceName()));
    }
    ~FakeSystemd() override { QDBusConnection::disconnectFromBus(QStringLiteral("systemd")); }

    bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
        const QVariantList arguments = call.arguments();
        const QString name = arguments.value(0).toString();
        if (call.member() == QLatin1String("Subscribe")) {
            bus.send(call.createReply());
        } else if (call.member() == QLatin1String("LoadUnit")) {
            bus.send(call.createReply(QVariant::fromValue(QDBusObjectPath(unitPath(name)))));
        } else if (call.member() == QLatin1String("GetAll")) {
            bus.send(properties(call));
        } else if (call.member() == QLatin1String("StartUnit")) {
            startUnit(call, name);
        } else if (call.member() == QLatin1String("KillUnit")) {
            killed +=
                name + u' ' + arguments.value(1).toString() + u' ' + arguments.value(2).toString();
            bus.send(call.createReply());
            if (onKill) {
                onKill();
            }
        } else {
            return false;
        }
        return true;
    }
    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    void endJob(const QString& unit, const QString& result) {
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/systemd1"),
            QStringLiteral("org.freedesktop.systemd1.Manager"), QStringLiteral("JobRemoved"));
        signal << uint(1) << QVariant::fromValue(QDBusObjectPath(jobPath(unit))) << unit << result;
        m_bus.send(signal);
    }

    QMap<QString, Unit> units;
    QStringList started;
    QStringList killed; ///< unit, who, signal
    /// What a started unit does; returns the result of its job, or nothing: it goes on.
    std::function<QString(const QString& unit)> onStart;
    std::function<void()> onKill;
    bool endsBeforeItSaysSo = false; ///< JobRemoved comes before the reply to StartUnit

private:
    static QString unitPath(const QString& unit) {
        return QStringLiteral("/org/freedesktop/systemd1/unit/") +
               QString::fromLatin1(unit.toLatin1().toHex());
    }
    static QString jobPath(const QString& unit) {
        return QStringLiteral("/org/freedesktop/systemd1/job/") +
               QString::fromLatin1(unit.toLatin1().toHex());
    }

    QDBusMessage properties(const QDBusMessage& call) const {
        const QString hex = call.path().mid(call.path().lastIndexOf(u'/') + 1);
        const QString name = QString::fromLatin1(QByteArray::fromHex(hex.toLatin1()));
        if (!units.contains(name)) {
            return call.createReply(
                QVariantMap{{QStringLiteral("LoadState"), QStringLiteral("not-found")},
                            {QStringLiteral("ActiveState"), QStringLiteral("inactive")}});
        }
        const Unit& unit = units.find(name).value();
        if (call.arguments().constFirst().toString().endsWith(QLatin1String(".Unit"))) {
            return call.createReply(QVariantMap{{QStringLiteral("LoadState"), unit.load},
                                                {QStringLiteral("ActiveState"), unit.active}});
        }
        if (!unit.service) {
            return call.createErrorReply(QDBusError::UnknownInterface,
                                         QStringLiteral("no service"));
        }
        return call.createReply(QVariantMap{{QStringLiteral("Result"), unit.result},
                                            {QStringLiteral("ExecMainStatus"), unit.exitStatus}});
    }

    void startUnit(const QDBusMessage& call, const QString& unit) {
        started += unit;
        if (!units.contains(unit)) {
            m_bus.send(call.createErrorReply(QStringLiteral("org.freedesktop.systemd1.NoSuchUnit"),
                                             QStringLiteral("not found")));
            return;
        }
        const QString result = onStart ? onStart(unit) : QStringLiteral("done");
        const auto reply = call.createReply(QVariant::fromValue(QDBusObjectPath(jobPath(unit))));
        if (!endsBeforeItSaysSo) {
            m_bus.send(reply);
        }
        if (!result.isEmpty()) {
            endJob(unit, result);
        }
        if (endsBeforeItSaysSo) {
            m_bus.send(reply);
        }
    }

    QDBusConnection m_bus;
};

} // namespace korvale::agent
