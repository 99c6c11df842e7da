#include "shell/UserNotifications.h"

#include "fakes/FakeAppearance.h"
#include "fakes/FakeBusService.h"
#include "fakes/FakeTexts.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/RecordingLinkOpener.h"
#include "fakes/WaitUntil.h"
#include "model/HostCache.h"
#include "platform/NotificationMessage.h"
#include "shell/Resources.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using fakes::FakeBusService;
using fakes::PrivateSessionBus;

/// A notification service that numbers what it shows from 41 on.
class Server {
public:
    explicit Server(PrivateSessionBus& bus)
        : service(bus, QStringLiteral("org.freedesktop.Notifications"),
                  QStringLiteral("/org/freedesktop/Notifications"),
                  QStringLiteral("org.freedesktop.Notifications")) {
        service.answer = [this](const QDBusMessage& call) {
            if (call.member() == QLatin1String("GetCapabilities")) {
                return hasCapabilities
                           ? call.createReply(QVariant(capabilities))
                           : call.createErrorReply(QDBusError::UnknownMethod, QString());
            }
            lastId += static_cast<uint>(step);
            return call.createReply(QVariant(lastId));
        };
    }
    [[nodiscard]] std::vector<QDBusMessage> shown() const {
        return service.callsOf(QStringLiteral("Notify"));
    }
    [[nodiscard]] std::size_t questions() const {
        return service.callsOf(QStringLiteral("GetCapabilities")).size();
    }
    void invoke(uint id, const QString& action = QStringLiteral("default")) {
        service.emitSignal(QStringLiteral("ActionInvoked"), {id, action});
    }
    void give(uint id, const QString& token) {
        service.emitSignal(QStringLiteral("ActivationToken"), {id, token});
    }
    void close(uint id) { service.emitSignal(QStringLiteral("NotificationClosed"), {id, 2U}); }

    bool hasCapabilities = true;
    QStringList capabilities{QStringLiteral("body"), QStringLiteral("actions")};
    uint lastId = 40;
    int step = 1;
    FakeBusService service;
};

class UserNotificationsTest : public testing::Test {
protected:
    UserNotificationsTest() {
        resources.initialize();
        state.policyShowNotifications = true;
    }

    void start() {
        server.service.appear();
        notifications.start(bus.connect());
    }
    /// The arguments of the notification number `index`, once that many were shown.
    QVariantList shownArguments(std::size_t index = 0) {
        if (!waitUntil([&] { return server.shown().size() > index; })) {
            ADD_FAILURE() << "not shown";
            return {};
        }
        return server.shown().at(index).arguments();
    }
    /// What was sent before this is shown, or never will be.
    void expectShownSoFar(std::size_t count) {
        state.policyShowNotifications = true;
        state.showNotifications = true;
        notifications.SendSondarNotification(QStringLiteral("last"));
        ASSERT_TRUE(waitUntil([&] {
            const auto shown = server.shown();
            return !shown.empty() && shown.back().arguments().at(4) == QStringLiteral("last");
        }));
        EXPECT_EQ(server.shown().size(), count + 1);
    }
    /// Shows a message with a link and waits until the program knows its number, which the answer
    /// tells; the second message's answer is behind the first one's.
    void showLink(const QString& link) {
        notifications.SendConsumerNotification(QStringLiteral("see"), link);
        const uint id = server.lastId + 1;
        ASSERT_TRUE(waitUntil([&] { return server.lastId == id; }));
    }

    const FakeTexts texts{{"ProductEP", QStringLiteral("Product")},
                          {"KorvaleSONDAR", QStringLiteral("Sondar")},
                          {"NotificationActionOpenLink", QStringLiteral("Open Link")}};
    PrivateSessionBus bus;
    Server server{bus};
    AppState state;
    fakes::MemoryUserDefaults defaults;
    HostCache hostCache{defaults, QStringLiteral("/nonexistent")};
    fakes::FakeAppearance appearance;
    Resources resources{appearance, IconSet::Standard};
    fakes::RecordingLinkOpener links;
    UserNotifications notifications{state, hostCache, resources, links};
};

