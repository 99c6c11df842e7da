#include "platform/SingleInstance.h"

#include "fakes/SessionBusDaemon.h"
#include "fakes/WaitUntil.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvale {
namespace {

using Outcome = SingleInstance::Outcome;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class SingleInstanceTest : public testing::Test {
protected:
    void SetUp() override {
        qunsetenv("XDG_ACTIVATION_TOKEN");
        qunsetenv("DESKTOP_STARTUP_ID");
    }

    /// Every start of the program is a connection of its own.
    QDBusConnection start() {
        return QDBusConnection::connectToBus(m_bus.address(),
                                             QStringLiteral("start-%1").arg(++starts));
    }
    static std::optional<Outcome> claim(SingleInstance& instance, const QDBusConnection& bus) {
        std::optional<Outcome> result;
        instance.claim(bus, [&result](Outcome outcome) { result = outcome; });
        waitUntil([&result] { return result.has_value(); });
        return result;
    }
    static void activateOwner(SingleInstance& instance) {
        bool done = false;
        instance.activateOwner([&done] { done = true; });
        EXPECT_TRUE(waitUntil([&done] { return done; }));
    }
    void call(const QDBusConnection& caller, const char* method, const QVariantList& arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QStringLiteral("com.korvale.ui"), QStringLiteral("/com/korvale/ui"),
            QStringLiteral("org.freedesktop.Application"), QString::fromLatin1(method));
        message.setArguments(arguments);
        EXPECT_EQ(caller.call(message, QDBus::BlockWithGui).type(), QDBusMessage::ReplyMessage)
            << method;
    }

    static inline int starts = 0;
    SessionBusDaemon m_bus;
};

TEST_F(SingleInstanceTest, TheFirstStartOwnsTheName) {
    const QDBusConnection bus = start();
    SingleInstance instance;
    EXPECT_EQ(claim(instance, bus), Outcome::First);
    EXPECT_EQ(bus.interface()->serviceOwner(QStringLiteral("com.korvale.ui")).value(),
              bus.baseService());
}

TEST_F(SingleInstanceTest, TheSecondStartHandsItsActivationTokenToTheFirst) {
    SingleInstance first;
    ASSERT_EQ(claim(first, start()), Outcome::First);
    std::vector<QString> tokens;
    QObject::connect(&first, &SingleInstance::activated, &first,
                     [&tokens](const QString& token) { tokens.push_back(token); });

    qputenv("XDG_ACTIVATION_TOKEN", "token-1");
    SingleInstance second;
    qunsetenv("XDG_ACTIVATION_TOKEN"); // as the toolkit does
    EXPECT_EQ(claim(second, start()), Outcome::Second);
    activateOwner(second);
    EXPECT_THAT(tokens, ElementsAre(QStringLiteral("token-1")));

    SingleInstance third; // without a token
    EXPECT_EQ(claim(third, start()), Outcome::Second);
    activateOwner(third);
    EXPECT_THAT(tokens, ElementsAre(QStringLiteral("token-1"), QString()));
}

TEST_F(SingleInstanceTest, AStartupIdServesWhereThereIsNoToken) {
    SingleInstance first;
    ASSERT_EQ(claim(first, start()), Outcome::First);
    QString token;
    QObject::connect(&first, &SingleInstance::activated, &first,
                     [&token](const QString& given) { token = given; });
    qputenv("DESKTOP_STARTUP_ID", "id_TIME7");
    SingleInstance second;
    ASSERT_EQ(claim(second, start()), Outcome::Second);
    activateOwner(second);
    EXPECT_EQ(token, QStringLiteral("id_TIME7"));
}

TEST_F(SingleInstanceTest, ASecondStartHandsTheActionItIsForToTheFirst) {
    SingleInstance first;
    ASSERT_EQ(claim(first, start()), Outcome::First);
    std::vector<std::pair<QString, QString>> wanted;
    QObject::connect(&first, &SingleInstance::activated, &first,
                     [&wanted](const QString& token, const QString& action) {
                         wanted.emplace_back(token, action);
                     });
    qputenv("XDG_ACTIVATION_TOKEN", "token-1");
    SingleInstance second(QStringLiteral("scan-folder"));
    ASSERT_EQ(claim(second, start()), Outcome::Second);
    activateOwner(second);
    EXPECT_THAT(wanted,
                ElementsAre(std::pair(QStringLiteral("token-1"), QStringLiteral("scan-folder"))));
}

TEST_F(SingleInstanceTest, AnActionIsNamedAndToBeShownIsNone) {
    SingleInstance instance;
    ASSERT_EQ(claim(instance, start()), Outcome::First);
    std::vector<QString> wanted;
    QObject::connect(
        &instance, &SingleInstance::activated, &instance,
        [&wanted](const QString& /*token*/, const QString& action) { wanted.push_back(action); });
    const QDBusConnection caller = start();
    call(caller, "ActivateAction",
         {QStringLiteral("check-updates"), QVariantList{}, QVariantMap()});
    call(caller, "Activate", {QVariantMap()});
    call(caller, "Open", {QStringList(), QVariantMap()});
    EXPECT_THAT(wanted, ElementsAre(QStringLiteral("check-updates"), QString(), QString()));
}

