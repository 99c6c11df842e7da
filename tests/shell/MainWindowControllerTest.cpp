#include "fakes/FakeTexts.h"
#include "shell/WindowFixture.h"
#include "tables/WindowLook.h"

#include <QLabel>
#include <QSignalSpy>

namespace korvale {
namespace {

class MainWindowControllerTest : public WindowFixture {};

struct CountOfTab {
    TabIdentifier tab;
    std::int64_t AppState::*count;
};

constexpr CountOfTab countsOfTabs[] = {
    {TabIdentifier::Threats, &AppState::newThreatCount},
    {TabIdentifier::Exploits, &AppState::newExploitCount},
    {TabIdentifier::ExternalDevices, &AppState::externalDevicesCount},
    {TabIdentifier::Events, &AppState::eventCount},
    {TabIdentifier{0}, &AppState::eventCount},
};

void setAllCounts(AppState& state, std::int64_t count) {
    for (const CountOfTab& of : countsOfTabs) {
        state.*of.count = count;
    }
}

TEST_F(MainWindowControllerTest, TheWindowIsBuiltWhenItIsFirstShown) {
    controller().updateDisplay();
    controller().showDeviceName();
    EXPECT_EQ(controller().window(), nullptr);
    shownWindow();
    ASSERT_NE(controller().window(), nullptr);
    EXPECT_TRUE(controller().window()->isOnScreen());
}

TEST_F(MainWindowControllerTest, BeforeTheWindowIsBuiltCountsAreKept) {
    setAllCounts(state, 4);
    for (const CountOfTab& of : countsOfTabs) {
        controller().updateCounters(of.tab);
        EXPECT_EQ(state.*of.count, 4);
    }
}

TEST_F(MainWindowControllerTest, AShownTabsItemsCountAsSeenAndNoOthers) {
    shownWindow();
    for (const CountOfTab& of : countsOfTabs) {
        setAllCounts(state, 4);
        controller().updateCounters(of.tab);
        EXPECT_EQ(state.*of.count, 0);
        EXPECT_EQ(state.newThreatCount + state.newExploitCount + state.externalDevicesCount +
                      state.eventCount,
                  3 * 4);
    }
}

TEST_F(MainWindowControllerTest, WhileTheWindowIsHiddenCountsAreKept) {
    shownWindow().hide();
    state.newThreatCount = 4;
    controller().updateDisplay();
    EXPECT_EQ(state.newThreatCount, 4);
    EXPECT_EQ(state.curIconDispColor, IconColor::Red);
}

TEST_F(MainWindowControllerTest, WhileTheWindowIsMinimisedCountsAreKept) {
    shownWindow().showMinimized();
    state.newThreatCount = 4;
    controller().updateDisplay();
    EXPECT_EQ(state.newThreatCount, 4);

    controller().showDetails();
    EXPECT_TRUE(controller().window()->isOnScreen());
    controller().updateDisplay();
    EXPECT_EQ(state.newThreatCount, 0);
}

TEST_F(MainWindowControllerTest, WhileTheWindowIsHiddenItsCountersFollow) {
    shownWindow().hide();
    state.analyzedCount = 77;
    controller().updateCounters(TabIdentifier::Threats);
    EXPECT_EQ(part<QLabel>("analyzedCountLbl").text(), u"77");
    controller().updateCounters(TabIdentifier::Events);
    EXPECT_TRUE(part<QLabel>("analyzedCountLbl").isHidden());
}

TEST_F(MainWindowControllerTest, NewThreatsTurnTheIconRedUntilTheTabIsLookedAt) {
    state.curIconDispColor = IconColor::Green;
    state.newThreatCount = 2;
    controller().updateDisplay();
    EXPECT_EQ(state.curIconDispColor, IconColor::Red);

    shownWindow();
    controller().updateDisplay();
    EXPECT_EQ(state.newThreatCount, 0);
    EXPECT_EQ(state.curIconDispColor, IconColor::Green);
}

TEST_F(MainWindowControllerTest, AYellowIconIsLeftAlone) {
    state.curIconDispColor = IconColor::Yellow;
    state.newThreatCount = 2;
    controller().updateDisplay();
    EXPECT_EQ(state.curIconDispColor, IconColor::Yellow);
}

TEST_F(MainWindowControllerTest, ANegativeThreatCountIsGreen) {
    state.newThreatCount = -3;
    controller().updateDisplay();
    EXPECT_EQ(state.curIconDispColor, IconColor::Green);
}

TEST_F(MainWindowControllerTest, ExploitsEventsAndDevicesNeverTurnTheIconRed) {
    state.curIconDispColor = IconColor::Green;
    setAllCounts(state, 9);
    state.newThreatCount = 0;
    controller().updateDisplay();
    EXPECT_EQ(state.curIconDispColor, IconColor::Green);
}

TEST_F(MainWindowControllerTest, TheColourIsThatOfTheCountsAfterTheyWereSeen) {
    shownWindow();
    state.curIconDispColor = IconColor::Red;
    state.newThreatCount = 2;
    controller().updateDisplay();
    EXPECT_EQ(state.curIconDispColor, IconColor::Green);
    EXPECT_EQ(tabView().tabText(0), u"HPS_Threats (2)"); // as it was before it was seen
}

TEST_F(MainWindowControllerTest, TabLabelsKeepTheirTrailingBlank) {
    shownWindow();
    controller().updateDisplay();
    EXPECT_EQ(tabView().tabText(0), u"HPS_Threats ");
    EXPECT_EQ(tabView().tabText(1), u"HPS_Exploits ");
    EXPECT_EQ(tabView().tabText(2), u"HPS_Events ");
    EXPECT_EQ(tabView().tabText(3), u"HPS_ExternalDevices ");
}

TEST_F(MainWindowControllerTest, AnAmpersandInATabLabelIsShownAndMakesNoKey) {
    const FakeTexts texts{{"HPS_Threats", QStringLiteral("A & B")}};
    shownWindow();
    controller().updateDisplay();
    EXPECT_EQ(tabView().tabText(0), u"A && B ") << "as the toolkit writes one";
}

TEST_F(MainWindowControllerTest, TheWindowOpensWithWhatCameBeforeIt) {
    state.newExploitCount = 3;
    state.externalDevicesCount = 7;
    state.quarantineCount = 2;
    state.analyzedCount = 12;
    state.customName = QStringLiteral("ada");
    statusItem.setIconDispColor(IconColor::Yellow);
    statusLine.updateStatusMessage(StatusState::NotRunning);
    shownWindow();
    EXPECT_EQ(tabView().tabText(1), u"HPS_Exploits (3)");
    EXPECT_EQ(tabView().tabText(3), u"HPS_ExternalDevices ");
    EXPECT_EQ(part<QLabel>("analyzedCountLbl").text(), u"12");
    EXPECT_EQ(part<QLabel>("analyzedLbl").text(), u"Analyzed");
    EXPECT_EQ(part<QLabel>("quarantineCountLbl").text(), u"2");
    EXPECT_EQ(part<QLabel>("quarantineLbl").text(), u"HPS_Quarantined");
    EXPECT_EQ(part<QLabel>("deviceName").text(), u"ada");
    EXPECT_EQ(part<QLabel>("bottomStatusLbl").text(), u"NotRunning");
    EXPECT_EQ(part<QWidget>("appIcon").accessibleDescription(), u"ProductEP\nOfflineMode");
}

TEST_F(MainWindowControllerTest, OnlyTheThreatsTabHasACounterLine) {
    shownWindow();
    state.analyzedCount = 5;
    state.quarantineCount = 0;
    const auto shown = [this] {
        std::string names;
        for (const char* name :
             {"analyzedCountLbl", "analyzedLbl", "quarantineCountLbl", "quarantineLbl"}) {
            names += part<QLabel>(name).isVisible() ? '1' : '0';
        }
        return names;
    };
    controller().updateCounters(TabIdentifier::Threats);
    EXPECT_EQ(shown(), "1100");
    state.quarantineCount = 1;
    controller().updateCounters(TabIdentifier::Threats);
    EXPECT_EQ(shown(), "1111");
    for (const TabIdentifier tab :
         {TabIdentifier::Exploits, TabIdentifier::ExternalDevices, TabIdentifier::Events}) {
        controller().updateCounters(tab);
        EXPECT_EQ(shown(), "0000");
    }
}

TEST_F(MainWindowControllerTest, TheWindowFollowsStatusNameAndColour) {
    shownWindow();
    state.updateStatus = QStringLiteral("<b>Update</b> & more");
    statusLine.updateStatusMessage(StatusState::UpdaterMessage);
    EXPECT_EQ(part<QLabel>("bottomStatusLbl").text(), state.updateStatus);
    EXPECT_EQ(part<QLabel>("bottomStatusLbl").textFormat(), Qt::PlainText);
    EXPECT_EQ(part<QLabel>("bottomStatusLbl").accessibleDescription(), state.updateStatus);
    EXPECT_FALSE(part<QLabel>("bottomStatusLbl").toolTip().contains(u"<b>"));

    state.customName = QStringLiteral("<i>grace</i>");
    EXPECT_NE(part<QLabel>("deviceName").text(), state.customName);
    controller().showDeviceName();
    EXPECT_EQ(part<QLabel>("deviceName").text(), state.customName);
    EXPECT_EQ(part<QLabel>("deviceName").textFormat(), Qt::PlainText);

    statusItem.setIconDispColor(IconColor::Green);
    EXPECT_EQ(part<QWidget>("appIcon").accessibleDescription(), statusItem.toolTip());
}

TEST_F(MainWindowControllerTest, TheChromeFollowsTheAppearance) {
    resources.initialize();
    MainWindow& window = shownWindow();
    const QColor light = window.palette().color(QPalette::Window);
    appearance.set(QStringLiteral("Dark"));
    EXPECT_LT(window.palette().color(QPalette::Window).lightness(), light.lightness());
    EXPECT_LT(tabView().palette().color(QPalette::Window).lightness(), light.lightness());
    appearance.set({});
    EXPECT_EQ(window.palette().color(QPalette::Window), light);
}

TEST_F(MainWindowControllerTest, TheMenuFollowsTheAppearanceBeforeAnyWindowWasShown) {
    const auto background = [this] { return statusMenu.palette().color(QPalette::Window); };
    QMenu& submenu = *statusMenu.addMenu(QStringLiteral("levels"));
    resources.initialize();
    appearance.set(QStringLiteral("Dark"));
    controller().dressStatusMenu();
    EXPECT_EQ(controller().window(), nullptr);
    EXPECT_EQ(background(), windowPalette(true).color(QPalette::Window));
    EXPECT_EQ(submenu.palette().color(QPalette::Window), background());
    appearance.set({}); // while it is open
    EXPECT_EQ(background(), windowPalette(false).color(QPalette::Window));
}

TEST_F(MainWindowControllerTest, EveryWindowWearsTheProgramsOwnPictureInEveryState) {
    resources.initialize();
    statusItem.create();
    shownWindow();
    controller().aboutApp();
    controller().showNotifications();
    for (const IconColor color : {IconColor::Green, IconColor::Red}) {
        statusItem.setIconDispColor(color);
        int windows = 0;
        for (const QWidget* window : QApplication::topLevelWidgets()) {
            if (window->isVisible()) {
                ++windows;
                EXPECT_EQ(window->windowIcon().cacheKey(), resources.programIcon().cacheKey())
                    << window->windowTitle().toStdString();
            }
        }
        EXPECT_EQ(windows, 3);
    }
}

TEST_F(MainWindowControllerTest, TablesAreLightInBothAppearances) {
    resources.initialize();
    shownWindow();
    const auto paper = [this] {
        return part<QWidget>("eventsTable").palette().color(QPalette::Base).lightness();
    };
    const int light = paper();
    appearance.set(QStringLiteral("Dark"));
    EXPECT_EQ(paper(), light);
    EXPECT_GT(light, 200);
}

TEST_F(MainWindowControllerTest, ABatchIsReadAfterTheEventThatMadeAWindowMain) {
    controller().showDetails();
    int readInsideTheEvent = 0;
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, &controller(),
                     [&] { readInsideTheEvent += batchesRead; });
    EXPECT_TRUE(QTest::qWaitFor([this] { return batchesRead > 0; }));
    EXPECT_EQ(readInsideTheEvent, 0);
    EXPECT_EQ(batchesRead, 1);
}

TEST_F(MainWindowControllerTest, ABatchIsReadForNoOtherWindow) {
    controller().aboutApp();
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activeWindow() != nullptr; }));
    QApplication::processEvents();
    EXPECT_EQ(batchesRead, 0);
    shownWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return batchesRead == 1; }));
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    QApplication::processEvents();
    EXPECT_EQ(batchesRead, 1);
}

