#pragma once

#include "model/Row.h"
#include "tables/RememberedSelections.h"

#include <QStringView>

#include <cstdint>
#include <optional>
#include <span>

namespace korvale {

/// One column as the window shows it.
struct TableColumn {
    const char* identifier; ///< compared exactly
    const char* titleKey;   ///< key of the title's text
    RowKey text;
    RowKey toolTip;
    int width; ///< in characters of average width; the last column takes the rest of the table
};

/// One member of an exported row.
struct ExportField {
    const char* name; ///< in every language the same
    RowKey key;       ///< ExactPaths makes a list of them
};

/// A value beyond those of the columns.
struct DetailField {
    const char* labelKey;
    RowKey text;
};

/// Which modifiers let "c" copy.
enum class CopyModifiers : std::uint8_t {
    CommandHeld,  ///< Command, whatever else is held
    CommandAlone, ///< Command and no other device-independent modifier
};

/// All facts of one table.
struct TableDescription {
    const char* nameKey;  ///< accessible name
    const char* emptyKey; ///< the quiet line of a table that is known to be empty
    std::span<const TableColumn> columns;
    QStringView copyHeader;             ///< first line of a copied text, with its line feed
    std::span<const RowKey> copyFields; ///< values of a copied line, in order
    std::optional<RowKey> copyPaths;    ///< one copied line per line of this value, which ends it
    const char* exportName;             ///< of a file that is offered, without its suffix
    std::span<const ExportField> exportFields;
    CopyModifiers copyModifiers;
    RowKey explained; ///< the column behind which the details say what the row's category means
    std::span<const DetailField> hiddenFields; ///< what no column shows and the details do
    std::optional<RowIndexes> RememberedSelections::*selection;
};

} // namespace korvale