TEST_F(UserNotificationsTest, CarryTitleSubtitleAndMessage) {
    QGuiApplication::setApplicationDisplayName(QStringLiteral("The Display Name"));
    start();
    notifications.SendNotification(QStringLiteral("a < b"), QStringLiteral("c & d"), noImage);
    const QVariantList arguments = shownArguments();
    ASSERT_EQ(arguments.size(), 8);
    EXPECT_EQ(arguments.at(0), QVariant(QStringLiteral("The Display Name")));
    EXPECT_EQ(arguments.at(1), QVariant(0U));
    EXPECT_EQ(arguments.at(2), QVariant(QStringLiteral("com.korvale.ui")));
    EXPECT_EQ(arguments.at(3), QVariant(QStringLiteral("Product")));
    EXPECT_EQ(arguments.at(4), QVariant(QStringLiteral("c & d\na < b")));
    EXPECT_EQ(arguments.at(5), QVariant(QStringList()));
    const auto hints = qdbus_cast<QVariantMap>(arguments.at(6));
    EXPECT_EQ(hints,
              (QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("com.korvale.ui")},
                           {QStringLiteral("urgency"), QVariant::fromValue(uchar{1})}}));
    EXPECT_EQ(server.shown().front().signature(), QStringLiteral("susssasa{sv}i"));
}

TEST_F(UserNotificationsTest, AreMarkedUpAndEscapedWhereTheServiceReadsMarkup) {
    server.capabilities << QStringLiteral("body-markup");
    start();
    notifications.SendNotification(QStringLiteral("a<b>&amp;\"x\""), QStringLiteral("<i>c & d"),
                                   noImage);
    EXPECT_EQ(
        shownArguments().at(4),
        QVariant(QStringLiteral("<b>&lt;i&gt;c &amp; d</b>\na&lt;b&gt;&amp;amp;&quot;x&quot;")));
    notifications.SendConsumerNotification(QStringLiteral("<x>"), QString());
    EXPECT_EQ(shownArguments(1).at(4), QVariant(QStringLiteral("&lt;x&gt;")));
}

TEST_F(UserNotificationsTest, HideNoCharacterThatReordersOrBreaksText) {
    start();
    notifications.SendConsumerNotification(QStringLiteral("one\ntwo\u202efdp.exe\u0007"),
                                           QString());
    EXPECT_EQ(shownArguments().at(4), QVariant(QStringLiteral("one\ntwo[U+202E]fdp.exe[U+0007]")));
}

TEST_F(UserNotificationsTest, AnEmptySubtitleIsNone) {
    start();
    notifications.SendNotification(QStringLiteral("message"), QString(), noImage);
    notifications.SendNotification(QStringLiteral("message"), QStringLiteral(""), noImage);
    EXPECT_EQ(shownArguments(0).at(4), QVariant(QStringLiteral("message")));
    EXPECT_EQ(shownArguments(1).at(4), QVariant(QStringLiteral("message")));
}

TEST_F(UserNotificationsTest, CarryThePicture) {
    start();
    notifications.SendNotification(QStringLiteral("message"), QString(), 4);
    const auto hints = qdbus_cast<QVariantMap>(shownArguments().at(6));
    ASSERT_TRUE(hints.contains(QStringLiteral("image-data")));
    const auto wire = hints.value(QStringLiteral("image-data")).value<QDBusArgument>();
    EXPECT_EQ(wire.currentSignature(), QStringLiteral("(iiibiiay)"));
    const auto image = qdbus_cast<NotificationImage>(wire);
    EXPECT_EQ(image.width, 96);
    EXPECT_EQ(image.height, 96);
    EXPECT_EQ(image.rowStride, 4 * 96);
    EXPECT_TRUE(image.hasAlpha);
    EXPECT_EQ(image.bitsPerSample, 8);
    EXPECT_EQ(image.channels, 4);
    ASSERT_EQ(image.data.size(), 4 * 96 * 96);
    const qsizetype pixel = 4 * (40 * 96 + 24);
    const auto byteAt = [&](qsizetype i) {
        return static_cast<int>(static_cast<uchar>(image.data.at(pixel + i)));
    };
    EXPECT_GT(byteAt(0), 2 * byteAt(1)) << "the red shield, with red as the first byte";
    EXPECT_EQ(byteAt(3), 255);
}

TEST_F(UserNotificationsTest, WhatNobodyHasHandledIsCritical) {
    start();
    notifications.SendUrgentNotification(QStringLiteral("message"), QString(), 4);
    EXPECT_EQ(qdbus_cast<QVariantMap>(shownArguments().at(6)).value(QStringLiteral("urgency")),
              QVariant::fromValue(uchar{2}));
}

