#include "shell/StatusItemMenu.h"

#include "fakes/FakeTexts.h"
#include "fakes/WaitUntil.h"
#include "shell/MenuParts.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace std::chrono_literals;

class StatusItemMenuTest : public testing::Test, protected MenuParts {
protected:
    void SetUp() override { record(menu); }

    /// Writes down what the menu asks of others than the agent.
    void record(const StatusItemMenu& asking) {
        const auto say = [this](const char* name) {
            return [this, name] { done << QString::fromLatin1(name); };
        };
        QObject::connect(&asking, &StatusItemMenu::showDetails, say("showDetails"));
        QObject::connect(&asking, &StatusItemMenu::aboutApp, say("aboutApp"));
        QObject::connect(&asking, &StatusItemMenu::scanSpecificFolder, say("scanSpecificFolder"));
        QObject::connect(&asking, &StatusItemMenu::exitApp, say("exitApp"));
    }

    /// One line per item; "-" for a separator, "[x] " in front of a checked item, the items of a
    /// submenu after a ">".
    static QStringList itemsOf(const QMenu& menu, const QString& indent = {}) {
        QStringList lines;
        for (const QAction* action : menu.actions()) {
            EXPECT_TRUE(action->isEnabled());
            EXPECT_TRUE(action->shortcut().isEmpty());
            lines << (action->isSeparator()
                          ? QStringLiteral("-")
                          : indent + (action->isChecked() ? QStringLiteral("[x] ") : QString()) +
                                action->text());
            if (const QMenu* submenu = action->menu()) {
                lines << itemsOf(*submenu, QStringLiteral(">"));
            }
        }
        return lines;
    }
    QStringList items() { return itemsOf(*menu.menu()); }

    static QAction* find(const QMenu& menu, const QString& text) {
        for (QAction* action : menu.actions()) {
            if (action->text() == text) {
                return action;
            }
            if (action->menu() != nullptr) {
                if (QAction* inside = find(*action->menu(), text)) {
                    return inside;
                }
            }
        }
        return nullptr;
    }
    QAction& item(const char* text) {
        QAction* found = find(*menu.menu(), QString::fromLatin1(text));
        EXPECT_NE(found, nullptr) << text;
        return *found;
    }
    /// As both a mouse click and a panel's "clicked" do.
    void click(const char* text) { item(text).trigger(); }
    QMenu& logLevels() { return *item("TM_Logging").menu(); }
    void openLogLevels() { Q_EMIT logLevels().aboutToShow(); }
};

TEST_F(StatusItemMenuTest, TheNormalFormHasTheUsersItems) {
    menu.setupStatusItemAndMenu({});
    EXPECT_EQ(items(),
              QStringList({QStringLiteral("ShowDetailsMenu"), QStringLiteral("-"),
                           QStringLiteral("CheckForUpdates"),
                           QStringLiteral("CM_CheckForPolicyUpdate"), QStringLiteral("About"),
                           QStringLiteral("-"), QStringLiteral("CM_ShowNotifications"),
                           QStringLiteral("-"), QStringLiteral("Exit")}));
    EXPECT_EQ(menu.menu()->title(), QStringLiteral("Company"));
    EXPECT_EQ(state.curIconDispColor, IconColor::Yellow);
    EXPECT_EQ(statusItem.toolTip(), QStringLiteral("ProductEP\nOfflineMode"));
}

TEST_F(StatusItemMenuTest, WithoutPolicyUpdatesAboutFollowsTheUpdates) {
    state.allowCheckForPolicyUpdate = false;
    menu.setupStatusItemAndMenu({});
    EXPECT_EQ(items().mid(1, 4),
              QStringList({QStringLiteral("-"), QStringLiteral("CheckForUpdates"),
                           QStringLiteral("About"), QStringLiteral("-")}));
}

