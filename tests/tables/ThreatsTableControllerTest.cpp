#include "fakes/FakeTexts.h"
#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/FileThreatsTable.h"
#include "tables/ProcessThreatsTable.h"
#include "tables/TableOnScreen.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

struct ThreatsTableControllerTest : testing::Test {
    RememberedSelections selections;
    TableOnScreen<EventsTable> events{&EventsTable::setEventsTable, selections};
    TableOnScreen<FileThreatsTable> files{&FileThreatsTable::setFileThreatsTable, selections};

    QString when(std::size_t row) {
        return events.table.currentRows().text(row, RowKey::When).value_or(u"(none)"_s);
    }
};

TEST_F(ThreatsTableControllerTest, AddingToAListOf999PutsNewRowsFirstAndCapsAt1000) {
    events.table.loadData(numberedRows(999, u"old"_s));
    events.table.addData(numberedRows(3, u"new"_s));
    ASSERT_EQ(events.table.currentRows().size(), 1000U);
    EXPECT_EQ(when(0), u"new0"_s);
    EXPECT_EQ(when(2), u"new2"_s);
    EXPECT_EQ(when(3), u"old0"_s);
    EXPECT_EQ(when(999), u"old996"_s);
}

TEST_F(ThreatsTableControllerTest, AddingToAFullListDropsAsManyOldRows) {
    events.table.loadData(numberedRows(1000, u"old"_s));
    events.table.addData(numberedRows(5, u"new"_s));
    ASSERT_EQ(events.table.currentRows().size(), 1000U);
    EXPECT_EQ(when(4), u"new4"_s);
    EXPECT_EQ(when(999), u"old994"_s);
}

TEST_F(ThreatsTableControllerTest, ALoadIsNeverCapped) {
    events.table.loadData(numberedRows(1500));
    EXPECT_EQ(events.table.currentRows().size(), 1500U);
}

TEST_F(ThreatsTableControllerTest, AddingNothingDoesNotEvenCap) {
    events.table.loadData(numberedRows(1200));
    events.table.addData(numberedRows(0));
    events.table.addData(nullptr);
    EXPECT_EQ(events.table.currentRows().size(), 1200U);
}

TEST_F(ThreatsTableControllerTest, AnEmptyTableSaysThatNothingWasFoundOnlyWhenThatIsKnown) {
    files.show();
    const auto said = [this](EmptyReason reason) {
        files.table.setEmptyReason(reason);
        return files.view->accessibleDescription();
    };
    EXPECT_EQ(files.view->accessibleDescription(), u"HPS_EmptyNotRead"_s); // at first
    EXPECT_EQ(said(EmptyReason::NothingFound), u"HPS_EmptyThreats"_s);
    EXPECT_EQ(said(EmptyReason::Unreadable), u"HPS_EmptyUnreadable"_s);
    EXPECT_EQ(said(EmptyReason::AgentAway), u"HPS_EmptyAgentAway"_s);
    EXPECT_EQ(said(EmptyReason::NotRead), u"HPS_EmptyNotRead"_s);
    files.paint();
    const QImage notRead = files.image;
    said(EmptyReason::NothingFound);
    files.paint();
    EXPECT_NE(files.image, notRead);
    files.load(numberedRows(1));
    EXPECT_EQ(said(EmptyReason::Unreadable), u"HPS_TableHint"_s); // the rows speak
    files.load(nullptr);
    EXPECT_EQ(files.view->accessibleDescription(), u"HPS_EmptyUnreadable"_s);
}

TEST_F(ThreatsTableControllerTest, LoadingAnAbsentListEmptiesTheTable) {
    files.show();
    files.load(numberedRows(3));
    files.load(nullptr);
    EXPECT_EQ(files.table.currentRows().size(), 0U);
    EXPECT_EQ(files.view->model()->rowCount(), 0);
}

