#include "shell/AnswerStrip.h"

#include "fakes/RecordingRowBatch.h"
#include "shell/LinkButton.h"
#include "shell/Translations.h"
#include "shell/WindowFixture.h"
#include "tables/ThreatsTableView.h"
#include "tables/WindowLook.h"

#include <QAbstractButton>
#include <QLabel>
#include <QLayout>
#include <QLineEdit>

#include <array>

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

/// How high the strip was whenever it was drawn.
struct PaintedHeights : QObject {
    explicit PaintedHeights(AnswerStrip& watched) : strip(watched) {
        watched.installEventFilter(this);
    }
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            heights.push_back(strip.height());
            wasHalfChanged |= strip.height() != strip.layout()->totalHeightForWidth(strip.width());
        }
        return false;
    }
    AnswerStrip& strip;
    std::vector<int> heights;
    bool wasHalfChanged = false;
};

/// Where the parts stand, whatever the room.
struct StripRowsTest : AnswerStripTest {
    static constexpr std::array partsInOrder{"whyLbl",      "whatNowButton",
                                             "lastScanLbl", "notificationsButton",
                                             "findField",   "exportButton"};

    ~StripRowsTest() override { QApplication::setFont(m_font); }

    static void enlargeText(double scale) {
        QFont font = QApplication::font();
        font.setPointSizeF(font.pointSizeF() * scale);
        QApplication::setFont(font);
    }

    /// The window with everything that the strip can say.
    MainWindow& fullWindow(int width) {
        MainWindow& window = shownWindow();
        state.agentIsAway = true;
        state.lastScanEnd = QDateTime::currentDateTime();
        statusWatch.look();
        window.resize(width, 600);
        QApplication::processEvents();
        return window;
    }

    QRect place(const char* name) {
        auto& shown = part<QWidget>(name);
        QWidget& strip = controller().window()->answerStrip();
        return {shown.mapTo(&strip, QPoint()), shown.size()};
    }
    bool isWhole(const char* name) {
        return place(name).width() >= part<QWidget>(name).sizeHint().width();
    }
    int rowOf(const char* name) { return place(name).center().y(); }

    void expectApart() {
        const QRect whole = controller().window()->answerStrip().rect();
        for (const char* one : partsInOrder) {
            EXPECT_TRUE(whole.contains(place(one))) << one;
            for (const char* other : partsInOrder) {
                EXPECT_TRUE(one == other || !place(one).intersects(place(other))) << one << other;
            }
        }
    }

private:
    Translations m_texts{{QByteArray("en")}}; // as long as texts are
    QFont m_font = QApplication::font();
};

TEST_F(StripRowsTest, AreOneWhereEverythingHasRoom) {
    fullWindow(1400);
    expectApart();
    for (const char* name : partsInOrder) {
        EXPECT_NEAR(rowOf(name), rowOf("whyLbl"), 1) << name;
        EXPECT_TRUE(isWhole(name)) << name;
    }
    EXPECT_EQ(place("findField").width(), part<QWidget>("findField").maximumWidth());
}

TEST_F(StripRowsTest, AreTwoBeforeAnythingIsShortened) {
    fullWindow(700);
    expectApart();
    EXPECT_TRUE(isWhole("whyLbl"));
    EXPECT_NEAR(rowOf("whatNowButton"), rowOf("whyLbl"), 1);
    EXPECT_GT(place("findField").top(), place("whyLbl").bottom());
    EXPECT_EQ(place("exportButton").right() + 1, 700 - look::margin + look::linkPadding);
    EXPECT_EQ(rowOf("notificationsButton"), rowOf("exportButton"));
}

TEST_F(StripRowsTest, KeepTheReasonWholeInTheSmallestWindowWithLargeText) {
    enlargeText(1.5); // before there is a window, and while there is one
    fullWindow(look::smallestWidth);
    for (const double more : {1.0, 1.2}) {
        enlargeText(more);
        EXPECT_TRUE(QTest::qWaitFor([this] { return isWhole("whyLbl"); }, 20000));
        EXPECT_EQ(controller().window()->width(), look::smallestWidth);
        expectApart();
        for (const char* name :
             {"whyLbl", "whatNowButton", "notificationsButton", "exportButton"}) {
            EXPECT_TRUE(isWhole(name)) << name << " at 1.5 times " << more;
        }
        EXPECT_GE(place("findField").width(),
                  look::fewestFindCharacters *
                      part<QWidget>("findField").fontMetrics().averageCharWidth());
    }
}

