#include "tables/ExternalDevicesTable.h"

namespace korvale {
namespace {

constexpr TableColumn columns[] = {
    {"COL1", "HPS_ColDeviceType", RowKey::DeviceType, RowKey::DeviceType, 26},
    {"COL2", "HPS_ColVendorID", RowKey::VendorId, RowKey::VendorId, 14},
    {"COL3", "HPS_ColProductID", RowKey::ProductId, RowKey::ProductId, 14},
    {"COL4", "HPS_ColSerialNumber", RowKey::SerialNumber, RowKey::SerialNumber, 26},
    {"COL5", "HPS_ColWhen", RowKey::When, RowKey::When, 24},
    {"COL6", "HPS_ColAction", RowKey::Action, RowKey::Action, 14},
};

// Unlike the columns, the product comes before the vendor.
constexpr RowKey copyFields[] = {RowKey::DeviceType,   RowKey::ProductId, RowKey::VendorId,
                                 RowKey::SerialNumber, RowKey::When,      RowKey::Action};

constexpr ExportField exportFields[] = {{"device_type", RowKey::DeviceType},
                                        {"vendor_id", RowKey::VendorId},
                                        {"product_id", RowKey::ProductId},
                                        {"serial_number", RowKey::SerialNumber},
                                        {"when", RowKey::When},
                                        {"action", RowKey::Action}};

constexpr TableDescription externalDevicesDescription{
    .nameKey = "HPS_ExternalDevices",
    .emptyKey = "HPS_EmptyDevices",
    .columns = columns,
    .copyHeader = u"\"Device Type\",\"Product ID\",\"Vendor ID\",\"Serial Number\",\"When\","
                  u"\"Action\"\n",
    .copyFields = copyFields,
    .copyPaths = std::nullopt,
    .exportName = "external-devices",
    .exportFields = exportFields,
    .copyModifiers = CopyModifiers::CommandAlone,
    .explained = RowKey::Action,
    .hiddenFields = {},
    .selection = &RememberedSelections::selectedEventRows,
};

} // namespace

ExternalDevicesTable::ExternalDevicesTable(RememberedSelections& selections, QObject* parent)
    : ThreatsTableController(externalDevicesDescription, selections, parent) {}

void ExternalDevicesTable::fillCell(CellView& cell, const TableColumn* column, int row) const {
    // This table leaves a cell as it is where there is nothing to show: one that was used before
    // keeps its old text and tooltip.
    if (column != nullptr && value(row, column->text)) {
        ThreatsTableController::fillCell(cell, column, row);
    }
}

} // namespace korvale