struct EmptyCase {
    ListNews header;
    ListNews list;
    bool agentIsAway;
    const char* said;
};

TEST_F(MainWindowControllerTest, NothingFoundIsSaidOnlyWhenItIsKnown) {
    shownWindow();
    constexpr ListNews read = ListNews::Read;
    const EmptyCase cases[] = {
        {ListNews::NotRead, ListNews::NotRead, true, "HPS_EmptyAgentAway"},
        {ListNews::NotRead, ListNews::NotRead, false, "HPS_EmptyNotRead"},
        {read, read, false, "HPS_EmptyThreats"},
        {read, read, true, "HPS_EmptyAgentAway"},
        {read, ListNews::NotRead, false, "HPS_EmptyNotRead"},
        {read, ListNews::Unreadable, false, "HPS_EmptyUnreadable"},
        {read, ListNews::Unreadable, true, "HPS_EmptyUnreadable"},
        {ListNews::Unreadable, read, false, "HPS_EmptyUnreadable"},
    };
    for (const EmptyCase& of : cases) {
        state.header = of.header;
        state.fileThreats = of.list;
        state.agentIsAway = of.agentIsAway;
        controller().updateDisplay();
        EXPECT_EQ(part<QWidget>("fileThreatsTable").accessibleDescription().toStdString(), of.said);
    }
}