TEST_F(StatusItemMenuTest, TheNoUIFormHasAboutAndExitAndIsGreenAtOnce) {
    menu.setupStatusItemAndMenu({.noUI = true, .advanced = true});
    EXPECT_EQ(items(),
              QStringList({QStringLiteral("About"), QStringLiteral("-"), QStringLiteral("Exit")}));
    EXPECT_EQ(state.curIconDispColor, IconColor::Green);
    menu.setShowNotificationsMark(true); // the policy is told here too
    EXPECT_EQ(items().size(), 3);
}

TEST_F(StatusItemMenuTest, TheAdvancedFormHasLoggingAndDetection) {
    menu.setupStatusItemAndMenu({.advanced = true});
    EXPECT_EQ(
        items().mid(6),
        QStringList({QStringLiteral("CM_ShowNotifications"), QStringLiteral("-"),
                     QStringLiteral("TM_Logging"), QStringLiteral(">TM_Error"),
                     QStringLiteral(">TM_Warning"), QStringLiteral(">TM_Information"),
                     QStringLiteral(">TM_All"), QStringLiteral("TM_Detection"),
                     QStringLiteral(">TM_Background"), QStringLiteral(">TM_Folder"),
                     QStringLiteral(">TM_Stop"), QStringLiteral("-"), QStringLiteral("Exit")}));
}

TEST_F(StatusItemMenuTest, EveryItemDoesWhatItSays) {
    menu.setupStatusItemAndMenu({.advanced = true});
    for (const char* text : {"ShowDetailsMenu", "CheckForUpdates", "CM_CheckForPolicyUpdate",
                             "About", "TM_Background", "TM_Folder", "TM_Stop", "Exit"}) {
        click(text);
    }
    EXPECT_EQ(done.join(u' '),
              QStringLiteral("showDetails checkUpdates checkPolicyUpdates aboutApp "
                             "scanBackground scanSpecificFolder stopScan exitApp"));
}

TEST_F(StatusItemMenuTest, TheUsersChoiceIsTakenOver) {
    hostCache.setCurrentUserNotification(true, true);
    menu.setupStatusItemAndMenu({});
    EXPECT_TRUE(item("CM_ShowNotifications").isChecked());
    EXPECT_TRUE(state.showNotifications);
}

TEST_F(StatusItemMenuTest, TheUsersChoiceCountsInNoUIModeToo) {
    hostCache.setCurrentUserNotification(true, true);
    menu.setupStatusItemAndMenu({.noUI = true});
    EXPECT_TRUE(state.showNotifications);
}

TEST_F(StatusItemMenuTest, TheUsersChoiceOfNoNotificationsIsTakenOver) {
    hostCache.setCurrentUserNotification(false, true);
    state.showNotifications = true;
    menu.setupStatusItemAndMenu({});
    EXPECT_FALSE(item("CM_ShowNotifications").isChecked());
    EXPECT_FALSE(state.showNotifications);
}

TEST_F(StatusItemMenuTest, WithoutAChoiceTheItemIsUncheckedAndTheStateLeftAlone) {
    state.showNotifications = true;
    menu.setupStatusItemAndMenu({});
    EXPECT_FALSE(item("CM_ShowNotifications").isChecked());
    EXPECT_TRUE(state.showNotifications);
}

TEST_F(StatusItemMenuTest, TwoClicksOnNotificationsReturnToTheFirstState) {
    menu.setupStatusItemAndMenu({});
    click("CM_ShowNotifications");
    EXPECT_TRUE(item("CM_ShowNotifications").isChecked());
    EXPECT_TRUE(state.showNotifications);
    EXPECT_TRUE(state.showNotificationsChanged);
    EXPECT_TRUE(hostCache.isCurrentUserNotificationOn());
    click("CM_ShowNotifications");
    EXPECT_FALSE(item("CM_ShowNotifications").isChecked());
    EXPECT_FALSE(state.showNotifications);
    EXPECT_FALSE(hostCache.isCurrentUserNotificationOn());
    EXPECT_TRUE(hostCache.hasCurrentUserChangedNotification());
}

TEST_F(StatusItemMenuTest, AClickTurnsTheStateAndNotTheMark) {
    menu.setupStatusItemAndMenu({});
    state.showNotifications = true; // the mark says off
    click("CM_ShowNotifications");
    EXPECT_FALSE(state.showNotifications);
    EXPECT_FALSE(item("CM_ShowNotifications").isChecked());
}

