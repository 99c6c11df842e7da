#include "tables/EventsTable.h"
#include "tables/TableOnScreen.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

struct TableReloadTest : testing::Test {
    RememberedSelections selections;
    TableOnScreen<EventsTable> events{&EventsTable::setEventsTable, selections};

    void SetUp() override {
        events.show();
        events.load(numberedRows(500));
    }
    [[nodiscard]] QScrollBar& bar() const { return *events.view->verticalScrollBar(); }
    void reload(std::size_t rows) {
        events.table.loadData(numberedRows(rows, u"other"_s));
        events.table.updateView();
    }
};

TEST_F(TableReloadTest, OutOfSightKeepsThePlace) {
    events.clickRow(3);
    bar().setValue(4000);
    events.view->hide();
    reload(600);
    events.view->show();
    events.paint();
    EXPECT_EQ(bar().value(), 4000);
    EXPECT_EQ(events.view->currentIndex().row(), 3);
    EXPECT_EQ(events.view->selectedRowIndexes(), RowIndexes({{3, 3}}));
}

TEST_F(TableReloadTest, ShowsTheNewTextsAtOnce) {
    reload(500);
    events.paint();
    EXPECT_EQ(events.cell(0, 0), u"other0"_s);
}

TEST_F(TableReloadTest, KeepsWhereAShiftedSelectionBegan) {
    events.clickRow(2);
    events.clickRow(5, Qt::ShiftModifier);
    reload(600);
    events.paint();
    events.clickRow(8, Qt::ShiftModifier);
    EXPECT_EQ(events.view->selectedRowIndexes(), RowIndexes({{2, 8}}));
}

TEST_F(TableReloadTest, WithFewerRowsScrollsToTheLast) {
    bar().setValue(bar().maximum());
    reload(100);
    events.paint();
    EXPECT_EQ(bar().value(), bar().maximum());
    EXPECT_EQ(events.cell(99, 0), u"other99"_s);
}

TEST_F(TableReloadTest, ToNothingAndBackSelectsNothing) {
    events.clickRow(2);
    reload(0);
    reload(500);
    EXPECT_EQ(events.view->selectedRowIndexes(), RowIndexes());
    EXPECT_FALSE(events.view->currentIndex().isValid());
    EXPECT_EQ(selections.selectedEventRows, RowIndexes({{2, 2}})); // no selection change
}

} // namespace
} // namespace korvale
