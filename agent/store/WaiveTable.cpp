#include "agent/store/WaiveTable.h"

#include "agent/store/Database.h"

namespace korvale::agent {

bool WaiveTable::put(const Waive& waive) {
    Statement insert = m_database.prepare(
        "INSERT OR REPLACE INTO waive(id, since, by, reason) VALUES(?1, ?2, ?3, ?4)");
    insert.bindText(1, waive.id).bind(2, waive.since).bind(3, waive.by);
    return insert.bindText(4, waive.reason).run();
}

bool WaiveTable::remove(const std::string& id) {
    Statement remove = m_database.prepare("DELETE FROM waive WHERE id = ?1");
    return remove.bindText(1, id).run();
}

bool WaiveTable::contains(const std::string& id) {
    Statement row = m_database.prepare("SELECT 1 FROM waive WHERE id = ?1");
    return row.bindText(1, id).step() == Statement::Step::Row;
}

std::vector<Waive> WaiveTable::all() {
    Statement rows =
        m_database.prepare("SELECT id, since, by, reason FROM waive ORDER BY since, id");
    std::vector<Waive> waives;
    while (rows.step() == Statement::Step::Row) {
        waives.push_back({rows.bytes(0), rows.integer(1),
                          static_cast<std::uint32_t>(rows.integer(2)), rows.bytes(3)});
    }
    return waives;
}

} // namespace korvale::agent