TEST_F(ThreatsTableControllerTest, ALoadIsSortedAsTheUserChoseAndAddedRowsStayOnTop) {
    events.show();
    events.clickTitle(0);
    events.clickTitle(0); // descending
    events.load(numberedRows(12));
    EXPECT_EQ(when(0), u"11"_s);
    EXPECT_EQ(when(11), u"0"_s);
    events.table.addData(numberedRows(2, u"0-"_s));
    EXPECT_EQ(when(0), u"0-0"_s);
    EXPECT_EQ(when(1), u"0-1"_s);
    EXPECT_EQ(when(2), u"11"_s);
}

TEST_F(ThreatsTableControllerTest, WithoutAViewALoadKeepsTheGivenOrder) {
    events.table.loadData(listedRows({{{RowKey::When, u"b"_s}}, {{RowKey::When, u"a"_s}}}));
    EXPECT_EQ(when(0), u"b"_s);
}

TEST_F(ThreatsTableControllerTest, ChangingTheOrderSortsTheWholeListAndShowsIt) {
    events.show();
    events.load(listedRows({{{RowKey::When, u"10"_s}}, {{RowKey::When, u"9"_s}}}));
    events.table.addData(listedRows({{{RowKey::When, u"11"_s}}}));
    events.table.updateView();
    events.clickTitle(0);
    events.paint();
    EXPECT_EQ(events.cell(0, 0), u"9"_s);
    EXPECT_EQ(events.cell(1, 0), u"10"_s);
    EXPECT_EQ(events.cell(2, 0), u"11"_s);
}

TEST_F(ThreatsTableControllerTest, RemovedRowsShowUntilTheViewIsUpdated) {
    events.show();
    events.load(numberedRows(3));
    events.table.removeAll();
    events.paint();
    EXPECT_EQ(events.table.currentRows().size(), 0U);
    EXPECT_EQ(events.cell(2, 0), u"2"_s);
    events.table.updateView();
    events.paint();
    EXPECT_EQ(events.view->model()->rowCount(), 0);
}

TEST_F(ThreatsTableControllerTest, LoadedRowsShowOnlyAfterTheViewIsUpdated) {
    events.show();
    events.load(numberedRows(3, u"old"_s));
    events.table.loadData(numberedRows(1, u"new"_s));
    events.paint();
    EXPECT_EQ(events.cell(0, 0), u"old0"_s);
    events.table.updateView();
    events.paint();
    EXPECT_EQ(events.cell(0, 0), u"new0"_s);
    EXPECT_EQ(events.cell(1, 0), u"<out of sight>"_s);
}

TEST_F(ThreatsTableControllerTest, ScrollingBetweenALoadAndItsUpdateShowsEmptyCells) {
    events.show();
    events.load(numberedRows(500));
    events.table.removeAll();
    events.view->verticalScrollBar()->setValue(events.view->verticalScrollBar()->maximum());
    events.paint();
    EXPECT_EQ(events.cell(499, 0), QString());
}

TEST_F(ThreatsTableControllerTest, RowsThatCameBeforeTheWindowShowInIt) {
    files.table.loadData(numberedRows(3, u"early"_s));
    files.table.updateView(); // no view yet: nothing to update
    files.show();
    EXPECT_EQ(files.view->model()->rowCount(), 3);
    EXPECT_EQ(files.cell(2, 0), u"early2"_s);
}

TEST_F(ThreatsTableControllerTest, TitlesAreLookedUpByKey) {
    const FakeTexts texts{{"HPS_ColFile", u"Datei"_s}};
    files.show();
    EXPECT_EQ(files.view->header().headerCell(0).title(), u"Datei"_s);
    EXPECT_EQ(files.view->header().headerCell(1).title(), u"HPS_ColCategory"_s);
}