TEST_F(UserNotificationsTest, AnIndexWithoutAPictureIsNoPicture) {
    start();
    notifications.SendNotification(QStringLiteral("message"), QString(), 9);
    EXPECT_FALSE(
        qdbus_cast<QVariantMap>(shownArguments().at(6)).contains(QStringLiteral("image-data")));
}

TEST_F(UserNotificationsTest, TheCompanionProductHasItsOwnTitle) {
    start();
    notifications.SendSondarNotification(QStringLiteral("message"));
    EXPECT_EQ(shownArguments().at(3), QVariant(QStringLiteral("Sondar")));
    EXPECT_EQ(shownArguments().at(4), QVariant(QStringLiteral("message")));
}

TEST_F(UserNotificationsTest, WithoutAMessageNothingIsSent) {
    start();
    for (const QString& nothing : {QString(), QStringLiteral("")}) {
        notifications.SendNotification(nothing, QStringLiteral("subtitle"), 4);
        notifications.SendConsumerNotification(nothing, QStringLiteral("https://korvale.example/"));
        notifications.SendSondarNotification(nothing);
    }
    expectShownSoFar(0);
}

struct Gate {
    bool hasChosen;
    bool choice;
    bool policy;
    bool isOpen;
};
class Gates : public UserNotificationsTest, public testing::WithParamInterface<Gate> {};

TEST_P(Gates, TheUsersChoiceCountsBeforeThePolicy) {
    const Gate& gate = GetParam();
    hostCache.setCurrentUserNotification(gate.choice, gate.hasChosen);
    state.showNotifications = gate.choice;
    state.policyShowNotifications = gate.policy;
    start();
    notifications.SendNotification(QStringLiteral("1"), QString(), noImage);
    notifications.SendConsumerNotification(QStringLiteral("2"), QString());
    notifications.SendSondarNotification(QStringLiteral("3"));
    expectShownSoFar(gate.isOpen ? 3 : 0);
}

INSTANTIATE_TEST_SUITE_P(All, Gates,
                         testing::Values(Gate{true, false, true, false},
                                         Gate{true, true, false, true},
                                         Gate{false, true, false, false},
                                         Gate{false, false, true, true},
                                         Gate{false, false, false, false}));

TEST_F(UserNotificationsTest, TellWhatTheySayThoughNobodyWantsToSeeIt) {
    std::vector<std::pair<DesktopNotification, bool>> told;
    QObject::connect(&notifications, &UserNotifications::told,
                     [&](const DesktopNotification& notification, bool isHeldBack) {
                         told.emplace_back(notification, isHeldBack);
                     });
    start();
    notifications.SendNotification(QString(), QStringLiteral("no message"), noImage);
    notifications.SendUrgentNotification(QStringLiteral("bad.exe"), QStringLiteral("Found"),
                                         threatImage);
    state.policyShowNotifications = false;
    notifications.SendConsumerNotification(QStringLiteral("restart"),
                                           QStringLiteral("https://korvale.example/"));
    notifications.SendConsumerNotification(QStringLiteral("look"),
                                           QStringLiteral("file:///etc/passwd"));
    notifications.SendSondarNotification(QStringLiteral("companion"));
    ASSERT_EQ(told.size(), 4U);
    EXPECT_EQ(told[0].first.title, u"Product");
    EXPECT_EQ(told[0].first.subtitle, u"Found");
    EXPECT_EQ(told[0].first.message, u"bad.exe");
    EXPECT_FALSE(told[0].second);
    EXPECT_EQ(told[1].first.link, u"https://korvale.example/");
    EXPECT_TRUE(told[1].second);
    EXPECT_EQ(told[2].first.link, QString());
    EXPECT_EQ(told[3].first.title, u"Sondar");
    EXPECT_TRUE(told[3].second);
    expectShownSoFar(1);
}

TEST_F(UserNotificationsTest, ALinkIsAnActionThatOpensItOncePerClick) {
    start();
    showLink(QStringLiteral("https://korvale.example/a"));
    EXPECT_EQ(shownArguments().at(5),
              QVariant(QStringList({QStringLiteral("default"), QStringLiteral("Open Link")})));
    server.invoke(41);
    ASSERT_TRUE(waitUntil([this] { return !links.opened.isEmpty(); }));
    EXPECT_EQ(links.opened, QStringList(QStringLiteral("https://korvale.example/a")));
    server.invoke(41);
    ASSERT_TRUE(waitUntil([this] { return links.opened.size() == 2; }));
}

