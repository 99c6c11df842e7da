#include "agent/devices/UsbGuard.h"

#include "fakes/PrivateBus.h"
#include "fakes/WaitUntil.h"

#include <QDBusMetaType>
#include <QMap>

#include <vector>

namespace korvale::agent {
namespace {

using Attributes = QMap<QString, QString>;

/// USBGuard's signals over a real bus, from whoever sends them.
class UsbGuardBusTest : public testing::Test {
protected:
    void SetUp() override {
        qDBusRegisterMetaType<Attributes>();
        m_bus.allowService(QStringLiteral("org.usbguard1"));
        m_bus.start();
        connection("service").registerService(QStringLiteral("org.usbguard1"));
        QObject::connect(&m_guard, &UsbGuard::decided, &m_guard,
                         [this](const std::string& port, bool blocked) {
                             m_decided.emplace_back(port, blocked);
                         });
        m_guard.use(connection("agent"));
    }
    void TearDown() override {
        for (const char* const name : {"service", "agent", "other"}) {
            QDBusConnection::disconnectFromBus(QLatin1String(name));
        }
    }
    QDBusConnection connection(const char* name) {
        QDBusConnection known{QString::fromLatin1(name)};
        return known.isConnected()
                   ? known
                   : QDBusConnection::connectToBus(m_bus.address(), QLatin1String(name));
    }
    static QDBusMessage applied(const QVariantList& arguments) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/usbguard1/Devices"),
                                                         QStringLiteral("org.usbguard.Devices1"),
                                                         QStringLiteral("DevicePolicyApplied"));
        signal.setArguments(arguments);
        return signal;
    }
    /// 0 allow, 1 block, 2 reject.
    static QDBusMessage decision(uint target, const char* port) {
        const QString rule =
            QStringLiteral("block id 0781:5567 serial \"4C5300\" name \"Stick\" hash \"a=\" "
                           "parent-hash \"b=\" via-port \"%1\" with-interface 08:06:50 "
                           "with-connect-type \"hotplug\"")
                .arg(QLatin1String(port));
        return applied({7U, target, rule, 4U, QVariant::fromValue(Attributes{})});
    }
    [[nodiscard]] bool decides(std::size_t many) {
        return waitUntil([&] { return m_decided.size() == many; });
    }

    PrivateBus m_bus;
    UsbGuard m_guard;
    std::vector<std::pair<std::string, bool>> m_decided;
};

TEST_F(UsbGuardBusTest, ItsDecisionsAreHeard) {
    connection("service").send(decision(1, "1-2"));
    connection("service").send(decision(2, "1-3"));
    connection("service").send(decision(0, "1-2.4"));
    ASSERT_TRUE(decides(3));
    EXPECT_EQ(m_decided, (std::vector<std::pair<std::string, bool>>{
                             {"1-2", true}, {"1-3", true}, {"1-2.4", false}}));
}

TEST_F(UsbGuardBusTest, OnlyItIsBelieved) {
    connection("other").send(decision(1, "1-9"));
    // Answered: the bus has passed on what came before.
    connection("other").call(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
    connection("service").send(decision(1, "1-2"));
    ASSERT_TRUE(decides(1));
    EXPECT_EQ(m_decided.at(0).first, "1-2");
}

TEST_F(UsbGuardBusTest, WhatIsNoDecisionIsNone) {
    connection("service").send(applied({}));
    connection("service").send(applied({QStringLiteral("7"), 1U, QStringLiteral("via-port"), 4U}));
    connection("service").send(
        applied({7U, 1U, QStringLiteral("block id 1:2"), 4U, QVariant::fromValue(Attributes{})}));
    connection("service").send(decision(1, "1-2"));
    ASSERT_TRUE(decides(1));
    EXPECT_EQ(m_decided.at(0).first, "1-2");
}

TEST_F(UsbGuardBusTest, OneThatIsStartedAgainIsHeardToo) {
    connection("service").unregisterService(QStringLiteral("org.usbguard1"));
    connection("other").registerService(QStringLiteral("org.usbguard1"));
    EXPECT_TRUE(waitUntil([this] {
        connection("other").send(decision(1, "1-5"));
        return !m_decided.empty();
    }));
    EXPECT_EQ(m_decided.at(0).first, "1-5");
}

} // namespace
} // namespace korvale::agent
