#pragma once

#include "agent/bus/PolkitTypes.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

namespace korvale::agent {

/// The authority on a private bus, with a connection of its own. Keeps what it was asked, and
/// answers as told.
class FakePolkit : public QDBusVirtualObject {
public:
    enum class Behaviour { Grant, Refuse, Silent, Nonsense };

    struct Question {
        QString action;
        QString kind; ///< of the subject
        QString name;
        uint flags = 0;
        QString id;
    };

    static QString serviceName() { return QStringLiteral("org.freedesktop.PolicyKit1"); }

    explicit FakePolkit(const QString& busAddress)
        : m_connection(QDBusConnection::connectToBus(busAddress, QStringLiteral("polkit"))) {
        qDBusRegisterMetaType<PolkitResult>();
        qDBusRegisterMetaType<QMap<QString, QString>>();
        EXPECT_TRUE(m_connection.registerVirtualObject(
            QStringLiteral("/org/freedesktop/PolicyKit1/Authority"), this));
        EXPECT_TRUE(m_connection.registerService(serviceName()));
    }
    ~FakePolkit() override { QDBusConnection::disconnectFromBus(QStringLiteral("polkit")); }

    bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
        if (call.member() == QLatin1String("CancelCheckAuthorization")) {
            cancelled.append(call.arguments().constFirst().toString());
            return true;
        }
        const auto subject = qdbus_cast<PolkitSubject>(call.arguments().at(0));
        questions.append({call.arguments().at(1).toString(), subject.kind,
                          subject.details.value(QStringLiteral("name")).toString(),
                          call.arguments().at(3).toUInt(), call.arguments().at(4).toString()});
        if (behaviour == Behaviour::Nonsense) {
            connection.send(call.createReply(QStringLiteral("yes")));
        } else if (behaviour != Behaviour::Silent) {
            connection.send(call.createReply(
                QVariant::fromValue(PolkitResult{behaviour == Behaviour::Grant, false, {}})));
        }
        return true;
    }
    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

    Behaviour behaviour = Behaviour::Refuse;
    QList<Question> questions;
    QStringList cancelled;

private:
    QDBusConnection m_connection;
};

} // namespace korvale::agent
