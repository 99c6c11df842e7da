#include "tables/EventsTable.h"

namespace korvale {
namespace {

constexpr TableColumn columns[] = {
    {"COL1", "HPS_ColWhen", RowKey::When, RowKey::When, 24},
    {"COL2", "HPS_ColCategory", RowKey::Category, RowKey::Category, 14},
    {"COL3", "HPS_ColEvent", RowKey::Event, RowKey::Event, 28},
    {"COL4", "HPS_ColDetails", RowKey::Details, RowKey::Details, 50},
};

constexpr RowKey copyFields[] = {RowKey::When, RowKey::Category, RowKey::Event, RowKey::Details};

constexpr ExportField exportFields[] = {{"when", RowKey::When},
                                        {"category", RowKey::Category},
                                        {"event", RowKey::Event},
                                        {"details", RowKey::Details}};

constexpr TableDescription eventsDescription{
    .nameKey = "HPS_Events",
    .emptyKey = "HPS_EmptyEvents",
    .columns = columns,
    .copyHeader = u"\"When\",\"Category\",\"Event\",\"Details\"\n",
    .copyFields = copyFields,
    .copyPaths = std::nullopt,
    .exportName = "events",
    .exportFields = exportFields,
    .copyModifiers = CopyModifiers::CommandAlone,
    .explained = RowKey::Event,
    .hiddenFields = {},
    .selection = &RememberedSelections::selectedEventRows,
};

} // namespace

EventsTable::EventsTable(RememberedSelections& selections, QObject* parent)
    : ThreatsTableController(eventsDescription, selections, parent) {}

} // namespace korvale