TEST_F(MainWindowControllerTest, EachTableSpeaksOfItsOwnList) {
    shownWindow();
    state.agentIsAway = false;
    state.header = ListNews::Read;
    struct Table {
        const char* name;
        ListNews AppState::*news;
        const char* empty;
    };
    for (const Table& of :
         {Table{"fileThreatsTable", &AppState::fileThreats, "HPS_EmptyThreats"},
          Table{"processThreatsTable", &AppState::processThreats, "HPS_EmptyExploits"},
          Table{"eventsTable", &AppState::events, "HPS_EmptyEvents"},
          Table{"externalDevicesTable", &AppState::externalDevices, "HPS_EmptyDevices"}}) {
        state.*of.news = ListNews::Unreadable;
        controller().updateDisplay();
        EXPECT_EQ(part<QWidget>(of.name).accessibleDescription(), u"HPS_EmptyUnreadable");
        state.*of.news = ListNews::Read;
        controller().updateDisplay();
        EXPECT_EQ(part<QWidget>(of.name).accessibleDescription().toStdString(), of.empty);
    }
}

TEST_F(MainWindowControllerTest, AnEmptyTableFollowsTheStatusLine) {
    state.agentIsAway = false;
    state.header = state.fileThreats = ListNews::Read;
    shownWindow();
    EXPECT_EQ(part<QWidget>("fileThreatsTable").accessibleDescription(), u"HPS_EmptyThreats");
    state.agentIsAway = true;
    statusLine.updateStatusMessage(StatusState::NoNetwork);
    EXPECT_EQ(part<QWidget>("fileThreatsTable").accessibleDescription(), u"HPS_EmptyAgentAway");
}