TEST_F(StripRowsTest, ChangeWithTheTextAndComeBackWithoutBeingDrawnHalfChanged) {
    AnswerStrip& strip = fullWindow(700).answerStrip();
    const QString reason = why().text();
    const QString whatToDo = advice().text();
    const QString lastScan = part<QLabel>("lastScanLbl").text();
    const int twoRows = strip.height();
    PaintedHeights painted(strip);
    strip.setProtection(Verdict::Good, QStringLiteral("ok"), {}, {});
    QApplication::processEvents();
    const int oneRow = strip.height();
    EXPECT_LT(oneRow, twoRows);
    EXPECT_NEAR(rowOf("exportButton"), rowOf("whyLbl"), 1);
    strip.setProtection(Verdict::Good, QString(120, u'm'), {}, {});
    QApplication::processEvents();
    EXPECT_EQ(place("whyLbl").width(), 700 - 2 * (look::margin - look::linkPadding)); // all
    strip.setProtection(Verdict::Away, reason, whatToDo, lastScan);
    QApplication::processEvents();
    EXPECT_EQ(strip.height(), twoRows);
    EXPECT_EQ(painted.heights.front(), oneRow);
    EXPECT_EQ(painted.heights.back(), twoRows);
    EXPECT_FALSE(painted.wasHalfChanged);
}

TEST_F(StripRowsTest, ShortenOfTheLastScanWhatIsBeforeItsMomentOrLeaveItOut) {
    fullWindow(look::smallestWidth);
    const auto& lastScan = part<QLabel>("lastScanLbl");
    EXPECT_FALSE(isWhole("lastScanLbl"));
    EXPECT_GE(2 * lastScan.width(), lastScan.sizeHint().width());
    controller().window()->answerStrip().setProtection(Verdict::Good, QString(40, u'm'), {},
                                                       lastScan.text() + QString(60, u'm'));
    QApplication::processEvents();
    EXPECT_EQ(lastScan.width(), 0);
    EXPECT_EQ(place("exportButton").right() + 1,
              look::smallestWidth - look::margin + look::linkPadding);
}

TEST_F(StripRowsTest, ChangeWithoutTakingTheFocusOrTheTextFromTheField) {
    MainWindow& window = fullWindow(1400);
    window.answerStrip().focusFind();
    auto& field = part<QLineEdit>("findField");
    QTest::keyClicks(&field, QStringLiteral("exe"));
    for (const int width : {look::smallestWidth, 1400}) {
        window.resize(width, 600);
        QApplication::processEvents();
        EXPECT_TRUE(field.hasFocus());
        EXPECT_EQ(field.text(), u"exe");
        EXPECT_EQ(field.cursorPosition(), 3);
    }
}

TEST_F(StripRowsTest, AreGoneThroughInTheOrderInWhichTheyStand) {
    fullWindow(look::smallestWidth);
    part<QWidget>("whatNowButton").setFocus();
    for (const char* next : {"notificationsButton", "findField", "exportButton"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), QLatin1String(next));
    }
}

TEST_F(StripRowsTest, AreMirroredFromRightToLeft) {
    for (const int width : {look::smallestWidth, 1400}) {
        MainWindow& window = fullWindow(width);
        std::vector<QRect> places;
        for (const char* name : partsInOrder) {
            places.push_back(place(name));
        }
        window.setLayoutDirection(Qt::RightToLeft);
        QApplication::processEvents();
        for (std::size_t i = 0; i < places.size(); ++i) {
            QRect mirrored = places[i];
            mirrored.moveRight(width - 1 - places[i].left());
            EXPECT_EQ(place(partsInOrder.at(i)), mirrored) << partsInOrder.at(i);
        }
        window.setLayoutDirection(Qt::LeftToRight);
    }
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
