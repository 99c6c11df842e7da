#include "shell/TrayIcon.h"

#include "fakes/FakeAppearance.h"
#include "fakes/FakeBusService.h"
#include "fakes/FakeTexts.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/RecordingAgentCommands.h"
#include "fakes/WaitUntil.h"
#include "model/HostCache.h"
#include "shell/Resources.h"
#include "shell/StatusItem.h"
#include "shell/StatusItemMenu.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace std::chrono_literals;
using fakes::FakeBusService;
using fakes::PrivateSessionBus;

/// The item itself is Qt's and needs a desktop; here it is decided whether and when there is one.
class TrayIconTest : public testing::Test {
protected:
    TrayIconTest() {
        watcher.answer = [this](const QDBusMessage& call) {
            return knowsHosts
                       ? call.createReply(QVariant::fromValue(QDBusVariant(hasHost)))
                       : call.createErrorReply(QDBusError::UnknownProperty, QStringLiteral("none"));
        };
        resources.initialize();
        menu.setupStatusItemAndMenu({});
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

    fakes::FakeAppearance appearance;
    Resources resources{appearance, IconSet::Standard};
    AppState state;
    StatusItem statusItem{state, resources};
    fakes::MemoryUserDefaults defaults;
    HostCache hostCache{defaults, QStringLiteral("/nonexistent")};
    QStringList done;
    fakes::RecordingAgentCommands commands{done};
    StatusItemMenu menu{state, hostCache, statusItem, commands};
    TrayIcon icon{statusItem, menu, [this] { return askX11(); }, 1ms, 1ms};
    TrayIcon patientIcon{statusItem, menu, [this] { return askX11(); }, 1h, 1h};
};

TEST_F(TrayIconTest, NoIconIsMadeBeforeThereIsATray) {
    patientIcon.start(bus.connect());
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_FALSE(patientIcon.isShown());
    EXPECT_TRUE(watcher.calls.empty());
}

TEST_F(TrayIconTest, AWatcherThatIsThereShowsTheIcon) {
    watcher.appear();
    statusItem.setTrayAvailable(false);
    patientIcon.start(bus.connect());
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.isShown());
    EXPECT_EQ(firstLabel(), QStringLiteral("a__b")) << "the panel draws the menu";
}

TEST_F(TrayIconTest, AWatcherThatAppearsLateShowsTheIcon) {
    patientIcon.start(bus.connect());
    ASSERT_TRUE(waitForAvailability(false));
    watcher.appear();
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.isShown());
}

TEST_F(TrayIconTest, AWatcherThatGoesAndComesIsFollowed) {
    watcher.appear();
    patientIcon.start(bus.connect());
    ASSERT_TRUE(waitUntil([this] { return patientIcon.isShown(); }));
    watcher.vanish();
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_EQ(firstLabel(), QStringLiteral("a_b")) << "only the window has the menu now";
    watcher.appear();
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.isShown());
}

TEST_F(TrayIconTest, AMenuThatWasOpenIsClosedWhenThePanelGoes) {
    watcher.appear();
    patientIcon.start(bus.connect());
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
    patientIcon.start(bus.connect());
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_FALSE(patientIcon.isShown()) << "Qt would take the X11 tray, and for good";
    hasHost = true;
    watcher.emitSignal(QStringLiteral("StatusNotifierHostRegistered"), {});
    ASSERT_TRUE(waitForAvailability(true));
    EXPECT_TRUE(patientIcon.isShown());
    hasHost = false;
    watcher.emitSignal(QStringLiteral("StatusNotifierHostUnregistered"), {});
    ASSERT_TRUE(waitForAvailability(false));
}

TEST_F(TrayIconTest, AWatcherThatDoesNotSayWhetherThereIsAHostHasNone) {
    knowsHosts = false;
    watcher.appear();
    patientIcon.start(bus.connect());
    EXPECT_TRUE(waitForAvailability(false));
    EXPECT_FALSE(patientIcon.isShown());
}

TEST_F(TrayIconTest, AWatcherThatNeverAnswersIsNoTrayAndNoIconIsMade) {
    watcher.answer = [](const QDBusMessage&) { return QDBusMessage(); };
    watcher.appear();
    icon.start(bus.connect());
    ASSERT_TRUE(waitUntil([this] { return watcher.calls.size() == 1; }));
    x11 = X11Tray::Present;
    ASSERT_TRUE(waitForAvailability(false));
    EXPECT_FALSE(icon.isShown());
}

TEST_F(TrayIconTest, AnX11TrayServesWhereTheWatcherHasNoHost) {
    hasHost = false;
    x11 = X11Tray::Present;
    watcher.appear();
    icon.start(bus.connect());
    ASSERT_TRUE(waitUntil([this] { return icon.isShown(); }));
    EXPECT_TRUE(waitForAvailability(true));
    EXPECT_EQ(firstLabel(), QStringLiteral("a_b"));
}

TEST_F(TrayIconTest, SignalsOfOthersThanTheWatcherAskNothing) {
    watcher.appear();
    patientIcon.start(bus.connect());
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
    icon.start(bus.connect());
    ASSERT_TRUE(waitUntil([this] { return icon.isShown(); }));
    EXPECT_TRUE(statusItem.isTrayAvailable());
    EXPECT_EQ(firstLabel(), QStringLiteral("a_b"));
}

TEST_F(TrayIconTest, AnX11TrayThatAppearsLateServesToo) {
    icon.start(bus.connect());
    ASSERT_TRUE(waitUntil([this] { return x11Questions >= 3; }));
    EXPECT_FALSE(icon.isShown());
    x11 = X11Tray::Present;
    ASSERT_TRUE(waitUntil([this] { return icon.isShown(); }));
    const int questions = x11Questions;
    watcher.appear();
    PrivateSessionBus::flush(bus.connect());
    EXPECT_EQ(x11Questions, questions);
}

TEST_F(TrayIconTest, WithoutAnX11ServerItIsAskedOnce) {
    x11 = X11Tray::NoX11;
    icon.start(bus.connect());
    ASSERT_TRUE(waitUntil([this] { return x11Questions == 1; }));
    watcher.appear(); // a StatusNotifier host may still come
    ASSERT_TRUE(waitUntil([this] { return icon.isShown(); }));
    EXPECT_EQ(x11Questions, 1);
}

TEST_F(TrayIconTest, WithoutASessionBusTheX11TrayServes) {
    x11 = X11Tray::Present;
    icon.start(QDBusConnection(QStringLiteral("not connected")));
    EXPECT_FALSE(statusItem.isTrayAvailable());
    ASSERT_TRUE(waitUntil([this] { return icon.isShown(); }));
    EXPECT_TRUE(statusItem.isTrayAvailable());
}

TEST(X11Tray, IsNoneWithoutAnX11Server) {
    EXPECT_EQ(askForX11Tray(), X11Tray::NoX11);
}

} // namespace
} // namespace korvale