TEST_F(SingleInstanceTest, EveryMethodOfTheInterfaceAsksToBeShown) {
    SingleInstance instance;
    ASSERT_EQ(claim(instance, start()), Outcome::First);
    int count = 0;
    QObject::connect(&instance, &SingleInstance::activated, &instance, [&count] { ++count; });
    const QDBusConnection caller = start();
    const QVariantMap none;
    call(caller, "Activate", {none});
    call(caller, "Open", {QStringList{QStringLiteral("file:///x")}, none});
    call(caller, "ActivateAction", {QStringLiteral("x"), QVariantList{}, none});
    EXPECT_EQ(count, 3);
}

TEST_F(SingleInstanceTest, TheTokenIsNotToldToTheWholeBus) {
    SingleInstance instance;
    ASSERT_EQ(claim(instance, start()), Outcome::First);
    QDBusMessage question = QDBusMessage::createMethodCall(
        QStringLiteral("com.korvale.ui"), QStringLiteral("/com/korvale/ui"),
        QStringLiteral("org.freedesktop.DBus.Introspectable"), QStringLiteral("Introspect"));
    const std::string interfaces =
        start().call(question, QDBus::BlockWithGui).arguments().value(0).toString().toStdString();
    EXPECT_THAT(interfaces, HasSubstr("\"ActivateAction\""));
    EXPECT_THAT(interfaces, Not(HasSubstr("\"activated\"")));
}

TEST_F(SingleInstanceTest, APlatformDataOfTheWrongTypeIsNoToken) {
    SingleInstance instance;
    ASSERT_EQ(claim(instance, start()), Outcome::First);
    QString token = QStringLiteral("untouched");
    QObject::connect(&instance, &SingleInstance::activated, &instance,
                     [&token](const QString& given) { token = given; });
    call(start(), "Activate",
         {QVariantMap{{QStringLiteral("activation-token"), QStringList{QStringLiteral("a")}}}});
    EXPECT_EQ(token, QString());
}

TEST_F(SingleInstanceTest, AfterTheFirstHasEndedTheNextIsFirst) {
    const QDBusConnection bus = start();
    {
        SingleInstance instance;
        ASSERT_EQ(claim(instance, bus), Outcome::First);
    }
    QDBusConnection(bus).unregisterService(QStringLiteral("com.korvale.ui"));
    SingleInstance next;
    EXPECT_EQ(claim(next, start()), Outcome::First);
}

TEST_F(SingleInstanceTest, WithoutABusTheOutcomeIsUnknownAtOnce) {
    SingleInstance instance;
    std::optional<Outcome> result;
    instance.claim(QDBusConnection(QStringLiteral("none such")),
                   [&result](Outcome outcome) { result = outcome; });
    EXPECT_EQ(result, Outcome::Unknown);
}

TEST_F(SingleInstanceTest, ABusThatHangsIsGivenUp) {
    const QDBusConnection bus = start();
    m_bus.hang();
    SingleInstance instance;
    EXPECT_EQ(claim(instance, bus), Outcome::Unknown);
    m_bus.goOn();
}

TEST_F(SingleInstanceTest, ALateAnswerOfABusThatWasGivenUpStillCounts) {
    const QDBusConnection firstBus = start();
    const QDBusConnection secondBus = start();
    std::vector<Outcome> ofFirst;
    std::vector<Outcome> ofSecond;
    SingleInstance first;
    SingleInstance second;
    m_bus.hang();
    first.claim(firstBus, [&](Outcome outcome) { ofFirst.push_back(outcome); });
    second.claim(secondBus, [&](Outcome outcome) { ofSecond.push_back(outcome); });
    EXPECT_TRUE(waitUntil([&] { return ofFirst.size() == 1 && ofSecond.size() == 1; }));
    m_bus.goOn();
    EXPECT_TRUE(waitUntil([&] { return ofFirst.size() == 2 && ofSecond.size() == 2; }));
    EXPECT_THAT(ofFirst,
                ElementsAre(Outcome::Unknown, testing::AnyOf(Outcome::First, Outcome::Second)));
    EXPECT_THAT(ofSecond,
                ElementsAre(Outcome::Unknown, testing::AnyOf(Outcome::First, Outcome::Second)));
    EXPECT_NE(ofFirst.back(), ofSecond.back()) << "only one has the name";
}

TEST_F(SingleInstanceTest, ANewBusIsClaimedToo) {
    SingleInstance instance;
    EXPECT_EQ(claim(instance, start()), Outcome::First);
    const SessionBusDaemon next;
    const auto nextBus = QDBusConnection::connectToBus(next.address(), QStringLiteral("next"));
    EXPECT_EQ(claim(instance, nextBus), Outcome::First);
    EXPECT_EQ(nextBus.interface()->serviceOwner(QStringLiteral("com.korvale.ui")).value(),
              nextBus.baseService());
}

TEST_F(SingleInstanceTest, AnOwnerThatHangsIsGivenUp) {
    // A connection whose thread never looks at its messages.
    QDBusConnection owner = start();
    owner.registerService(QStringLiteral("com.korvale.ui"));
    struct Mute : QDBusVirtualObject {
        QString introspect(const QString&) const override { return {}; }
        bool handleMessage(const QDBusMessage&, const QDBusConnection&) override { return true; }
    } mute;
    owner.registerVirtualObject(QStringLiteral("/com/korvale/ui"), &mute);
    SingleInstance second;
    EXPECT_EQ(claim(second, start()), Outcome::Second);
    activateOwner(second);
}

} // namespace
} // namespace korvale
