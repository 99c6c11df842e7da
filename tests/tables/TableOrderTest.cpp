#include "tables/TableOrder.h"

#include "tables/EventsTable.h"
#include "tables/TableOnScreen.h"

#include <QContextMenuEvent>
#include <QMenu>

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

struct TableOrderTest : testing::Test {
    TableOrderTest() {
        events.show();
        events.load(listedRows({{{RowKey::When, u"2"_s}, {RowKey::Category, u"x"_s}},
                                {{RowKey::When, u"3"_s}, {RowKey::Category, u"y"_s}},
                                {{RowKey::When, u"1"_s}, {RowKey::Category, u"x"_s}}}));
    }
    /// The titles as they stand on the screen.
    QStringList titles() const {
        QStringList shown;
        const CustHeaderView& header = events.view->header();
        for (int place = 0; place < header.count(); ++place) {
            shown << header.headerCell(header.logicalIndex(place)).title().mid(7);
        }
        return shown;
    }
    QStringList firstCells() {
        events.paint();
        QStringList cells;
        for (int row = 0; row < events.view->model()->rowCount(); ++row) {
            cells << events.cell(row, 0);
        }
        return cells;
    }
    /// The menu of a title, as a key opens it.
    static QMenu& openMenu() {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (menu == nullptr) {
            throw std::runtime_error("no menu");
        }
        return *menu;
    }
    QMenu& menuOfFocusedTitle() {
        QTest::keyClick(&events.view->header(), Qt::Key_F10, Qt::ShiftModifier);
        return openMenu();
    }
    static void choose(QMenu& menu, const QString& label) {
        for (QAction* action : menu.actions()) {
            if (action->text() == label) {
                menu.setActiveAction(action);
                QTest::keyClick(&menu, Qt::Key_Return);
                return;
            }
        }
        FAIL() << qPrintable(label);
    }
    const QStringList atFirst{u"When"_s, u"Category"_s, u"Event"_s, u"Details"_s};
    RememberedSelections selections;
    TableOnScreen<EventsTable> events{&EventsTable::setEventsTable, selections};
};

TEST_F(TableOrderTest, ATableThatNobodyArrangedHasNone) {
    EXPECT_EQ(orderOf(*events.view), TableOrder());
    EXPECT_EQ(titles(), atFirst);
}

TEST_F(TableOrderTest, AMovedColumnAndAllSortsAreTold) {
    events.view->header().moveSection(3, 0);
    events.clickTitle(0);
    events.clickTitle(1);
    events.clickTitle(1);
    EXPECT_EQ(orderOf(*events.view),
              (TableOrder{{u"COL4"_s, u"COL1"_s, u"COL2"_s, u"COL3"_s}, {u"-COL2"_s, u"COL1"_s}}));
}

TEST_F(TableOrderTest, IsTakenUpAgain) {
    const TableOrder order{{u"COL4"_s, u"COL2"_s, u"COL1"_s, u"COL3"_s}, {u"COL2"_s, u"-COL1"_s}};
    applyOrder(*events.view, order);
    EXPECT_EQ(titles(), (QStringList{u"Details"_s, u"Category"_s, u"When"_s, u"Event"_s}));
    EXPECT_EQ(firstCells(), (QStringList{u"2"_s, u"1"_s, u"3"_s}));
    EXPECT_EQ(events.view->header().headerCell(1).sortIndicator(), std::optional(true));
    EXPECT_EQ(orderOf(*events.view), order);
    events.load(listedRows({{{RowKey::When, u"9"_s}, {RowKey::Category, u"z"_s}},
                            {{RowKey::When, u"8"_s}, {RowKey::Category, u"a"_s}}}));
    EXPECT_EQ(firstCells(), (QStringList{u"8"_s, u"9"_s})) << "what is loaded later is sorted, too";
}

