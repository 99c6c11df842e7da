#include "core/StatusPublisher.h"

#include "core/StatusProperties.h"
#include "fakes/PrivateSessionBus.h"
#include "fakes/WaitUntil.h"

#include <QDBusArgument>
#include <QDBusPendingCallWatcher>

#include <gmock/gmock.h>
#include <vector>

namespace korvale {
namespace {

using testing::IsEmpty;

const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

/// Another program, which hears what is told of the status, and asks for it.
class Listener final : public QObject {
    Q_OBJECT
public:
    Listener(QDBusConnection bus, QString program)
        : m_bus(std::move(bus)), m_program(std::move(program)) {
        EXPECT_TRUE(m_bus.connect(m_program, QString::fromLatin1(statusPath), propertiesInterface,
                                  QStringLiteral("PropertiesChanged"), this,
                                  SLOT(hear(QDBusMessage))));
    }

    /// What a reader is told; what was sent before has been heard then.
    QVariantMap read() {
        QDBusMessage call =
            QDBusMessage::createMethodCall(m_program, QString::fromLatin1(statusPath),
                                           propertiesInterface, QStringLiteral("GetAll"));
        call << QString::fromLatin1(statusInterface);
        const QDBusPendingCallWatcher answer(m_bus.asyncCall(call)); // wakes the loop
        EXPECT_TRUE(waitUntil([&answer] { return answer.isFinished(); }));
        return qdbus_cast<QVariantMap>(answer.reply().arguments().value(0));
    }

    std::vector<QVariantMap> changes;

private Q_SLOTS:
    void hear(const QDBusMessage& signal) {
        EXPECT_EQ(signal.arguments().value(0), QString::fromLatin1(statusInterface));
        changes.push_back(qdbus_cast<QVariantMap>(signal.arguments().value(1)));
    }

private:
    QDBusConnection m_bus;
    QString m_program;
};

class StatusPublisherTest : public testing::Test {
protected:
    StatusPublisherTest() {
        publisher.offerOn(object);
        EXPECT_TRUE(bus.registerObject(QString::fromLatin1(statusPath), &object,
                                       QDBusConnection::ExportAdaptors));
        publisher.useSessionBus(bus);
    }

    fakes::PrivateSessionBus daemon;
    QDBusConnection bus = daemon.connect();
    Listener listener{daemon.connect(), bus.baseService()};
    AppState state;
    StatusWatch watch{state};
    QObject object;
    StatusPublisher publisher{watch};
};

TEST_F(StatusPublisherTest, WhatIsSoAtTheStartIsReadAndNotTold) {
    state.curIconDispColor = IconColor::Yellow; // nobody has looked since
    publisher.start();
    EXPECT_EQ(listener.read().value(QStringLiteral("Color")), QStringLiteral("yellow"));
    EXPECT_THAT(listener.changes, IsEmpty());
}

TEST_F(StatusPublisherTest, AChangeIsToldOnceAndAlone) {
    publisher.start();
    state.newThreatCount = 3;
    watch.look();
    watch.look();
    EXPECT_EQ(listener.read().value(QStringLiteral("NewThreats")), 3);
    ASSERT_EQ(listener.changes.size(), 1U);
    EXPECT_EQ(listener.changes[0].value(QStringLiteral("NewThreats")), 3);
    EXPECT_FALSE(listener.changes[0].contains(QStringLiteral("Color")));
    EXPECT_FALSE(listener.changes[0].contains(QStringLiteral("Version")));
}

TEST_F(StatusPublisherTest, WithoutABusNothingIsSentAndNothingIsToldLater) {
    publisher.start();
    publisher.useSessionBus(QDBusConnection(QString()));
    state.newThreatCount = 1;
    watch.look();
    publisher.useSessionBus(bus);
    state.newThreatCount = 2;
    watch.look();
    EXPECT_EQ(listener.read().value(QStringLiteral("NewThreats")), 2);
    ASSERT_EQ(listener.changes.size(), 1U);
    EXPECT_EQ(listener.changes[0].value(QStringLiteral("NewThreats")), 2);
}

} // namespace
} // namespace korvale

#include "StatusPublisherTest.moc"
