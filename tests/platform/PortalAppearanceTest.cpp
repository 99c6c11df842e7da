#include "platform/PortalAppearance.h"

#include "fakes/FakeBusService.h"
#include "fakes/WaitUntil.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using fakes::FakeBusService;
using fakes::PrivateSessionBus;

class Portal {
public:
    explicit Portal(PrivateSessionBus& bus)
        : service(bus, QStringLiteral("org.freedesktop.portal.Desktop"),
                  QStringLiteral("/org/freedesktop/portal/desktop"),
                  QStringLiteral("org.freedesktop.portal.Settings")) {
        service.answer = [this](const QDBusMessage& call) {
            const QVariant inner = QVariant::fromValue(QDBusVariant(value));
            return call.createReply(QVariant::fromValue(QDBusVariant(inner)));
        };
    }
    void changeTo(const QVariant& newValue,
                  const QString& group = QStringLiteral("org.freedesktop.appearance"),
                  const QString& key = QStringLiteral("color-scheme")) {
        service.emitSignal(QStringLiteral("SettingChanged"),
                           {group, key, QVariant::fromValue(QDBusVariant(newValue))});
    }

    QVariant value = 0U;
    FakeBusService service;
};

class PortalAppearanceTest : public testing::Test {
protected:
    void start() {
        QObject::connect(&appearance, &Appearance::interfaceThemeChanged, &appearance,
                         [this] { ++notifications; });
        useBus(bus.connect());
    }
    void useBus(const QDBusConnection& sessionBus) {
        settings.start(sessionBus);
        appearance.start();
    }
    void startWith(const QVariant& value) {
        portal.value = value;
        portal.service.appear();
        start();
        ASSERT_TRUE(waitUntil([this] { return notifications == 1; }));
    }

    const QVariant dark = QStringLiteral("Dark");
    const QVariant none;
    PrivateSessionBus bus;
    Portal portal{bus};
    SettingsPortal settings;
    PortalAppearance appearance{settings};
    int notifications = 0;
};

TEST_F(PortalAppearanceTest, OneIsTheTextDark) {
    startWith(1U);
    EXPECT_EQ(appearance.interfaceStyle(), dark);
    const auto reads = portal.service.callsOf(QStringLiteral("Read"));
    ASSERT_EQ(reads.size(), 1U);
    EXPECT_EQ(reads[0].arguments(), (QVariantList{QStringLiteral("org.freedesktop.appearance"),
                                                  QStringLiteral("color-scheme")}));
}

TEST_F(PortalAppearanceTest, EveryOtherValueIsNoEntry) {
    startWith(0U);
    EXPECT_EQ(appearance.interfaceStyle(), none);
    int expected = 1;
    for (const QVariant& value : {QVariant(1U), QVariant(2U), QVariant(1U), QVariant(7U)}) {
        portal.changeTo(value);
        ++expected;
        ASSERT_TRUE(waitUntil([&] { return notifications == expected; }));
        EXPECT_EQ(appearance.interfaceStyle(), value == QVariant(1U) ? dark : none);
    }
}

TEST_F(PortalAppearanceTest, AValueOfAnotherKindIsNoEntry) {
    startWith(1U);
    portal.changeTo(QStringLiteral("dark"));
    ASSERT_TRUE(waitUntil([this] { return notifications == 2; }));
    EXPECT_EQ(appearance.interfaceStyle(), none);
}

TEST_F(PortalAppearanceTest, OtherSettingsAreNoAppearanceNotification) {
    startWith(0U);
    portal.changeTo(1U, QStringLiteral("org.gnome.desktop.interface"));
    portal.changeTo(1U, QStringLiteral("org.freedesktop.appearance"),
                    QStringLiteral("accent-color"));
    portal.changeTo(0U); // the last to arrive
    ASSERT_TRUE(waitUntil([this] { return notifications == 2; }));
    EXPECT_EQ(appearance.interfaceStyle(), none);
}

TEST_F(PortalAppearanceTest, OnlyThePortalsOwnerIsHeard) {
    startWith(0U);
    Portal impostor(bus);
    impostor.changeTo(1U);
    portal.changeTo(0U);
    ASSERT_TRUE(waitUntil([this] { return notifications == 2; }));
    EXPECT_EQ(appearance.interfaceStyle(), none);
}