TEST_F(UserNotificationsTest, EachLinkIsItsOwnNotifications) {
    start();
    showLink(QStringLiteral("https://korvale.example/a"));
    showLink(QStringLiteral("https://korvale.example/b"));
    server.invoke(41);
    server.invoke(42);
    ASSERT_TRUE(waitUntil([this] { return links.opened.size() == 2; }));
    EXPECT_EQ(links.opened, QStringList({QStringLiteral("https://korvale.example/a"),
                                         QStringLiteral("https://korvale.example/b")}));
}

TEST_F(UserNotificationsTest, ForeignNumbersActionsAndSendersOpenNothing) {
    start();
    showLink(QStringLiteral("https://korvale.example/a"));
    server.invoke(40);
    server.invoke(41, QStringLiteral("other"));
    Server impostor(bus);
    impostor.invoke(41);
    impostor.close(41);
    showLink(QStringLiteral("https://korvale.example/b"));
    server.invoke(42);
    ASSERT_TRUE(waitUntil([this] { return !links.opened.isEmpty(); }));
    EXPECT_EQ(links.opened, QStringList(QStringLiteral("https://korvale.example/b")));
    server.invoke(41);
    ASSERT_TRUE(waitUntil([this] { return links.opened.size() == 2; })) << "nobody else closed it";
}

TEST_F(UserNotificationsTest, TheTokenOfAClickGoesWithItsLinkAndWithNoOther) {
    start();
    showLink(QStringLiteral("https://korvale.example/1"));
    showLink(QStringLiteral("https://korvale.example/2"));
    server.give(41, QStringLiteral("first"));
    server.invoke(42);
    server.invoke(41);
    server.invoke(41);
    ASSERT_TRUE(waitUntil([this] { return links.opened.size() == 3; }));
    EXPECT_EQ(links.tokens, QStringList({QString(), QStringLiteral("first"), QString()}));
}

TEST_F(UserNotificationsTest, WhereNothingCanBeChosenTheLinkIsText) {
    server.capabilities = QStringList{QStringLiteral("body"), QStringLiteral("body-markup")};
    start();
    notifications.SendConsumerNotification(QStringLiteral("see"),
                                           QStringLiteral("https://korvale.example/?a&b"));
    EXPECT_EQ(shownArguments().at(4),
              QVariant(QStringLiteral("see\nhttps://korvale.example/?a&amp;b")));
}

TEST_F(UserNotificationsTest, AClosedNotificationOpensNothing) {
    start();
    showLink(QStringLiteral("https://korvale.example/a"));
    showLink(QStringLiteral("https://korvale.example/b"));
    server.close(41);
    server.invoke(41);
    server.invoke(42);
    ASSERT_TRUE(waitUntil([this] { return !links.opened.isEmpty(); }));
    EXPECT_EQ(links.opened, QStringList(QStringLiteral("https://korvale.example/b")));
}

TEST_F(UserNotificationsTest, WithoutALinkThereIsNoAction) {
    start();
    notifications.SendConsumerNotification(QStringLiteral("see"), QString());
    notifications.SendConsumerNotification(QStringLiteral("see"), QStringLiteral(""));
    EXPECT_EQ(shownArguments(0).at(5), QVariant(QStringList()));
    EXPECT_EQ(shownArguments(1).at(5), QVariant(QStringList()));
}

TEST_F(UserNotificationsTest, ALinkThatWouldNotOpenIsNotOffered) {
    start();
    showLink(QStringLiteral("file:///etc/passwd"));
    showLink(QStringLiteral("not a link"));
    showLink(QStringLiteral("https://korvale.example/\U0001F600"));
    EXPECT_EQ(shownArguments(0).at(5), QVariant(QStringList()));
    EXPECT_EQ(shownArguments(1).at(5), QVariant(QStringList()));
    EXPECT_EQ(shownArguments(2).at(5).toStringList().size(), 2);
    server.invoke(41);
    server.invoke(42);
    server.invoke(43);
    ASSERT_TRUE(waitUntil([this] { return !links.opened.isEmpty(); }));
    EXPECT_EQ(links.opened, QStringList(QStringLiteral("https://korvale.example/\U0001F600")));
}

TEST_F(UserNotificationsTest, TheServiceIsAskedOnceWhatItCanDo) {
    start();
    for (int i = 0; i < 3; ++i) {
        notifications.SendSondarNotification(QString::number(i));
    }
    shownArguments(2);
    notifications.SendSondarNotification(QStringLiteral("3"));
    shownArguments(3);
    EXPECT_EQ(server.questions(), 1U);
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(server.shown().at(i).arguments().at(4), QVariant(QString::number(i)));
    }
}