TEST_F(MainWindowControllerTest, ResigningTheFocusDoesNothing) {
    MainWindow& window = shownWindow();
    state.newThreatCount = 3;
    const int before = batchesRead;
    window.hide();
    Q_EMIT qGuiApp->focusWindowChanged(nullptr);
    QApplication::processEvents();
    EXPECT_EQ(batchesRead, before);
    EXPECT_EQ(state.newThreatCount, 3);
}

TEST_F(MainWindowControllerTest, MenusAreNoMainWindow) {
    shownWindow();
    const int before = batchesRead;
    statusMenu.addAction(QStringLiteral("x"));
    statusMenu.popup(QPoint());
    QApplication::processEvents();
    statusMenu.hide();
    EXPECT_EQ(batchesRead, before);
}

TEST_F(MainWindowControllerTest, TheActivationTokenStaysOutOfTheEnvironmentWhereNothingReadsIt) {
    qunsetenv("XDG_ACTIVATION_TOKEN");
    controller().showDetails(QStringLiteral("token-1"));
    EXPECT_FALSE(qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN"));
}

TEST_F(MainWindowControllerTest, TheStatusMenuIsInTheToolbarOnlyWithoutATray) {
    shownWindow();
    auto& toolbar = part<MainWindowToolbar>("KvToolbar");
    EXPECT_EQ(toolbar.menuButton(), nullptr);
    statusItem.setTrayAvailable(false);
    ASSERT_NE(toolbar.menuButton(), nullptr);
    EXPECT_EQ(toolbar.menuButton()->menu(), &statusMenu);
    EXPECT_FALSE(toolbar.menuButton()->accessibleName().isEmpty());
    statusItem.setTrayAvailable(true);
    EXPECT_EQ(toolbar.menuButton(), nullptr);
}

} // namespace
} // namespace korvale
