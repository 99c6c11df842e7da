#include "shell/TrayIcon.h"

#include "fakes/FakeBusService.h"
#include "fakes/FakeTexts.h"
#include "fakes/WaitUntil.h"
#include "shell/MenuParts.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace std::chrono_literals;
using fakes::FakeBusService;
using fakes::PrivateSessionBus;

/// The item itself is Qt's and needs a desktop; here it is decided whether and when there is one.
class TrayIconTest : public testing::Test, protected MenuParts {
protected:
    TrayIconTest() {
        watcher.answer = [this](const QDBusMessage& call) {
            return knowsHosts
                       ? call.createReply(QVariant::fromValue(QDBusVariant(hasHost)))
                       : call.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("none"));
        };
        menu.setupStatusItemAndMenu({});
    }

    void begin(TrayIcon& tray) {
        tray.start();
        tray.useSessionBus(bus.connect());
    }
    X11Tray askX11() {
        ++x11Questions;
        return x11;
    }
    bool waitForAvailability(bool isThere) {
        return waitUntil([&] { return statusItem.isTrayAvailable() == isThere; });
    }
    QString firstLabel() { return menu.menu()->actions().constFirst()->text(); }

    const FakeTexts texts{{"ShowDetailsMenu", QStringLiteral("a_b")}};
    PrivateSessionBus bus;
    FakeBusService watcher{bus, QStringLiteral("org.kde.StatusNotifierWatcher"),
                           QStringLiteral("/StatusNotifierWatcher"),
                           QStringLiteral("org.kde.StatusNotifierWatcher")};
    bool hasHost = true;
    bool knowsHosts = true;
    X11Tray x11 = X11Tray::Absent;
    int x11Questions = 0;

    TrayIcon icon{statusItem, menu, [this] { return askX11(); }, 1ms, 1ms};
    TrayIcon patientIcon{statusItem, menu, [this] { return askX11(); }, 1h, 1h};
};

TEST_F(TrayIconTest, NoIconIsMadeBeforeThereIsATray) {
    begin(patientIcon);
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_FALSE(patientIcon.hasItem());
    EXPECT_TRUE(watcher.calls.empty());
}

TEST_F(TrayIconTest, AWatcherThatIsThereShowsTheIcon) {
    watcher.appear();
    statusItem.setTrayAvailable(false);
    begin(patientIcon);
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.hasItem());
    EXPECT_EQ(firstLabel(), QStringLiteral("a__b")) << "the panel draws the menu";
}

TEST_F(TrayIconTest, AWatcherThatAppearsLateShowsTheIcon) {
    begin(patientIcon);
    ASSERT_TRUE(waitForAvailability(false));
    watcher.appear();
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.hasItem());
}

TEST_F(TrayIconTest, AWatcherThatGoesAndComesIsFollowed) {
    watcher.appear();
    begin(patientIcon);
    ASSERT_TRUE(waitUntil([this] { return patientIcon.hasItem(); }));
    watcher.vanish();
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_EQ(firstLabel(), QStringLiteral("a_b")) << "only the window has the menu now";
    watcher.appear();
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.hasItem());
}

TEST_F(TrayIconTest, AMenuThatWasOpenIsClosedWhenThePanelGoes) {
    watcher.appear();
    begin(patientIcon);
    ASSERT_TRUE(waitUntil([this] { return !watcher.calls.empty(); }));
    ASSERT_TRUE(waitUntil([this] { return firstLabel() == QStringLiteral("a__b"); }));
    statusItem.setMenuOpen(true);
    watcher.vanish();
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(2).cacheKey());
}

TEST_F(TrayIconTest, AWatcherWithoutAHostIsNoTrayUntilOneRegisters) {
    hasHost = false;
    watcher.appear();
    begin(patientIcon);
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_FALSE(patientIcon.hasItem()) << "Qt would take the X11 tray, and for good";
    hasHost = true;
    watcher.emitSignal(QStringLiteral("StatusNotifierHostRegistered"), {});
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.hasItem());
    hasHost = false;
    watcher.emitSignal(QStringLiteral("StatusNotifierHostUnregistered"), {});
    ASSERT_TRUE(waitForAvailability(false));
}

TEST_F(TrayIconTest, AWatcherThatDoesNotSayWhetherThereIsAHostHasNone) {
    knowsHosts = false;
    watcher.appear();
    begin(patientIcon);
    EXPECT_TRUE(waitForAvailability(false));
    EXPECT_FALSE(patientIcon.hasItem());
}

TEST_F(TrayIconTest, AWatcherThatNeverAnswersLeavesTheX11Tray) {
    watcher.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    watcher.appear();
    begin(icon);
    ASSERT_TRUE(waitUntil([this] { return watcher.calls.size() == 1; }));
    ASSERT_TRUE(waitForAvailability(false)) << "the window has the menu in the meantime";
    x11 = X11Tray::Present;
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(icon.isDocked());
    EXPECT_FALSE(icon.hasItem());
}

TEST_F(TrayIconTest, AnX11TrayServesWhereTheWatcherHasNoHost) {
    hasHost = false;
    x11 = X11Tray::Present;
    watcher.appear();
    begin(icon);
    ASSERT_TRUE(waitUntil([this] { return icon.isDocked(); }));
    EXPECT_TRUE(waitForAvailability(true));
    EXPECT_EQ(firstLabel(), QStringLiteral("a_b"));
}

