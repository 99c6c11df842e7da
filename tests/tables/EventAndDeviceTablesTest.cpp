#include "tables/EventsTable.h"
#include "tables/ExternalDevicesTable.h"
#include "tables/TableOnScreen.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

constexpr auto eventHeader = u"\"When\",\"Category\",\"Event\",\"Details\"\n";
constexpr auto deviceHeader =
    u"\"Device Type\",\"Product ID\",\"Vendor ID\",\"Serial Number\",\"When\",\"Action\"\n";

struct EventAndDeviceTablesTest : testing::Test {
    RememberedSelections selections;
    TableOnScreen<EventsTable> events{&EventsTable::setEventsTable, selections};
    TableOnScreen<ExternalDevicesTable> devices{&ExternalDevicesTable::setExternalDevicesTable,
                                                selections};

    void showBoth(std::size_t eventCount, std::size_t deviceCount) {
        events.show();
        devices.show();
        events.load(numberedRows(eventCount, u"e"_s));
        devices.load(numberedRows(deviceCount, u"d"_s));
    }
};

FakeRow device(const QString& name) {
    return {{RowKey::DeviceType, name + u"type"_s},   {RowKey::VendorId, name + u"vendor"_s},
            {RowKey::ProductId, name + u"product"_s}, {RowKey::SerialNumber, name + u"serial"_s},
            {RowKey::When, name + u"when"_s},         {RowKey::Action, name + u"action"_s}};
}

TEST_F(EventAndDeviceTablesTest, EventCellsShowTheSameTextAndToolTip) {
    events.show();
    events.load(listedRows({{{RowKey::When, u"w"_s},
                             {RowKey::Category, u"Unsafe"_s},
                             {RowKey::Event, u"e"_s},
                             {RowKey::Details, u"d"_s}}}));
    const QString texts[] = {u"w"_s, u"Unsafe"_s, u"e"_s, u"d"_s};
    for (int column = 0; column < 4; ++column) {
        const CellView* cell = events.view->visibleCell(0, column);
        EXPECT_EQ(cell->text(), texts[column]) << column;
        EXPECT_EQ(cell->toolTip(), texts[column]) << column;
        EXPECT_EQ(cell->textColor(), QColor(Qt::black)) << column;
    }
}

TEST_F(EventAndDeviceTablesTest, DeviceCellsShowVendorBeforeProduct) {
    devices.show();
    devices.load(listedRows({device(u""_s)}));
    const QString texts[] = {u"type"_s,   u"vendor"_s, u"product"_s,
                             u"serial"_s, u"when"_s,   u"action"_s};
    for (int column = 0; column < 6; ++column) {
        EXPECT_EQ(devices.cell(0, column), texts[column]) << column;
        EXPECT_EQ(devices.view->visibleCell(0, column)->toolTip(), texts[column]) << column;
    }
}

TEST_F(EventAndDeviceTablesTest, EachSelectedEventCopiesAsALine) {
    showBoth(5, 0);
    events.clickRow(3);
    events.clickRow(1, Qt::ControlModifier);
    events.pressCopy();
    EXPECT_EQ(clipboard(), QString::fromUtf16(eventHeader) + u"e1,e1,e1,e1\ne3,e3,e3,e3\n"_s);
}

TEST_F(EventAndDeviceTablesTest, DevicesCopyProductBeforeVendorAndMissingValuesAsNull) {
    devices.show();
    FakeRow second = device(u"2"_s);
    second.erase(RowKey::Action);
    devices.load(listedRows({device(u"1"_s), second}));
    devices.clickRow(0);
    devices.clickRow(1, Qt::ShiftModifier);
    devices.pressCopy();
    EXPECT_EQ(clipboard(), QString::fromUtf16(deviceHeader) +
                               u"1type,1product,1vendor,1serial,1when,1action\n"_s
                               u"2type,2product,2vendor,2serial,2when,(null)\n"_s);
}