TEST_F(UserNotificationsTest, AnotherServiceIsAskedAgain) {
    start();
    notifications.SendNotification(QStringLiteral("1"), QStringLiteral("s"), noImage);
    EXPECT_EQ(shownArguments(0).at(4), QVariant(QStringLiteral("s\n1")));
    server.service.vanish();
    Server another(bus);
    another.capabilities << QStringLiteral("body-markup");
    another.service.appear();
    // The news of both is on its way: a message that needs markup arrives with it in the end.
    ASSERT_TRUE(waitUntil([&] {
        notifications.SendNotification(QStringLiteral("2"), QStringLiteral("s"), noImage);
        return another.questions() == 1 && !another.shown().empty() &&
               another.shown().back().arguments().at(4) == QStringLiteral("<b>s</b>\n2");
    }));
}

TEST_F(UserNotificationsTest, AServiceThatDoesNotSayWhatItCanDoGetsPlainText) {
    server.hasCapabilities = false;
    start();
    notifications.SendNotification(QStringLiteral("a & b"), QStringLiteral("s"), noImage);
    EXPECT_EQ(shownArguments().at(4), QVariant(QStringLiteral("s\na & b")));
}

TEST_F(UserNotificationsTest, AServiceThatHangsHoldsUpNothingAndGrowsNothing) {
    server.service.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    start();
    for (int i = 0; i < 1000; ++i) {
        notifications.SendSondarNotification(QString::number(i));
    }
    ASSERT_TRUE(waitUntil([this] { return server.questions() == 1; }));
    EXPECT_TRUE(server.shown().empty());
}

TEST_F(UserNotificationsTest, WithoutAServiceNothingFailsAndALaterOneIsUsed) {
    notifications.start(bus.connect());
    notifications.SendNotification(QStringLiteral("lost"), QString(), 4);
    notifications.SendConsumerNotification(QStringLiteral("lost"),
                                           QStringLiteral("https://korvale.example/"));
    server.service.appear();
    ASSERT_TRUE(waitUntil([this] {
        notifications.SendSondarNotification(QStringLiteral("late"));
        return !server.shown().empty();
    }));
}