TEST_F(TrayIconTest, SignalsOfOthersThanTheWatcherAskNothing) {
    watcher.appear();
    begin(patientIcon);
    ASSERT_TRUE(waitUntil([this] { return watcher.calls.size() == 1; }));
    FakeBusService impostor(bus, QStringLiteral("com.example.Impostor"),
                            QStringLiteral("/StatusNotifierWatcher"),
                            QStringLiteral("org.kde.StatusNotifierWatcher"));
    impostor.emitSignal(QStringLiteral("StatusNotifierHostUnregistered"), {});
    hasHost = false;
    watcher.emitSignal(QStringLiteral("StatusNotifierHostUnregistered"), {});
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_EQ(watcher.calls.size(), 2U);
}

TEST_F(TrayIconTest, AnX11TrayServesWhereThereIsNoWatcher) {
    x11 = X11Tray::Present;
    begin(icon);
    ASSERT_TRUE(waitUntil([this] { return icon.isDocked(); }));
    EXPECT_TRUE(statusItem.isTrayAvailable());
    EXPECT_EQ(firstLabel(), QStringLiteral("a_b"));
}

TEST_F(TrayIconTest, AnX11TrayThatAppearsLateServesToo) {
    begin(icon);
    ASSERT_TRUE(waitUntil([this] { return x11Questions >= 3; }));
    EXPECT_FALSE(icon.isDocked());
    x11 = X11Tray::Present;
    ASSERT_TRUE(waitUntil([this] { return icon.isDocked(); }));
}

TEST_F(TrayIconTest, WithoutAnX11ServerItIsAskedOnce) {
    x11 = X11Tray::NoX11;
    begin(icon);
    ASSERT_TRUE(waitUntil([this] { return x11Questions == 1; }));
    watcher.appear(); // a StatusNotifier host may still come
    ASSERT_TRUE(waitUntil([this] { return icon.hasItem(); }));
    EXPECT_EQ(x11Questions, 1);
}

TEST_F(TrayIconTest, WithoutASessionBusTheX11TrayServes) {
    x11 = X11Tray::Present;
    icon.start();
    icon.useSessionBus(QDBusConnection(QStringLiteral("not connected")));
    EXPECT_FALSE(statusItem.isTrayAvailable());
    ASSERT_TRUE(waitUntil([this] { return icon.isDocked(); }));
    EXPECT_TRUE(statusItem.isTrayAvailable());
}

TEST_F(TrayIconTest, WhileTheBusSaysNothingTheX11TrayServesElseTheWindow) {
    icon.start();
    EXPECT_TRUE(waitForAvailability(false)) << "the window has the menu";
    x11 = X11Tray::Present;
    EXPECT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(icon.isDocked());
    watcher.appear();
    icon.useSessionBus(bus.connect()); // it speaks after all
    EXPECT_TRUE(waitUntil([this] { return icon.hasItem(); }));
    EXPECT_FALSE(icon.isDocked());
}

TEST_F(TrayIconTest, AnX11TrayThatEndsLeavesTheMenuToTheWindowUntilAnotherComes) {
    x11 = X11Tray::Present;
    begin(icon);
    ASSERT_TRUE(waitUntil([this] { return icon.isDocked(); }));
    x11 = X11Tray::Absent;
    EXPECT_TRUE(waitForAvailability(false));
    EXPECT_FALSE(icon.isDocked());
    x11 = X11Tray::Present;
    EXPECT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(icon.isDocked());
}

TEST_F(TrayIconTest, AHostThatComesAfterAnX11TrayGetsTheItemAndTheTrayWhatItLeaves) {
    x11 = X11Tray::Present;
    begin(icon);
    ASSERT_TRUE(waitUntil([this] { return icon.isDocked(); }));
    watcher.appear();
    ASSERT_TRUE(waitUntil([this] { return icon.hasItem(); }));
    EXPECT_FALSE(icon.isDocked());
    EXPECT_TRUE(statusItem.isTrayAvailable());
    EXPECT_EQ(firstLabel(), QStringLiteral("a__b"));
    watcher.vanish();
    ASSERT_TRUE(waitUntil([this] { return icon.isDocked(); }));
    EXPECT_TRUE(statusItem.isTrayAvailable());
    EXPECT_EQ(firstLabel(), QStringLiteral("a_b"));
}

TEST_F(TrayIconTest, ANewSessionBusIsFollowed) {
    watcher.appear();
    begin(patientIcon);
    ASSERT_TRUE(waitUntil([this] { return patientIcon.hasItem(); }));
    patientIcon.useSessionBus(QDBusConnection(QStringLiteral("lost")));
    EXPECT_FALSE(statusItem.isTrayAvailable());
    EXPECT_FALSE(patientIcon.hasItem()) << "it was on the bus that has gone";
    PrivateSessionBus next;
    FakeBusService nextWatcher(next, QStringLiteral("org.kde.StatusNotifierWatcher"),
                               QStringLiteral("/StatusNotifierWatcher"),
                               QStringLiteral("org.kde.StatusNotifierWatcher"));
    nextWatcher.answer = watcher.answer;
    nextWatcher.appear();
    patientIcon.useSessionBus(next.connect());
    EXPECT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.hasItem());
}

TEST_F(TrayIconTest, AFirstItemOnASecondBusIsNotTried) {
    begin(patientIcon);
    ASSERT_TRUE(waitForAvailability(false));
    watcher.appear();
    patientIcon.useSessionBus(bus.connect());
    ASSERT_TRUE(waitUntil([this] { return !watcher.calls.empty(); }));
    PrivateSessionBus::flush(bus.connect());
    EXPECT_FALSE(patientIcon.hasItem()) << "the toolkit would ask the bus that has gone";
    EXPECT_FALSE(statusItem.isTrayAvailable());
}

TEST(X11Tray, IsNoneWithoutAnX11Server) {
    EXPECT_EQ(askForX11Tray(), X11Tray::NoX11);
}

} // namespace
} // namespace korvale
