#include "shell/AnswerStrip.h"

#include "fakes/RecordingRowBatch.h"
#include "shell/LinkButton.h"
#include "shell/WindowFixture.h"
#include "tables/ThreatsTableView.h"
#include "tables/WindowLook.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>

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

struct FindFieldTest : AnswerStripTest {
    FindFieldTest() {
        fileThreats.loadData(listedRows({{{RowKey::File, QStringLiteral("a.exe")}},
                                         {{RowKey::File, QStringLiteral("b.exe")}},
                                         {{RowKey::File, QStringLiteral("c.pdf")}}}));
        fileThreats.updateView();
    }
    QLineEdit& field() { return part<QLineEdit>("findField"); }
    QLabel& count() { return part<QLabel>("findCountLbl"); }
};

TEST_F(FindFieldTest, ControlFTakesTheFocusThereAndEscapeClearsBeforeItCloses) {
    MainWindow& window = shownWindow();
    QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(field().hasFocus());
    QTest::keyClicks(&field(), QStringLiteral("exe"));
    EXPECT_EQ(fileThreats.shownRowCount(), 2U);
    EXPECT_TRUE(count().isVisible());
    EXPECT_EQ(count().text(), u"HPS_FindCount");
    QTest::keyClick(&field(), Qt::Key_Down);
    EXPECT_TRUE(tabView().currentWidget()->hasFocus());
    QTest::keyClick(tabView().currentWidget(), Qt::Key_Escape);
    EXPECT_TRUE(field().text().isEmpty());
    EXPECT_EQ(fileThreats.shownRowCount(), 3U);
    EXPECT_FALSE(count().isVisible());
    EXPECT_TRUE(window.isVisible());
    QTest::keyClick(tabView().currentWidget(), Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(FindFieldTest, TheButtonThatEmptiesItHasAName) {
    shownWindow();
    const auto* button = field().findChild<QAbstractButton*>();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->accessibleName(), u"HPS_FindClear");
}

TEST_F(FindFieldTest, ABatchLosesNeitherTheTextNorTheFocus) {
    shownWindow();
    controller().window()->answerStrip().focusFind();
    QTest::keyClicks(&field(), QStringLiteral("exe"));
    fileThreats.loadData(listedRows({{{RowKey::File, QStringLiteral("d.exe")}}}));
    fileThreats.updateView();
    controller().updateDisplay();
    EXPECT_TRUE(field().hasFocus());
    EXPECT_EQ(field().text(), u"exe");
    EXPECT_EQ(fileThreats.shownRowCount(), 1U);
}

TEST_F(FindFieldTest, OneTextIsForAllTablesAndUnseenCountsKnowNothingOfIt) {
    events.loadData(listedRows(
        {{{RowKey::When, QStringLiteral("exe")}}, {{RowKey::When, QStringLiteral("no")}}}));
    events.updateView();
    shownWindow();
    field().setText(QStringLiteral("exe"));
    state.eventCount = 2;
    tabView().setCurrentIndex(2);
    EXPECT_EQ(events.shownRowCount(), 1U);
    EXPECT_EQ(state.eventCount, 0);
    field().clear();
    EXPECT_EQ(events.shownRowCount(), 2U);
    tabView().setCurrentIndex(0);
    EXPECT_EQ(fileThreats.shownRowCount(), 3U);
}

TEST_F(FindFieldTest, IsNotRememberedOverAStart) {
    shownWindow();
    field().setText(QStringLiteral("exe"));
    makeController();
    shownWindow();
    EXPECT_TRUE(field().text().isEmpty());
    EXPECT_EQ(fileThreats.shownRowCount(), 3U);
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