TEST_F(ThreatsTableControllerTest, EveryTableHasItsColumns) {
    ProcessThreatsTable processes(selections);
    ExternalDevicesTable devices(selections);
    const auto titles = [](const ThreatsTableController& table) {
        QStringList result;
        for (const TableColumn& column : table.description().columns) {
            result << QLatin1String(column.identifier) + u'=' + QLatin1String(column.titleKey);
        }
        return result.join(u' ');
    };
    EXPECT_EQ(titles(files.table),
              u"COL1=HPS_ColFile COL2=HPS_ColCategory COL3=HPS_ColFound COL4=HPS_ColID"_s);
    EXPECT_EQ(titles(processes),
              u"COL1=HPS_ColProcess COL2=HPS_ColCategory COL3=HPS_ColFound COL4=HPS_ColPID"_s);
    EXPECT_EQ(titles(events.table),
              u"COL1=HPS_ColWhen COL2=HPS_ColCategory COL3=HPS_ColEvent COL4=HPS_ColDetails"_s);
    EXPECT_EQ(titles(devices),
              u"COL1=HPS_ColDeviceType COL2=HPS_ColVendorID COL3=HPS_ColProductID "_s
              u"COL4=HPS_ColSerialNumber COL5=HPS_ColWhen COL6=HPS_ColAction"_s);
}

TEST_F(ThreatsTableControllerTest, CellsHaveStripesBlackTextAndTailTruncation) {
    events.show();
    events.load(numberedRows(2));
    const CellView& even = *events.view->visibleCell(0, 1);
    const CellView& odd = *events.view->visibleCell(1, 1);
    EXPECT_EQ(even.identifier(), QLatin1String("__FPView"));
    EXPECT_EQ(even.backgroundColor(), QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.1F));
    EXPECT_EQ(odd.backgroundColor(), QColor::fromRgbF(0.5F, 0.5F, 0.5F, 0.1F));
    EXPECT_EQ(even.textColor(), QColor(Qt::black));
    EXPECT_EQ(even.lineBreakMode(), LineBreakMode::TruncateTail);
    EXPECT_FALSE(even.isBordered());
}

TEST_F(ThreatsTableControllerTest, AnUnknownColumnGetsNoText) {
    files.show();
    files.load(numberedRows(1));
    const auto cell = files.table.viewForTableColumn(*files.view, QLatin1String("COL9"), 0);
    EXPECT_EQ(cell->text(), QString());
    EXPECT_EQ(cell->toolTip(), QString());
    EXPECT_EQ(cell->textColor(), QColor(Qt::black));
}

TEST_F(ThreatsTableControllerTest, ColumnIdentifiersAreComparedExactly) {
    files.show();
    files.load(numberedRows(1));
    EXPECT_EQ(files.table.cellText(QLatin1String("col1"), 0), std::nullopt);
    EXPECT_EQ(files.table.cellText(QLatin1String("COL1"), 0), u"0"_s);
}

TEST_F(ThreatsTableControllerTest, RowsObjectsIsAPlainReference) {
    EXPECT_EQ(files.table.rowsObjects(), nullptr);
    const RowList rows;
    files.table.setRowsObjects(&rows);
    EXPECT_EQ(files.table.rowsObjects(), &rows);
}

TEST_F(ThreatsTableControllerTest, AViewOutlivesItsController) {
    auto table = std::make_unique<EventsTable>(selections);
    ThreatsTableView view;
    table->setEventsTable(&view);
    table->awakeFromNib();
    table->loadData(numberedRows(5));
    table->updateView();
    table.reset();
    view.show();
    EXPECT_EQ(view.model()->rowCount(), 0);
    QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
}

TEST_F(ThreatsTableControllerTest, AControllerOutlivesItsView) {
    events.show();
    events.view.reset();
    events.table.loadData(numberedRows(5));
    events.table.updateView();
    EXPECT_EQ(events.table.eventsTable(), nullptr);
    EXPECT_EQ(events.table.currentRows().size(), 5U);
}

} // namespace
} // namespace korvale
