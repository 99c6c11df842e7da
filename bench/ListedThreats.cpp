#include "ListedThreats.h"

#include "Batch.h"
#include "ListGenerator.h"
#include "model/JsonValue.h"

namespace korvale::bench {

RowBatchPtr listedThreats(std::size_t records) {
    const std::string list = fileStateList({.records = records, .pathsPerRow = 1});
    AppState state;
    HeldRows table;
    NoNotifications notifications;
    FileStateChanges changes(state, table, notifications);
    changes.parseFileStateChanges(
        JsonValue::parse(QByteArray(list.data(), static_cast<qsizetype>(list.size()))));
    return table.rows;
}

} // namespace korvale::bench