TEST_F(EventAndDeviceTablesTest, CommandWithAnyOtherModifierDoesNotCopy) {
    showBoth(3, 3);
    events.clickRow(0);
    setClipboard(u"before"_s);
    for (const Qt::KeyboardModifier more : {Qt::ShiftModifier, Qt::AltModifier, Qt::MetaModifier}) {
        events.pressCopy(more);
        devices.pressCopy(more);
    }
    EXPECT_EQ(clipboard(), u"before"_s);
}

TEST_F(EventAndDeviceTablesTest, TheEventsTableCopiesThePositionsSelectedAmongTheDevices) {
    showBoth(5, 5);
    events.clickRow(0);
    devices.clickRow(2);
    events.pressCopy();
    EXPECT_EQ(clipboard(), QString::fromUtf16(eventHeader) + u"e2,e2,e2,e2\n"_s);
}

TEST_F(EventAndDeviceTablesTest, ADevicePositionBeyondTheEventsAbandonsTheirCopy) {
    showBoth(2, 5);
    devices.clickRow(4);
    setClipboard(u"before"_s);
    events.pressCopy();
    EXPECT_EQ(clipboard(), u"before"_s);
}

TEST_F(EventAndDeviceTablesTest, RowSevenOfTheEventsIsRowSevenOfTheDevicesToTheCopyKey) {
    showBoth(10, 10);
    events.clickRow(7);
    devices.pressCopy();
    EXPECT_EQ(clipboard(), QString::fromUtf16(deviceHeader) + u"d7,d7,d7,d7,d7,d7\n"_s);
}

TEST_F(EventAndDeviceTablesTest, WithFewerThanEightDevicesThatCopyIsAbandoned) {
    showBoth(10, 7);
    events.clickRow(7);
    setClipboard(u"before"_s);
    devices.pressCopy();
    EXPECT_EQ(clipboard(), u"before"_s);
}

TEST_F(EventAndDeviceTablesTest, ADeviceWithoutSerialNumberKeepsTheRecycledCellsText) {
    devices.show();
    FakeRow first = device(u"1"_s);
    devices.load(listedRows({first}));
    // At the reload the last cell put back, the action's, is taken first and so on backwards: COL4
    // gets the third cell.
    FakeRow second = device(u"2"_s);
    second.erase(RowKey::SerialNumber);
    devices.load(listedRows({second}));
    EXPECT_EQ(devices.cell(0, 3), u"1product"_s);
    EXPECT_EQ(devices.view->visibleCell(0, 3)->toolTip(), u"1product"_s);
    EXPECT_EQ(devices.cell(0, 2), u"2product"_s);
}

TEST_F(EventAndDeviceTablesTest, ADeviceWithoutSerialNumberInANewCellShowsNothing) {
    devices.show();
    FakeRow row = device(u"1"_s);
    row.erase(RowKey::SerialNumber);
    devices.load(listedRows({row}));
    EXPECT_EQ(devices.cell(0, 3), QString());
}

TEST_F(EventAndDeviceTablesTest, ARecycledCellStillGetsItsRowsStripe) {
    devices.show();
    devices.load(listedRows({device(u"1"_s), {}}));
    devices.load(listedRows({device(u"1"_s), {}}));
    EXPECT_EQ(devices.view->visibleCell(1, 3)->backgroundColor(),
              QColor::fromRgbF(0.5F, 0.5F, 0.5F, 0.1F));
}

TEST_F(EventAndDeviceTablesTest, EveryOtherTableClearsARecycledCell) {
    events.show();
    events.load(numberedRows(1, u"old"_s));
    events.load(listedRows({FakeRow{}}));
    for (int column = 0; column < 4; ++column) {
        EXPECT_EQ(events.cell(0, column), QString()) << column;
        EXPECT_EQ(events.view->visibleCell(0, column)->toolTip(), QString()) << column;
    }
}

} // namespace
} // namespace korvale