TEST_F(UserNotificationsTest, AnAnswerLaterThanTheUsualTimeLimitOfACallStillCounts) {
    const auto answer = server.service.answer;
    server.service.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    server.capabilities << QStringLiteral("body-markup");
    start();
    notifications.SendSondarNotification(QStringLiteral("a & b"));
    ASSERT_TRUE(waitUntil([this] { return server.questions() == 1; }));
    QTimer limit; // of D-Bus calls: 25 s; nothing tells that it has passed without effect
    limit.setSingleShot(true);
    limit.start(13'000);
    ASSERT_TRUE(waitUntil([&limit] { return !limit.isActive(); }));
    limit.start(13'000);
    ASSERT_TRUE(waitUntil([&limit] { return !limit.isActive(); }));
    EXPECT_TRUE(server.shown().empty()) << "nobody can say yet how to write it";
    server.service.answer = answer;
    server.service.reply(answer(server.service.calls.front()));
    EXPECT_EQ(shownArguments().at(4), QVariant(QStringLiteral("a &amp; b")));
    EXPECT_EQ(server.questions(), 1U);
}

TEST_F(UserNotificationsTest, WhatWasSentBeforeTheBusAnsweredIsShownThen) {
    notifications.SendSondarNotification(QStringLiteral("1"));
    notifications.SendSondarNotification(QStringLiteral("2"));
    start();
    EXPECT_EQ(shownArguments(0).at(4), QVariant(QStringLiteral("1")));
    EXPECT_EQ(shownArguments(1).at(4), QVariant(QStringLiteral("2")));
}

TEST_F(UserNotificationsTest, OfVeryManyThatWaitTheLastFiftyAreShown) {
    for (int i = 0; i < 120; ++i) {
        notifications.SendSondarNotification(QString::number(i));
    }
    start();
    EXPECT_EQ(shownArguments(0).at(4), QVariant(QStringLiteral("70")));
    EXPECT_EQ(shownArguments(49).at(4), QVariant(QStringLiteral("119")));
    expectShownSoFar(50);
}

/// Each carries a picture of tens of kilobytes, which would wait in this program's memory.
TEST_F(UserNotificationsTest, AServiceThatLagsBehindGetsTheRestWhenItCatchesUp) {
    const auto answer = server.service.answer;
    server.service.appear();
    const QDBusConnection own = bus.connect();
    notifications.start(own);
    expectShownSoFar(0);
    server.service.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    for (int i = 0; i < 200; ++i) {
        notifications.SendNotification(QString::number(i), QString(), 4);
    }
    const QString behindThem = QStringLiteral("GetServerInformation");
    EXPECT_TRUE(own.send(QDBusMessage::createMethodCall(notificationsName(), notificationsPath(),
                                                        notificationsName(), behindThem)));
    ASSERT_TRUE(waitUntil([&] { return !server.service.callsOf(behindThem).empty(); }));
    ASSERT_LE(server.shown().size(), 51U);
    ASSERT_TRUE(waitUntil([this] { return server.shown().size() == 51; }))
        << "the first one's answer makes room for one more";
    server.service.answer = answer;
    server.service.reply(answer(server.shown().at(1)));
    EXPECT_EQ(shownArguments(200).at(4), QVariant(QStringLiteral("199")));
}

TEST_F(UserNotificationsTest, TheNextServiceGetsWhatAHungOneNeverTook) {
    start();
    expectShownSoFar(0);
    server.service.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    for (int i = 0; i < 60; ++i) {
        notifications.SendSondarNotification(QString::number(i));
    }
    ASSERT_TRUE(waitUntil([this] { return server.shown().size() == 51; }));
    server.service.vanish();
    Server next(bus);
    next.service.appear();
    ASSERT_TRUE(waitUntil([&next] { return next.shown().size() == 10; }));
    EXPECT_EQ(next.shown().front().arguments().at(4), QVariant(QStringLiteral("50")));
}

TEST_F(UserNotificationsTest, ANewBusIsUsedThoughTheFormerNeverAnswered) {
    server.service.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    start();
    notifications.SendSondarNotification(QStringLiteral("1"));
    ASSERT_TRUE(waitUntil([this] { return server.questions() == 1; }));
    PrivateSessionBus nextBus;
    Server next(nextBus);
    next.service.appear();
    notifications.start(nextBus.connect());
    ASSERT_TRUE(waitUntil([&next] { return next.shown().size() == 1; }));
    notifications.SendSondarNotification(QStringLiteral("2"));
    ASSERT_TRUE(waitUntil([&next] { return next.shown().size() == 2; }));
}

TEST_F(UserNotificationsTest, BeyondAHundredLinksTheOldestIsForgotten) {
    server.step = -1; // numbers are the service's affair
    start();
    server.lastId = 1000;
    for (int i = 0; i < 101; ++i) {
        const uint before = server.lastId;
        notifications.SendConsumerNotification(QStringLiteral("see"),
                                               QStringLiteral("https://korvale.example/%1").arg(i));
        ASSERT_TRUE(waitUntil([&] { return server.lastId != before; }));
    }
    server.invoke(999); // the first
    server.invoke(998);
    server.invoke(899); // the last
    ASSERT_TRUE(waitUntil([this] { return links.opened.size() == 2; }));
    EXPECT_EQ(links.opened, QStringList({QStringLiteral("https://korvale.example/1"),
                                         QStringLiteral("https://korvale.example/100")}));
}

TEST_F(UserNotificationsTest, WithoutABusNothingFails) {
    notifications.SendSondarNotification(QStringLiteral("before the start"));
    notifications.start(QDBusConnection(QStringLiteral("not connected")));
    notifications.SendConsumerNotification(QStringLiteral("lost"),
                                           QStringLiteral("https://korvale.example/"));
    EXPECT_TRUE(server.service.calls.empty());
}

TEST_F(UserNotificationsTest, AHugeTextIsCutAndKeepsTheBus) {
    start();
    notifications.SendSondarNotification(QString(200'000'000, u'x'));
    EXPECT_LT(shownArguments().at(4).toString().size(), 5000);
}

TEST_F(UserNotificationsTest, ControlCharactersAndBrokenTextKeepTheBus) {
    start();
    notifications.SendSondarNotification(QStringLiteral("a\n\t\u001b[0m") + QChar(0xd800) +
                                         QChar(0xffff));
    shownArguments();
    notifications.SendSondarNotification(QStringLiteral("next"));
    EXPECT_EQ(shownArguments(1).at(4), QVariant(QStringLiteral("next")));
}

} // namespace
} // namespace korvale
