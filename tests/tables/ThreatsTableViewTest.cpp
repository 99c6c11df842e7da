#include "fakes/FakeTexts.h"
#include "tables/EventsTable.h"
#include "tables/PaintedRegion.h"
#include "tables/TableOnScreen.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QHelpEvent>
#include <QLabel>
#include <QToolTip>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

struct ThreatsTableViewTest : testing::Test {
    RememberedSelections selections;
    TableOnScreen<EventsTable> events{&EventsTable::setEventsTable, selections};

    void SetUp() override { events.show(); }
    [[nodiscard]] int rowsInSight() const {
        const int height = events.view->heightOfRows();
        return (events.view->viewport()->height() + height - 1) / height;
    }
    void scrollTo(int value) {
        events.view->verticalScrollBar()->setValue(value);
        events.paint();
    }
};

// Rows and cells

TEST_F(ThreatsTableViewTest, AMillionRowsCostNoTextBeyondThoseInSight) {
    const auto batch = numberedRows(1'000'000);
    events.load(batch);
    const auto cells = static_cast<std::size_t>(rowsInSight()) * 4;
    EXPECT_GT(batch->calls, 0U);
    EXPECT_LE(batch->calls, cells * 2); // text and tooltip
    EXPECT_EQ(events.cell(0, 0), u"0"_s);
    scrollTo(events.view->verticalScrollBar()->maximum());
    EXPECT_EQ(events.cell(999'999, 0), u"999999"_s);
    EXPECT_LE(batch->calls, cells * 4);
}

TEST_F(ThreatsTableViewTest, PaintingAgainAsksForNothingAgain) {
    const auto batch = numberedRows(100);
    events.load(batch);
    const std::size_t calls = batch->calls;
    events.paint();
    EXPECT_EQ(batch->calls, calls);
}

TEST_F(ThreatsTableViewTest, ScrollingUsesTheCellsThatLeft) {
    events.load(numberedRows(1000));
    const int height = events.view->heightOfRows();
    const CellView* leaving = events.view->visibleCell(0, 3);
    scrollTo(height * (rowsInSight() + 1)); // all out of sight
    const std::size_t cells =
        events.view->pooledCells() + static_cast<std::size_t>(rowsInSight()) * 4;
    scrollTo(0);
    scrollTo(height); // exactly the first row leaves
    EXPECT_EQ(events.view->visibleCell(0, 3), nullptr);
    EXPECT_NE(leaving, nullptr);
    for (int step = 2; step < 40; ++step) {
        scrollTo(height * step);
    }
    EXPECT_LE(events.view->pooledCells() + static_cast<std::size_t>(rowsInSight()) * 4, cells + 8);
}

TEST_F(ThreatsTableViewTest, TheLatestCellPutBackIsUsedFirst) {
    events.load(numberedRows(1));
    const CellView* first = events.view->visibleCell(0, 0);
    const CellView* last = events.view->visibleCell(0, 3);
    events.load(numberedRows(1));
    EXPECT_EQ(events.view->visibleCell(0, 0), last);
    EXPECT_EQ(events.view->visibleCell(0, 3), first);
}

TEST_F(ThreatsTableViewTest, CellsStandWhereClicksFindThem) {
    events.load(numberedRows(500));
    scrollTo(events.view->heightOfRows() * 100 + 7);
    for (const int row : {101, 105}) {
        for (const int column : {0, 2}) {
            const QModelIndex index = events.view->model()->index(row, column);
            EXPECT_EQ(events.view->indexAt(events.view->visualRect(index).center()), index);
        }
    }
    EXPECT_FALSE(events.view->indexAt(QPoint(5, -1)).isValid());
}

TEST_F(ThreatsTableViewTest, BelowTheLastRowThereIsNoCell) {
    events.load(numberedRows(2));
    EXPECT_FALSE(events.view->indexAt(QPoint(5, events.view->heightOfRows() * 2 + 1)).isValid());
}

// Selection

TEST_F(ThreatsTableViewTest, ASelectionChangeIsRemembered) {
    events.load(numberedRows(10));
    EXPECT_EQ(selections.selectedEventRows, std::nullopt);
    events.clickRow(2);
    events.clickRow(4, Qt::ShiftModifier);
    events.clickRow(7, Qt::ControlModifier);
    EXPECT_EQ(selections.selectedEventRows, RowIndexes({{2, 4}, {7, 7}}));
}

TEST_F(ThreatsTableViewTest, ClickingBelowTheRowsSelectsNothing) {
    events.load(numberedRows(2));
    events.clickRow(1);
    QTest::mouseClick(events.view->viewport(), Qt::LeftButton, {},
                      QPoint(20, events.view->viewport()->height() - 5));
    EXPECT_EQ(selections.selectedEventRows, RowIndexes());
}

TEST_F(ThreatsTableViewTest, AllRowsAreOneRangeHoweverMany) {
    const auto batch = numberedRows(1'000'000);
    events.load(batch);
    const std::size_t calls = batch->calls;
    QTest::keyClick(events.view.get(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(selections.selectedEventRows, RowIndexes({{0, 999'999}}));
    EXPECT_EQ(batch->calls, calls);
}

TEST_F(ThreatsTableViewTest, AReloadKeepsSelectionCurrentRowAndPlaceAndIsNoSelectionChange) {
    events.load(numberedRows(500));
    events.clickRow(3);
    events.clickRow(5, Qt::ControlModifier);
    scrollTo(4000);
    selections.selectedEventRows = RowIndexes({{42, 42}}); // would be replaced by a change
    events.load(numberedRows(600, u"other"_s));
    EXPECT_EQ(selections.selectedEventRows, RowIndexes({{42, 42}}));
    EXPECT_EQ(events.view->selectedRowIndexes(), RowIndexes({{3, 3}, {5, 5}}));
    EXPECT_EQ(events.view->currentIndex().row(), 5);
    EXPECT_EQ(events.view->verticalScrollBar()->value(), 4000);
}

TEST_F(ThreatsTableViewTest, AReloadWithFewerRowsKeepsWhatStillExists) {
    events.load(numberedRows(10));
    events.clickRow(1);
    events.clickRow(8, Qt::ControlModifier);
    events.load(numberedRows(5));
    EXPECT_EQ(events.view->selectedRowIndexes(), RowIndexes({{1, 1}}));
    EXPECT_EQ(selections.selectedEventRows, RowIndexes({{1, 1}, {8, 8}}));
    EXPECT_FALSE(events.view->currentIndex().isValid());
}

TEST_F(ThreatsTableViewTest, OnlyOneRowCanBeSelectedUntilTheViewWasUpdated) {
    ThreatsTableView view;
    EXPECT_EQ(view.selectionMode(), QAbstractItemView::SingleSelection);
    EXPECT_EQ(events.view->selectionMode(), QAbstractItemView::ExtendedSelection);
}

// Keys

TEST_F(ThreatsTableViewTest, ArrowPageAndEndKeysMoveTheSelection) {
    events.load(numberedRows(200));
    events.clickRow(0);
    struct Step {
        Qt::Key key;
        int row;
    };
    const int page = events.view->viewport()->height() / events.view->heightOfRows() - 1;
    const Step steps[] = {{Qt::Key_Down, 1},
                          {Qt::Key_Down, 2},
                          {Qt::Key_Up, 1},
                          {Qt::Key_End, 199},
                          {Qt::Key_PageUp, 199 - page},
                          {Qt::Key_Home, 0},
                          {Qt::Key_PageDown, page}};
    for (const Step& step : steps) {
        QTest::keyClick(events.view.get(), step.key);
        EXPECT_EQ(events.view->selectedRowIndexes(), RowIndexes({{step.row, step.row}}));
        const QRect cell = events.view->visualRect(events.view->currentIndex());
        EXPECT_TRUE(events.view->viewport()->rect().contains(cell.center())) << step.row;
    }
}

TEST_F(ThreatsTableViewTest, TheFirstKeySelectsTheFirstRowAlsoOfATableThatHadRowsBefore) {
    struct Step {
        Qt::Key key;
        int row;
    };
    for (const Step& step : {Step{Qt::Key_Down, 0}, Step{Qt::Key_Home, 0}, Step{Qt::Key_End, 4}}) {
        events.table.loadData(numberedRows(5));
        events.show(); // a new view that gets the focus with its rows
        QFocusEvent focus(QEvent::FocusIn, Qt::TabFocusReason);
        QApplication::sendEvent(events.view.get(), &focus);
        EXPECT_EQ(events.view->selectedRowIndexes(), RowIndexes());
        QTest::keyClick(events.view.get(), step.key);
        EXPECT_EQ(events.view->selectedRowIndexes(), RowIndexes({{step.row, step.row}}));
    }
}

TEST_F(ThreatsTableViewTest, LeftAndRightMoveTheCurrentColumn) {
    events.load(numberedRows(3));
    events.clickRow(1);
    QTest::keyClick(events.view.get(), Qt::Key_Right);
    EXPECT_EQ(events.view->currentIndex(), events.view->model()->index(1, 1));
    QTest::keyClick(events.view.get(), Qt::Key_Left);
    QTest::keyClick(events.view.get(), Qt::Key_Left);
    EXPECT_EQ(events.view->currentIndex(), events.view->model()->index(1, 0));
}

TEST_F(ThreatsTableViewTest, NoKeyMakesTheToolkitCopyACell) {
    events.load(numberedRows(3));
    events.clickRow(1);
    setClipboard(u"before"_s);
    QTest::keyClick(events.view.get(), Qt::Key_Insert, Qt::ControlModifier);
    QKeyEvent copyKey(QEvent::KeyPress, Qt::Key_Copy, Qt::NoModifier);
    QApplication::sendEvent(events.view.get(), &copyKey);
    QTest::keyClick(events.view.get(), Qt::Key_F16);
    QTest::keyClick(events.view.get(), Qt::Key_C);
    EXPECT_EQ(clipboard(), u"before"_s);
}

struct KeyCatcher : QWidget {
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() != Qt::Key_Control) {
            keys.push_back(event->key());
        }
    }
    std::vector<int> keys;
};

TEST_F(ThreatsTableViewTest, KeysOfNoUseToTableAndControllerReachTheWindow) {
    events.load(numberedRows(3));
    KeyCatcher window;
    events.view->setParent(&window);
    window.show();
    events.view->show();
    QTest::keyClick(events.view.get(), Qt::Key_Escape);
    QTest::keyClick(events.view.get(), Qt::Key_W, Qt::ControlModifier);
    QTest::keyClick(events.view.get(), Qt::Key_C, Qt::ControlModifier); // the controller's
    QTest::keyClick(events.view.get(), Qt::Key_Down);                   // the table's
    EXPECT_EQ(window.keys, (std::vector<int>{Qt::Key_Escape, Qt::Key_W}));
    events.view->setParent(nullptr);
}

TEST_F(ThreatsTableViewTest, TheHeaderSortsFromTheKeyboard) {
    events.load(listedRows({{{RowKey::Category, u"b"_s}}, {{RowKey::Category, u"a"_s}}}));
    CustHeaderView& header = events.view->header();
    QTest::keyClick(&header, Qt::Key_Right);
    QTest::keyClick(&header, Qt::Key_Space);
    EXPECT_EQ(events.view->sortDescriptors(), (SortDescriptors{{RowKey::Category, true}}));
    events.paint();
    EXPECT_EQ(events.cell(0, 1), u"a"_s);
    QTest::keyClick(&header, Qt::Key_Return);
    EXPECT_EQ(events.view->sortDescriptors(), (SortDescriptors{{RowKey::Category, false}}));
}

// Sorting

TEST_F(ThreatsTableViewTest, AtFirstThereIsNoOrder) {
    EXPECT_TRUE(events.view->sortDescriptors().empty());
}

TEST_F(ThreatsTableViewTest, ClicksOnTitlesSortTurnAndRememberEarlierChoices) {
    events.clickTitle(0);
    EXPECT_EQ(events.view->sortDescriptors(), (SortDescriptors{{RowKey::When, true}}));
    EXPECT_EQ(events.view->header().headerCell(0).sortIndicator(), true);
    events.clickTitle(0);
    EXPECT_EQ(events.view->sortDescriptors(), (SortDescriptors{{RowKey::When, false}}));
    EXPECT_EQ(events.view->header().headerCell(0).sortIndicator(), false);
    events.clickTitle(1);
    EXPECT_EQ(events.view->sortDescriptors(),
              (SortDescriptors{{RowKey::Category, true}, {RowKey::When, false}}));
    EXPECT_EQ(events.view->header().headerCell(0).sortIndicator(), std::nullopt);
    events.clickTitle(0);
    EXPECT_EQ(events.view->sortDescriptors(),
              (SortDescriptors{{RowKey::When, true}, {RowKey::Category, true}}));
}

TEST_F(ThreatsTableViewTest, ADoubleClickBetweenTitlesFitsTheColumnToTheTextsInSight) {
    const QString text(60, u'm');
    events.load(listedRows({{{RowKey::Category, text}}, {{RowKey::Category, u"short"_s}}}));
    QHeaderView* header = events.view->horizontalHeader();
    const QPoint edge(header->sectionViewportPosition(1) + header->sectionSize(1),
                      header->height() / 2);
    QTest::mouseMove(header->viewport(), edge);
    QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, edge);
    const int needed = events.view->fontMetrics().horizontalAdvance(text);
    EXPECT_GE(header->sectionSize(1), needed + 16);
    EXPECT_LE(header->sectionSize(1), needed + 40);
}

// Looks

TEST_F(ThreatsTableViewTest, AnEmptyTableSaysWhatWouldStandThere) {
    EXPECT_EQ(events.view->accessibleDescription(), u"HPS_EmptyNotRead"_s);
    const QColor background = events.image.pixelColor(3, events.image.height() - 3);
    bool drawn = false;
    const QRect middle(300, 180, 200, 60);
    for (int x = middle.left(); x < middle.right(); ++x) {
        for (int y = middle.top(); y < middle.bottom(); ++y) {
            drawn = drawn || events.image.pixelColor(x, y) != background;
        }
    }
    EXPECT_TRUE(drawn);
    events.load(numberedRows(1));
    EXPECT_EQ(events.view->accessibleDescription(), u"HPS_TableHint"_s);
}

TEST_F(ThreatsTableViewTest, NothingOfARowHeaderCoversTheCells) {
    EXPECT_FALSE(events.view->verticalHeader()->isVisible());
    for (const QAbstractButton* corner : events.view->findChildren<QAbstractButton*>()) {
        EXPECT_FALSE(corner->isVisible());
    }
}

TEST_F(ThreatsTableViewTest, TheFrameOfTheCurrentRowLeavesWithIt) {
    events.load(numberedRows(5));
    events.clickRow(0);
    QApplication::processEvents();
    PaintedRegion watcher;
    events.view->viewport()->installEventFilter(&watcher);
    QTest::keyClick(events.view.get(), Qt::Key_Down, Qt::ControlModifier); // current row alone
    QApplication::processEvents();
    const QRect bothRows(0, 0, events.view->viewport()->width(), 2 * events.view->heightOfRows());
    EXPECT_EQ(watcher.painted.intersected(bothRows), QRegion(bothRows));
}

TEST_F(ThreatsTableViewTest, TheCurrentRowIsFramedOnlyForThoseAtTheKeyboard) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(events.view.get()));
    events.load(numberedRows(5));
    events.clickRow(0);
    events.paint();
    const QImage clicked = events.image;
    QTest::keyClick(events.view.get(), Qt::Key_Down);
    QTest::keyClick(events.view.get(), Qt::Key_Up); // row 0 again
    events.paint();
    EXPECT_NE(events.image, clicked);
    events.clickRow(0);
    events.paint();
    EXPECT_EQ(events.image, clicked);
}

TEST_F(ThreatsTableViewTest, ATableWithoutACurrentRowIsFramedAsAWhole) {
    ASSERT_TRUE(QTest::qWaitForWindowActive(events.view.get()));
    for (const std::size_t rows : {0U, 3U}) {
        events.load(numberedRows(rows));
        const auto focused = [this](Qt::FocusReason reason) {
            QFocusEvent focus(QEvent::FocusIn, reason);
            QApplication::sendEvent(events.view.get(), &focus);
            events.paint();
            return events.image;
        };
        const QImage without = focused(Qt::MouseFocusReason);
        EXPECT_NE(focused(Qt::TabFocusReason), without);
        EXPECT_EQ(focused(Qt::MouseFocusReason), without);
    }
}

TEST_F(ThreatsTableViewTest, ItIsLightUnderADarkPalette) {
    const QPalette before = QApplication::palette();
    QPalette dark{QColor(40, 40, 40)};
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    QApplication::setPalette(dark);
    events.load(numberedRows(2));
    EXPECT_EQ(events.image.pixelColor(2, events.image.height() * 2 / 3), QColor(Qt::white));
    QApplication::setPalette(before);
}

TEST_F(ThreatsTableViewTest, ALineFeedOrADirectionOverrideIsShownNotObeyed) {
    events.load(listedRows({{{RowKey::Details, u"a\nb\u202egpj.exe"_s}}}));
    const CellView& cell = *events.view->visibleCell(0, 3);
    EXPECT_EQ(cell.text(), u"a\nb\u202egpj.exe"_s);
    EXPECT_EQ(cell.shownText(), u"a[U+000A]b[U+202E]gpj.exe"_s);
}

TEST_F(ThreatsTableViewTest, ATextNeverLeavesItsCell) {
    QString tower(u'o');
    tower += QString(200, QChar(u'\u0302')); // stacked accents
    events.load(
        listedRows({{{RowKey::Details, QString(5000, u'W')}}, {{RowKey::When, tower}}, {}}));
    const QImage before = events.image;
    events.load(listedRows({{{RowKey::Details, u"x"_s}}, {{RowKey::When, u"x"_s}}, {}}));
    const int row = events.view->heightOfRows();
    const int top = events.view->viewport()->y();
    const auto same = [&](const QRect& area) {
        return before.copy(area) == events.image.copy(area);
    };
    const QRect first = events.view->visualRect(events.view->model()->index(0, 0));
    const int details = events.view->visualRect(events.view->model()->index(0, 3)).left();
    EXPECT_TRUE(same(QRect(0, top + first.top(), details, row)));
    EXPECT_TRUE(same(QRect(0, top + 2 * row, 800, row)));
}

QString shownToolTip(ThreatsTableView& view, int row, int column) {
    const QPoint place = view.visualRect(view.model()->index(row, column)).center();
    QHelpEvent event(QEvent::ToolTip, place, view.viewport()->mapToGlobal(place));
    QApplication::sendEvent(view.viewport(), &event);
    return QToolTip::text();
}

TEST_F(ThreatsTableViewTest, ToolTipsAreNeverTakenForMarkup) {
    events.load(
        listedRows({{{RowKey::When, u"<b>/tmp/x</b>"_s}, {RowKey::Event, u"/tmp/<i>y"_s}}}));
    EXPECT_TRUE(shownToolTip(*events.view, 0, 0).contains(u"&lt;b&gt;/tmp/x&lt;/b&gt;"_s));
    EXPECT_TRUE(shownToolTip(*events.view, 0, 2).contains(u"/tmp/&lt;i&gt;y"_s));
    shownToolTip(*events.view, 0, 1); // no tooltip: the present one goes, after a moment
    EXPECT_TRUE(QTest::qWaitFor([] { return QToolTip::text().isEmpty(); }));
}

// Accessibility

TEST_F(ThreatsTableViewTest, AReaderSeesATableWithTitlesCellsAndDescriptions) {
    const FakeTexts texts{{"HPS_Events", u"Events"_s}, {"HPS_ColWhen", u"When"_s}};
    events.show();
    events.load(listedRows({{{RowKey::When, u"now"_s}}, {{RowKey::When, u"a\nb"_s}}}));
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(events.view.get());
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->role(), QAccessible::Table);
    EXPECT_EQ(table->text(QAccessible::Name), u"Events"_s);
    QAccessibleTableInterface* cells = table->tableInterface();
    ASSERT_NE(cells, nullptr);
    EXPECT_EQ(cells->rowCount(), 2);
    EXPECT_EQ(cells->columnCount(), 4);
    EXPECT_EQ(cells->columnDescription(0), u"When"_s);
    EXPECT_EQ(cells->cellAt(0, 0)->text(QAccessible::Name), u"now"_s);
    EXPECT_EQ(cells->cellAt(0, 0)->text(QAccessible::Description), u"now"_s);
    EXPECT_EQ(cells->cellAt(1, 0)->text(QAccessible::Name), u"a\nb"_s);
    EXPECT_EQ(cells->cellAt(0, 1)->text(QAccessible::Name), QString());
}

TEST_F(ThreatsTableViewTest, AReaderReachesCellsOutOfSight) {
    events.load(numberedRows(1'000'000));
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(events.view.get());
    EXPECT_EQ(table->tableInterface()->rowCount(), 1'000'000);
    EXPECT_EQ(table->tableInterface()->cellAt(765'432, 3)->text(QAccessible::Name), u"765432"_s);
}

} // namespace
} // namespace korvale
