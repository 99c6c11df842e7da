#include "tables/EventsTable.h"
#include "tables/PaintedRegion.h"
#include "tables/TableOnScreen.h"

#include <QToolTip>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

/// Who comes to a table without a mouse.
struct TableKeyboardTest : testing::Test {
    RememberedSelections selections;
    TableOnScreen<EventsTable> events{&EventsTable::setEventsTable, selections};

    void SetUp() override { events.show(); }
    void TearDown() override { QToolTip::hideText(); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(events.view.get(), key, modifiers);
    }
    /// The same column's title and cells.
    [[nodiscard]] bool isColumnInSight(int column) const {
        const QRect cell = events.view->visualRect(events.view->model()->index(0, column));
        return cell.left() >= 0 && cell.right() < events.view->viewport()->width();
    }
    void giveFocus(Qt::FocusReason reason) {
        QFocusEvent focus(QEvent::FocusIn, reason);
        QApplication::sendEvent(events.view.get(), &focus);
        events.paint();
    }
};

TEST_F(TableKeyboardTest, TheCurrentColumnScrollsIntoSight) {
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        events.view->setLayoutDirection(direction);
        events.view->resize(420, 300);
        events.load(numberedRows(3));
        events.clickRow(0);
        const Qt::Key forth = direction == Qt::LeftToRight ? Qt::Key_Right : Qt::Key_Left;
        const Qt::Key back = direction == Qt::LeftToRight ? Qt::Key_Left : Qt::Key_Right;
        ASSERT_FALSE(isColumnInSight(2));
        press(forth);
        press(forth);
        ASSERT_EQ(events.view->currentIndex().column(), 2);
        EXPECT_TRUE(isColumnInSight(2));
        press(back);
        press(back);
        EXPECT_TRUE(isColumnInSight(0));
    }
}

TEST_F(TableKeyboardTest, AClickOnARowLeavesTheColumnsWhereTheyAre) {
    events.view->resize(420, 300);
    events.load(numberedRows(3));
    events.view->horizontalScrollBar()->setValue(30);
    events.clickRow(1);
    EXPECT_EQ(events.view->horizontalScrollBar()->value(), 30);
}

TEST_F(TableKeyboardTest, TheTitleWithTheFocusScrollsIntoSight) {
    events.view->resize(420, 300);
    events.load(numberedRows(3));
    for (int column = 1; column < 3; ++column) {
        QTest::keyClick(&events.view->header(), Qt::Key_Right);
    }
    EXPECT_TRUE(isColumnInSight(2));
}

TEST_F(TableKeyboardTest, ArrowsInTheTitlesFollowTheReadingDirection) {
    events.view->setLayoutDirection(Qt::RightToLeft);
    events.load(numberedRows(3));
    QTest::keyClick(&events.view->header(), Qt::Key_Left);
    QTest::keyClick(&events.view->header(), Qt::Key_Space);
    EXPECT_EQ(events.view->sortDescriptors(), (SortDescriptors{{RowKey::Category, true}}));
}

TEST_F(TableKeyboardTest, TitlesThatAreNotThereCannotBePressed) {
    ThreatsTableView empty;
    const QSignalSpy clicks(&empty.header(), &QHeaderView::sectionClicked);
    QTest::keyClick(&empty.header(), Qt::Key_Space);
    QTest::keyClick(&empty.header(), Qt::Key_Return);
    EXPECT_TRUE(clicks.isEmpty());
}

TEST_F(TableKeyboardTest, TypingAsksForNoText) {
    const auto batch = numberedRows(100'000);
    events.load(batch);
    events.clickRow(0);
    events.paint();
    const std::size_t calls = batch->calls;
    for (const Qt::Key key : {Qt::Key_X, Qt::Key_Y, Qt::Key_7, Qt::Key_Space}) {
        press(key);
    }
    EXPECT_LE(batch->calls, calls + 8); // at most the cells that are drawn anew
    EXPECT_EQ(events.view->currentIndex().row(), 0);
}

TEST_F(TableKeyboardTest, TheFocusShowsHoweverItCameButByTheMouse) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(events.view.get()));
    events.load(numberedRows(3));
    events.clickRow(1);
    events.paint();
    const QImage clicked = events.image;
    for (const Qt::FocusReason reason :
         {Qt::ActiveWindowFocusReason, Qt::PopupFocusReason, Qt::OtherFocusReason,
          Qt::ShortcutFocusReason, Qt::BacktabFocusReason}) {
        giveFocus(reason);
        EXPECT_NE(events.image, clicked) << reason;
        giveFocus(Qt::MouseFocusReason);
        EXPECT_EQ(events.image, clicked) << reason;
    }
}

TEST_F(TableKeyboardTest, AClickOnTheCurrentRowTakesItsFrameAway) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(events.view.get()));
    events.load(numberedRows(3));
    events.clickRow(0);
    press(Qt::Key_Down); // by keyboard: framed
    QApplication::processEvents();
    PaintedRegion watcher;
    events.view->viewport()->installEventFilter(&watcher);
    events.clickRow(1);
    QApplication::processEvents();
    const int height = events.view->heightOfRows();
    const QRect row(0, height, events.view->viewport()->width(), height);
    EXPECT_EQ(watcher.painted.intersected(row), QRegion(row));
}

TEST_F(TableKeyboardTest, AKeyShowsTheToolTipOfTheCurrentCell) {
    events.load(listedRows({{{RowKey::When, u"first"_s}, {RowKey::Category, u"<b>second</b>"_s}}}));
    press(Qt::Key_F1, Qt::ControlModifier);
    EXPECT_EQ(QToolTip::text(), QString()); // no cell is the current one
    press(Qt::Key_Down);
    press(Qt::Key_F1, Qt::ControlModifier);
    EXPECT_TRUE(QToolTip::text().contains(u"first"_s));
    press(Qt::Key_Right);
    press(Qt::Key_F1, Qt::ShiftModifier);
    EXPECT_TRUE(QToolTip::text().contains(u"&lt;b&gt;second"_s));
}

TEST_F(TableKeyboardTest, HoldingShowsTheToolTipOfACell) {
    events.load(listedRows({{{RowKey::When, u"held"_s}}}));
    const QPoint cell = events.view->visualRect(events.view->model()->index(0, 0)).center();
    QTest::mousePress(events.view->viewport(), Qt::LeftButton, {}, cell);
    EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().contains(u"held"_s); }));
    QTest::mouseRelease(events.view->viewport(), Qt::LeftButton, {}, cell);
}

} // namespace
} // namespace korvale
