#include "tables/FileThreatsTable.h"

#include "tables/WindowLook.h"

#include <QStringTokenizer>

namespace korvale {
namespace {

constexpr int shownPaths = 3;

constexpr TableColumn columns[] = {
    {"COL1", "HPS_ColFile", RowKey::File, RowKey::FileToolTip, 40},
    {"COL2", "HPS_ColCategory", RowKey::Category, RowKey::CategoryToolTip, 16},
    {"COL3", "HPS_ColFound", RowKey::Found, RowKey::FoundToolTip, 12},
    {"COL4", "HPS_ColID", RowKey::Id, RowKey::IdToolTip, 40},
};

constexpr RowKey copyFields[] = {RowKey::File, RowKey::Category, RowKey::Score, RowKey::Found,
                                 RowKey::Id};

constexpr ExportField exportFields[] = {{"file", RowKey::File},   {"category", RowKey::Category},
                                        {"score", RowKey::Score}, {"found", RowKey::Found},
                                        {"id", RowKey::Id},       {"paths", RowKey::ExactPaths}};

constexpr DetailField hiddenFields[] = {{"HPS_ColScore", RowKey::Score}};

constexpr TableDescription fileThreatsDescription{
    .nameKey = "HPS_Threats",
    .emptyKey = "HPS_EmptyThreats",
    .columns = columns,
    .copyHeader = u"\"File\",\"Category\",\"Score\",\"Found\",\"ID\",\"Path\"\n",
    .copyFields = copyFields,
    .copyPaths = RowKey::FileToolTip,
    .exportName = "threats",
    .exportFields = exportFields,
    .copyModifiers = CopyModifiers::CommandHeld,
    .explained = RowKey::Category,
    .hiddenFields = hiddenFields,
    .selection = &RememberedSelections::selectedRows,
};

} // namespace

FileThreatsTable::FileThreatsTable(RememberedSelections& selections, QObject* parent)
    : ThreatsTableController(fileThreatsDescription, selections, parent) {}

std::optional<QString> FileThreatsTable::toolTip(const TableColumn& column, int row) const {
    if (column.text != RowKey::File) {
        return ThreatsTableController::toolTip(column, row);
    }
    // The category words are compared as they stand in English: a translated one gets no prefix.
    QString text = value(row, RowKey::Category) == QStringLiteral("Quarantined")
                       ? QStringLiteral("[Quarantined:]\n")
                       : QString();
    const QString paths = value(row, RowKey::FileToolTip).value_or(QString());
    int count = 0;
    for (const QStringView path : QStringTokenizer(paths, u'\n', Qt::SkipEmptyParts)) {
        text.append(path).append(u"\n\n");
        if (++count == shownPaths) {
            return text + QStringLiteral("..."); // also when there is no fourth
        }
    }
    return text;
}

QColor FileThreatsTable::textColor(const TableColumn& column, const QString& text) const {
    if (column.text == RowKey::Category && text == u"Unsafe") {
        return {look::alarmText};
    }
    if (column.text == RowKey::Category && text == u"Abnormal") {
        return {look::warningText};
    }
    return {look::cellText};
}

} // namespace korvale