TEST_F(StatusItemMenuTest, ThePolicyMovesTheMark) {
    menu.setupStatusItemAndMenu({});
    menu.setShowNotificationsMark(true);
    EXPECT_TRUE(item("CM_ShowNotifications").isChecked());
    menu.setShowNotificationsMark(false);
    EXPECT_FALSE(item("CM_ShowNotifications").isChecked());
}

TEST_F(StatusItemMenuTest, EachOpeningOfTheLogLevelsAsksTheAgent) {
    menu.setupStatusItemAndMenu({.advanced = true});
    openLogLevels();
    commands.answer(-1, 2);
    openLogLevels();
    openLogLevels();
    EXPECT_EQ(done,
              QStringList({QStringLiteral("readLogLevel -1"), QStringLiteral("readLogLevel 2"),
                           QStringLiteral("readLogLevel 2")}));
}

TEST_F(StatusItemMenuTest, OtherMenusAskNothing) {
    menu.setupStatusItemAndMenu({.advanced = true});
    menu.menuWillOpen(menu.menu());
    Q_EMIT menu.menu()->aboutToShow();
    Q_EMIT item("TM_Detection").menu()->aboutToShow();
    EXPECT_TRUE(done.isEmpty());
}

TEST_F(StatusItemMenuTest, TheAgentsLevelMovesTheOnlyMark) {
    menu.setupStatusItemAndMenu({.advanced = true});
    openLogLevels();
    commands.answer(-1, 0);
    EXPECT_EQ(itemsOf(logLevels()).join(u' '),
              QStringLiteral("[x] TM_Error TM_Warning TM_Information TM_All"));
    openLogLevels();
    commands.answer(0, 2);
    EXPECT_EQ(itemsOf(logLevels()).join(u' '),
              QStringLiteral("TM_Error TM_Warning [x] TM_Information TM_All"));
}

TEST_F(StatusItemMenuTest, ALevelWithoutAnItemChecksNone) {
    menu.setupStatusItemAndMenu({.advanced = true});
    openLogLevels();
    commands.answer(-1, 1);
    for (const int level : {4, -5, 2147483647}) {
        commands.answer(1, level);
        EXPECT_EQ(itemsOf(logLevels()).join(u' '),
                  QStringLiteral("TM_Error TM_Warning TM_Information TM_All"));
    }
    commands.answer(2147483647, 3);
    EXPECT_TRUE(item("TM_All").isChecked());
}

TEST_F(StatusItemMenuTest, AChosenLevelIsCheckedOnlyOnceTheAgentAgreed) {
    menu.setupStatusItemAndMenu({.advanced = true});
    click("TM_Information");
    EXPECT_EQ(done, QStringList(QStringLiteral("logging 2")));
    EXPECT_FALSE(item("TM_Information").isChecked());
    commands.answer(-1, 2);
    EXPECT_TRUE(item("TM_Information").isChecked());
    click("TM_Information");
    EXPECT_TRUE(item("TM_Information").isChecked()) << "a click never takes the mark away";
}

TEST_F(StatusItemMenuTest, TheOpenMenuShowsTheAlternatePicture) {
    menu.setupStatusItemAndMenu({});
    Q_EMIT menu.menu()->aboutToShow();
    EXPECT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(3).cacheKey());
    Q_EMIT menu.menu()->aboutToHide();
    EXPECT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(2).cacheKey());
}

TEST_F(StatusItemMenuTest, AChosenItemClosesTheMenuOfAPanelThatDoesNotSaySo) {
    menu.setupStatusItemAndMenu({.advanced = true});
    menu.setRenderer(MenuRenderer::Panel);
    for (const char* text : {"About", "TM__Stop"}) {
        Q_EMIT menu.menu()->aboutToShow();
        ASSERT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(3).cacheKey());
        click(text);
        EXPECT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(2).cacheKey()) << text;
    }
}

