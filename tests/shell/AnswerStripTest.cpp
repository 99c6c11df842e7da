#include "shell/AnswerStrip.h"

#include "shell/LinkButton.h"
#include "shell/WindowFixture.h"
#include "tables/ThreatsTableView.h"
#include "tables/WindowLook.h"

#include <QLabel>

namespace korvale {
namespace {

class AnswerStripTest : public WindowFixture {
protected:
    AnswerStripTest() {
        state.agentIsAway = false;
        state.halyxConnected = true;
        state.header = state.fileThreats = state.processThreats = ListNews::Read;
        statusItem.setIconDispColor(IconColor::Green);
        statusWatch.look();
    }
    QLabel& why() { return part<QLabel>("whyLbl"); }
    QLabel& advice() { return part<QLabel>("adviceLbl"); }
    LinkButton& whatNow() { return part<LinkButton>("whatNowButton"); }
    QColor background() {
        return controller().window()->answerStrip().palette().color(QPalette::Window);
    }
};

TEST_F(AnswerStripTest, WhileAllIsWellSaysSoQuietly) {
    shownWindow();
    EXPECT_EQ(why().text(), u"HPS_WhyGood");
    EXPECT_FALSE(whatNow().isVisible());
    EXPECT_FALSE(advice().isVisible());
    EXPECT_FALSE(controller().window()->answerStrip().autoFillBackground());
}

TEST_F(AnswerStripTest, IsLoudWhileTheAgentIsAway) {
    shownWindow();
    state.agentIsAway = true;
    statusWatch.look();
    EXPECT_EQ(why().text(), u"HPS_WhyAgentAway");
    EXPECT_TRUE(whatNow().isVisible());
    EXPECT_TRUE(controller().window()->answerStrip().autoFillBackground());
    EXPECT_EQ(background(), stripColors(Verdict::Away, false)->background);
    controller().window()->setDark(true);
    EXPECT_EQ(background(), stripColors(Verdict::Away, true)->background);
}

TEST_F(AnswerStripTest, TheQuestionOpensAndClosesTheAdviceByKeyboard) {
    shownWindow();
    state.agentIsAway = true;
    statusWatch.look();
    EXPECT_EQ(whatNow().accessibleDescription(), u"HPS_NowAgentAway");
    whatNow().setFocus();
    QTest::keyClick(&whatNow(), Qt::Key_Return);
    EXPECT_TRUE(advice().isVisible());
    EXPECT_EQ(advice().text(), u"HPS_NowAgentAway");
    QTest::keyClick(&whatNow(), Qt::Key_Space);
    EXPECT_FALSE(advice().isVisible());
}

TEST_F(AnswerStripTest, OpenAdviceFollowsTheStateAndGoesWithTheLastReason) {
    shownWindow();
    state.agentIsAway = true;
    statusWatch.look();
    whatNow().click();
    state.agentIsAway = false;
    state.driverConnected = false;
    statusWatch.look();
    EXPECT_EQ(advice().text(), u"HPS_NowDriverMissing");
    EXPECT_TRUE(advice().isVisible());
    state.driverConnected = true;
    statusWatch.look();
    EXPECT_FALSE(advice().isVisible());
    EXPECT_FALSE(whatNow().isVisible());
}

TEST_F(AnswerStripTest, StandsBetweenTheTabsAndEveryTable) {
    shownWindow();
    state.agentIsAway = true;
    statusWatch.look();
    const AnswerStrip& strip = controller().window()->answerStrip();
    for (const bool isOpen : {false, true}) {
        whatNow().setChecked(isOpen);
        for (int tab = 0; tab < tabView().count(); ++tab) {
            tabView().setCurrentIndex(tab);
            QApplication::processEvents();
            const QWidget& page = *tabView().currentWidget();
            const int top = page.mapTo(&tabView(), QPoint(0, 0)).y();
            EXPECT_EQ(strip.geometry().bottom() + 1, top) << tab;
            EXPECT_GE(strip.geometry().top(), tabView().tabBar()->geometry().bottom()) << tab;
            EXPECT_GT(page.height(), strip.height()) << tab;
        }
    }
}

TEST_F(AnswerStripTest, TellsWhenTheLastScanEnded) {
    shownWindow();
    EXPECT_TRUE(part<QLabel>("lastScanLbl").text().isEmpty());
    state.lastScanEnd = QDateTime::currentDateTime();
    statusWatch.look();
    EXPECT_EQ(part<QLabel>("lastScanLbl").text(), u"HPS_LastScan");
}

/// The icon and the line go the same way through what the window itself decides.
TEST_F(AnswerStripTest, FollowsTheIconThroughAThreatThatIsLookedAt) {
    state.newThreatCount = 3;
    controller().updateDisplay();
    EXPECT_EQ(state.curIconDispColor, IconColor::Red);
    EXPECT_STREQ(statusWatch.report().rule->name, "new-threats");
    shownWindow();
    controller().updateDisplay(); // the Threats tab is in sight
    EXPECT_EQ(why().text(), u"HPS_WhyGood");
    EXPECT_EQ(state.curIconDispColor, IconColor::Green);
}

} // namespace
} // namespace korvale