TEST_F(TableOrderTest, WhatDoesNotFitTheTableCountsAsNone) {
    for (const QStringList& columns :
         {QStringList{u"COL1"_s}, QStringList{u"COL1"_s, u"COL1"_s, u"COL2"_s, u"COL3"_s},
          QStringList{u"COL4"_s, u"COL3"_s, u"COL2"_s, u"COL9"_s},
          QStringList{u"COL5"_s, u"COL4"_s, u"COL3"_s, u"COL2"_s, u"COL1"_s}}) {
        applyOrder(*events.view, {columns, {}});
        EXPECT_EQ(titles(), atFirst) << qPrintable(columns.join(u' '));
    }
    for (const QStringList& sort :
         {QStringList{u"COL9"_s}, QStringList{u"-"_s}, QStringList{u"--COL1"_s},
          QStringList{u"COL1"_s, u"-COL1"_s}, QStringList{u"COL2"_s, u""_s}}) {
        applyOrder(*events.view, {{}, sort});
        EXPECT_TRUE(events.view->sortDescriptors().empty()) << qPrintable(sort.join(u' '));
    }
    applyOrder(*events.view, {{u"no"_s}, {u"COL1"_s}});
    EXPECT_EQ(firstCells(), (QStringList{u"1"_s, u"2"_s, u"3"_s}))
        << "one does not spoil the other";
}

TEST_F(TableOrderTest, TheMenuOfATitleMovesItByKeyboard) {
    QTest::keyClick(&events.view->header(), Qt::Key_Right);
    choose(menuOfFocusedTitle(), u"HPS_MoveColumnRight"_s);
    EXPECT_EQ(titles(), (QStringList{u"When"_s, u"Event"_s, u"Category"_s, u"Details"_s}));
    choose(menuOfFocusedTitle(), u"HPS_MoveColumnLeft"_s);
    EXPECT_EQ(titles(), atFirst);
    choose(menuOfFocusedTitle(), u"HPS_MoveColumnLeft"_s);
    EXPECT_FALSE(menuOfFocusedTitle().actions().at(0)->isEnabled()) << "it is the first";
    EXPECT_TRUE(openMenu().actions().at(1)->isEnabled());
    openMenu().close();
}

TEST_F(TableOrderTest, TheMenuMovesTheOtherWayFromRightToLeft) {
    events.view->setLayoutDirection(Qt::RightToLeft);
    choose(menuOfFocusedTitle(), u"HPS_MoveColumnLeft"_s);
    EXPECT_EQ(titles().constFirst(), u"Category"_s);
}

TEST_F(TableOrderTest, TheMenuOfATitleUnderTheMouseIsForThatTitle) {
    CustHeaderView& header = events.view->header();
    const QPoint place(header.sectionViewportPosition(2) + 5, 5);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, header.mapToGlobal(place));
    QApplication::sendEvent(header.viewport(), &event);
    choose(openMenu(), u"HPS_MoveColumnLeft"_s);
    EXPECT_EQ(titles(), (QStringList{u"When"_s, u"Event"_s, u"Category"_s, u"Details"_s}));
}

TEST_F(TableOrderTest, TheMenuResetsColumnsAndRows) {
    events.table.addData(listedRows({{{RowKey::When, u"5"_s}}, {{RowKey::When, u"0"_s}}}));
    events.table.updateView();
    events.view->header().moveSection(3, 0);
    events.clickTitle(0);
    EXPECT_EQ(firstCells().constFirst(), u"0"_s);
    choose(menuOfFocusedTitle(), u"HPS_ResetOrder"_s);
    EXPECT_EQ(titles(), atFirst);
    EXPECT_EQ(firstCells(), (QStringList{u"5"_s, u"0"_s, u"2"_s, u"3"_s, u"1"_s}))
        << "as they came, the newest batch first";
    EXPECT_EQ(orderOf(*events.view), TableOrder());
    EXPECT_EQ(events.view->header().headerCell(0).sortIndicator(), std::nullopt);
}

TEST_F(TableOrderTest, ArrowsGoThroughTheColumnsAsTheyStand) {
    events.view->header().moveSection(0, 2); // Category, Event, When, Details
    events.clickRow(0);
    events.view->setCurrentIndex(events.view->model()->index(0, 2));
    QTest::keyClick(events.view.get(), Qt::Key_Right);
    EXPECT_EQ(events.view->currentIndex().column(), 0);
    QTest::keyClick(events.view.get(), Qt::Key_Right);
    EXPECT_EQ(events.view->currentIndex().column(), 3);
    QTest::keyClick(&events.view->header(), Qt::Key_Right);
    EXPECT_TRUE(events.view->header().focusedTitle().endsWith(u"Details"_s));
}

TEST_F(TableOrderTest, CopyingKeepsItsOrderOfFields) {
    events.clickRow(0);
    events.pressCopy();
    const QString before = clipboard();
    events.view->header().moveSection(3, 0);
    setClipboard({});
    events.pressCopy();
    EXPECT_EQ(clipboard(), before);
}

} // namespace
} // namespace korvale
