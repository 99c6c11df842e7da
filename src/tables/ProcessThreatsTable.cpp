#include "tables/ProcessThreatsTable.h"

#include "tables/WindowLook.h"

namespace korvale {
namespace {

constexpr int shownLines = 3;

constexpr TableColumn columns[] = {
    {"COL1", "HPS_ColProcess", RowKey::ProcessName, RowKey::ProcessToolTip, 56},
    {"COL2", "HPS_ColCategory", RowKey::Category, RowKey::CategoryToolTip, 20},
    {"COL3", "HPS_ColFound", RowKey::Found, RowKey::FoundToolTip, 14},
    {"COL4", "HPS_ColPID", RowKey::Pid, RowKey::PidToolTip, 14},
};

constexpr RowKey copyFields[] = {RowKey::ProcessName, RowKey::Category, RowKey::Found, RowKey::Pid};

constexpr ExportField exportFields[] = {{"process", RowKey::ProcessName},
                                        {"category", RowKey::Category},
                                        {"found", RowKey::Found},
                                        {"pid", RowKey::Pid},
                                        {"folder", RowKey::ProcessToolTip}};

constexpr TableDescription processThreatsDescription{
    .nameKey = "HPS_Exploits",
    .emptyKey = "HPS_EmptyExploits",
    .columns = columns,
    .copyHeader = u"\"Process Name\",\"Category\",\"Found\",\"PID\",\"Path\"\n",
    .copyFields = copyFields,
    .copyPaths = RowKey::ProcessToolTip,
    .exportName = "exploits",
    .exportFields = exportFields,
    .copyModifiers = CopyModifiers::CommandAlone,
    .explained = RowKey::Category,
    .hiddenFields = {},
    .selection = &RememberedSelections::selectedProcessRows,
};

} // namespace

ProcessThreatsTable::ProcessThreatsTable(RememberedSelections& selections, QObject* parent)
    : ThreatsTableController(processThreatsDescription, selections, parent) {}

std::optional<QString> ProcessThreatsTable::toolTip(const TableColumn& column, int row) const {
    std::optional<QString> text = ThreatsTableController::toolTip(column, row);
    if (column.text != RowKey::ProcessName || !text) {
        return text;
    }
    qsizetype end = -1;
    for (int line = 0; line < shownLines; ++line) {
        end = text->indexOf(u'\n', end + 1);
        if (end < 0) {
            return text; // three lines or fewer: as they are
        }
    }
    return text->left(end + 1) + QStringLiteral("...");
}

QColor ProcessThreatsTable::textColor(const TableColumn& column, const QString& text) const {
    // Compared as it stands in English: a translated word stays black.
    const bool alert = column.text == RowKey::Category && text == u"Alert";
    return {alert ? look::alarmText : look::cellText};
}

} // namespace korvale