TEST_F(StatusItemMenuTest, AMenuThatAPanelLeavesWithoutAWordIsClosedAfterAWhile) {
    StatusItemMenu brief{state, hostCache, statusItem, commands, 1ms};
    brief.setupStatusItemAndMenu({});
    brief.setRenderer(MenuRenderer::Panel);
    Q_EMIT brief.menu()->aboutToShow();
    ASSERT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(3).cacheKey());
    EXPECT_TRUE(waitUntil([this] {
        return statusItem.shownPicture().cacheKey() == resources.getImage(2).cacheKey();
    }));
}

TEST_F(StatusItemMenuTest, APanelThatHasOnceSaidClosedIsBelievedFromThenOn) {
    StatusItemMenu brief{state, hostCache, statusItem, commands, 1ms};
    brief.setupStatusItemAndMenu({});
    brief.setRenderer(MenuRenderer::Panel);
    Q_EMIT brief.menu()->aboutToShow();
    Q_EMIT brief.menu()->aboutToHide();
    Q_EMIT brief.menu()->aboutToShow();
    QTimer later; // than the time limit
    later.setSingleShot(true);
    later.start(50ms);
    ASSERT_TRUE(waitUntil([&later] { return !later.isActive(); }));
    EXPECT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(3).cacheKey());
    Q_EMIT brief.menu()->aboutToHide();
    EXPECT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(2).cacheKey());

    brief.setRenderer(MenuRenderer::Toolkit); // the panel goes, and a silent one comes
    brief.setRenderer(MenuRenderer::Panel);
    Q_EMIT brief.menu()->aboutToShow();
    EXPECT_TRUE(waitUntil([this] {
        return statusItem.shownPicture().cacheKey() == resources.getImage(2).cacheKey();
    }));
}

TEST_F(StatusItemMenuTest, AMenuPoppedUpForThePanelIsTheToolkitsUntilItCloses) {
    const FakeTexts texts{{"About", QStringLiteral("A & B")}};
    StatusItemMenu brief{state, hostCache, statusItem, commands, 1ms};
    brief.setupStatusItemAndMenu({});
    brief.setRenderer(MenuRenderer::Panel);
    int drawn = 0;
    QObject::connect(&brief, &StatusItemMenu::aboutToBeDrawn, &brief, [&drawn] { ++drawn; });
    brief.popUp({});
    EXPECT_EQ(drawn, 1);
    EXPECT_NE(find(*brief.menu(), QStringLiteral("A && B")), nullptr);
    QTimer later; // than the time limit for panels
    later.setSingleShot(true);
    later.start(50ms);
    ASSERT_TRUE(waitUntil([&later] { return !later.isActive(); }));
    EXPECT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(3).cacheKey());
    brief.menu()->hide();
    EXPECT_EQ(statusItem.shownPicture().cacheKey(), resources.getImage(2).cacheKey());
    EXPECT_NE(find(*brief.menu(), QStringLiteral("&A & B")), nullptr);
    Q_EMIT brief.menu()->aboutToShow(); // in the panel, which has never said that it closed
    EXPECT_EQ(drawn, 1);
    EXPECT_TRUE(waitUntil([this] {
        return statusItem.shownPicture().cacheKey() == resources.getImage(2).cacheKey();
    }));
}

TEST_F(StatusItemMenuTest, LabelsAreWrittenForWhoeverDrawsThem) {
    const FakeTexts texts{{"About", QStringLiteral("A & B")}};
    menu.setupStatusItemAndMenu({.advanced = true});
    EXPECT_NE(find(*menu.menu(), QStringLiteral("A && B")), nullptr);
    menu.setRenderer(MenuRenderer::Panel);
    EXPECT_NE(find(*menu.menu(), QStringLiteral("&A & B")), nullptr);
    EXPECT_NE(find(*menu.menu(), QStringLiteral("TM__Logging")), nullptr);
    menu.setRenderer(MenuRenderer::Toolkit);
    EXPECT_NE(find(*menu.menu(), QStringLiteral("A && B")), nullptr);
    EXPECT_NE(find(*menu.menu(), QStringLiteral("TM_Logging")), nullptr);
}

} // namespace
} // namespace korvale