TEST_F(PortalAppearanceTest, APortalThatAppearsLateIsAsked) {
    portal.value = 1U;
    start();
    EXPECT_EQ(appearance.interfaceStyle(), none);
    portal.service.appear();
    ASSERT_TRUE(waitUntil([this] { return notifications == 1; }));
    EXPECT_EQ(appearance.interfaceStyle(), dark);
}

TEST_F(PortalAppearanceTest, ARestartedPortalIsAskedAgain) {
    startWith(1U);
    portal.service.vanish();
    ASSERT_TRUE(waitUntil([this] { return appearance.interfaceStyle() == none; }));
    EXPECT_EQ(notifications, 2) << "the light pictures come back";
    portal.service.appear();
    ASSERT_TRUE(waitUntil([this] { return notifications == 3; }));
    EXPECT_EQ(appearance.interfaceStyle(), dark);
}

TEST_F(PortalAppearanceTest, APortalThatNeverAnswersHoldsUpNothing) {
    portal.service.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    portal.service.appear();
    start();
    ASSERT_TRUE(waitUntil([this] { return !portal.service.calls.empty(); }));
    EXPECT_EQ(appearance.interfaceStyle(), none);
}

TEST_F(PortalAppearanceTest, AChangeCountsWhileTheQuestionIsUnanswered) {
    portal.service.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    portal.service.appear();
    start();
    ASSERT_TRUE(waitUntil([this] { return !portal.service.calls.empty(); }));
    portal.changeTo(1U);
    ASSERT_TRUE(waitUntil([this] { return notifications == 1; }));
    EXPECT_EQ(appearance.interfaceStyle(), dark);
    const QVariant light = QVariant::fromValue(QDBusVariant(0U));
    portal.service.reply(portal.service.calls.front().createReply(light)); // and the late answer
    ASSERT_TRUE(waitUntil([this] { return notifications == 2; }));
    EXPECT_EQ(appearance.interfaceStyle(), none);
}

TEST_F(PortalAppearanceTest, AChangeCountsAfterAQuestionThatFailed) {
    portal.service.answer = [](const QDBusMessage& call) {
        return call.createErrorReply(QDBusError::Failed, QStringLiteral("not now"));
    };
    portal.service.appear();
    start();
    ASSERT_TRUE(waitUntil([this] { return !portal.service.calls.empty(); }));
    portal.changeTo(1U);
    ASSERT_TRUE(waitUntil([this] { return notifications == 1; }));
    EXPECT_EQ(appearance.interfaceStyle(), dark);
}

TEST_F(PortalAppearanceTest, ANewBusIsFollowed) {
    startWith(1U);
    useBus(QDBusConnection(QStringLiteral("lost")));
    EXPECT_EQ(appearance.interfaceStyle(), none);
    EXPECT_EQ(notifications, 2);
    PrivateSessionBus nextBus;
    Portal next(nextBus);
    next.value = 1U;
    next.service.appear();
    useBus(nextBus.connect());
    ASSERT_TRUE(waitUntil([this] { return notifications == 3; }));
    EXPECT_EQ(appearance.interfaceStyle(), dark);
}

TEST_F(PortalAppearanceTest, AnErrorOrAnEmptyReplyIsNoEntry) {
    portal.service.answer = [](const QDBusMessage& call) {
        return call.createErrorReply(QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                                     QStringLiteral("no such setting"));
    };
    portal.service.appear();
    start();
    ASSERT_TRUE(waitUntil([this] { return !portal.service.calls.empty(); }));
    portal.service.answer = [](const QDBusMessage& call) { return call.createReply(); };
    portal.service.vanish();
    portal.service.appear();
    ASSERT_TRUE(waitUntil([this] { return portal.service.calls.size() == 2; }));
    EXPECT_EQ(notifications, 0);
    EXPECT_EQ(appearance.interfaceStyle(), none);
}

TEST(PortalAppearance, WithoutASessionBusThereIsNoEntry) {
    SettingsPortal settings;
    PortalAppearance appearance{settings};
    settings.start(QDBusConnection(QStringLiteral("not connected")));
    appearance.start();
    EXPECT_FALSE(appearance.interfaceStyle().isValid());
}

} // namespace
} // namespace korvale
