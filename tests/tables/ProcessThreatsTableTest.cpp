#include "tables/ProcessThreatsTable.h"

#include "tables/TableOnScreen.h"
#include "tables/WindowLook.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

constexpr auto header = u"\"Process Name\",\"Category\",\"Found\",\"PID\",\"Path\"\n";

struct ProcessThreatsTableTest : testing::Test {
    RememberedSelections selections;
    TableOnScreen<ProcessThreatsTable> processes{&ProcessThreatsTable::setProcessThreatsTable,
                                                 selections};

    void showRows(std::vector<FakeRow> rows) {
        processes.show();
        processes.load(listedRows(std::move(rows)));
    }
    QString toolTipOf(const QString& lines) {
        showRows({{{RowKey::ProcessToolTip, lines}}});
        return processes.view->visibleCell(0, 0)->toolTip();
    }
};

FakeRow process(const QString& paths) {
    return {{RowKey::ProcessName, u"sh"_s},
            {RowKey::ProcessToolTip, paths},
            {RowKey::Category, u"Alert"_s},
            {RowKey::Found, u"3"_s},
            {RowKey::Pid, u"77"_s}};
}

TEST_F(ProcessThreatsTableTest, EachColumnShowsItsKey) {
    showRows({process(u"/bin"_s)});
    const QString texts[] = {u"sh"_s, u"Alert"_s, u"3"_s, u"77"_s};
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(processes.cell(0, column), texts[column]) << column;
    }
}

TEST_F(ProcessThreatsTableTest, OnlyAnAlertIsRed) {
    showRows({process(u"/bin"_s), {{RowKey::Category, u"Blocked"_s}}});
    EXPECT_EQ(processes.view->visibleCell(0, 1)->textColor(), QColor(look::alarmText));
    EXPECT_EQ(processes.view->visibleCell(1, 1)->textColor(), QColor(Qt::black));
}

TEST_F(ProcessThreatsTableTest, ToolTipsShowThreeLinesAtMost) {
    EXPECT_EQ(toolTipOf(u"A"_s), u"A"_s);
    EXPECT_EQ(toolTipOf(u"A\nB\nC"_s), u"A\nB\nC"_s);
    EXPECT_EQ(toolTipOf(u"A\nB\nC\nD"_s), u"A\nB\nC\n..."_s);
    EXPECT_EQ(toolTipOf(u"A\nB\nC\n"_s), u"A\nB\nC\n..."_s);
    EXPECT_EQ(toolTipOf(u"\n\n\n"_s), u"\n\n\n..."_s);
}

TEST_F(ProcessThreatsTableTest, EachPathCopiesAsALine) {
    showRows({process(u"/bin\n/usr/bin"_s)});
    processes.clickRow(0);
    processes.pressCopy();
    EXPECT_EQ(clipboard(),
              QString::fromUtf16(header) + u"sh,Alert,3,77,/bin\nsh,Alert,3,77,/usr/bin\n"_s);
}

TEST_F(ProcessThreatsTableTest, CommandWithAnyOtherModifierDoesNotCopy) {
    showRows({process(u"/bin"_s)});
    processes.clickRow(0);
    for (const Qt::KeyboardModifier more : {Qt::ShiftModifier, Qt::AltModifier, Qt::MetaModifier}) {
        setClipboard(u"before"_s);
        processes.pressCopy(more);
        EXPECT_EQ(clipboard(), u"before"_s) << more;
    }
}

TEST_F(ProcessThreatsTableTest, ItsRememberedSelectionIsItsOwn) {
    showRows({process(u"/bin"_s)});
    processes.clickRow(0);
    EXPECT_EQ(selections.selectedProcessRows, RowIndexes({{0, 0}}));
    EXPECT_EQ(selections.selectedRows, std::nullopt);
    EXPECT_EQ(selections.selectedEventRows, std::nullopt);
}

} // namespace
} // namespace korvale
