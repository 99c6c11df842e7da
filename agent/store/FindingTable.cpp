#include "agent/store/FindingTable.h"

#include "agent/store/Database.h"

namespace korvale::agent {
namespace {

constexpr std::string_view kSelect =
    "SELECT number, id, path, name, kind, state, first_seen, last_seen, owner, size FROM finding ";

Finding read(const Statement& row) {
    Finding finding;
    finding.number = row.integer(0);
    finding.id = row.bytes(1);
    finding.path = row.bytes(2);
    finding.virusName = row.bytes(3);
    finding.kind = static_cast<ThreatKind>(row.integer(4));
    finding.state = static_cast<FindingState>(row.integer(5));
    finding.firstSeen = row.integer(6);
    finding.lastSeen = row.integer(7);
    finding.owner = static_cast<std::uint32_t>(row.integer(8));
    finding.size = row.integer(9);
    return finding;
}

std::vector<Finding> readAll(Statement& rows) {
    std::vector<Finding> findings;
    while (rows.step() == Statement::Step::Row) {
        findings.push_back(read(rows));
    }
    return findings;
}

std::string select(std::string_view rest) {
    return std::string(kSelect) + std::string(rest);
}

} // namespace

std::optional<Finding> FindingTable::put(const Finding& finding) {
    Statement insert = m_database.prepare(
        "INSERT INTO finding(id, path, name, kind, state, first_seen, last_seen, owner, size) "
        "VALUES(?1, ?2, ?3, ?4, CASE WHEN EXISTS(SELECT 1 FROM waive WHERE id = ?1) THEN ?5 ELSE "
        "?6 END, ?7, ?8, ?9, ?10) ON CONFLICT(id, path) DO UPDATE SET name = excluded.name, "
        "kind = excluded.kind, state = excluded.state, last_seen = excluded.last_seen, "
        "owner = excluded.owner, size = excluded.size RETURNING number, first_seen, state");
    insert.bindText(1, finding.id).bindBytes(2, finding.path).bindText(3, finding.virusName);
    insert.bind(4, static_cast<int>(finding.kind));
    insert.bind(5, static_cast<int>(FindingState::Waived));
    insert.bind(6, static_cast<int>(FindingState::Detected));
    insert.bind(7, finding.firstSeen).bind(8, finding.lastSeen);
    insert.bind(9, finding.owner).bind(10, finding.size);
    if (insert.step() != Statement::Step::Row) {
        return std::nullopt;
    }
    Finding stored = finding;
    stored.number = insert.integer(0);
    stored.firstSeen = insert.integer(1);
    stored.state = static_cast<FindingState>(insert.integer(2));
    // The row is shown before the transaction ends: only the end says that it is on the disk.
    return insert.step() == Statement::Step::Done ? std::optional(stored) : std::nullopt;
}

bool FindingTable::setState(std::int64_t number, FindingState state) {
    Statement update = m_database.prepare("UPDATE finding SET state = ?1 WHERE number = ?2");
    return update.bind(1, static_cast<int>(state)).bind(2, number).run() &&
           m_database.changes() == 1;
}

bool FindingTable::moveAll(const std::string& id, FindingState from, FindingState to) {
    Statement update =
        m_database.prepare("UPDATE finding SET state = ?1 WHERE id = ?2 AND state = ?3");
    update.bind(1, static_cast<int>(to)).bindText(2, id).bind(3, static_cast<int>(from));
    return update.run();
}

std::optional<Finding> FindingTable::find(std::int64_t number) {
    const std::string sql = select("WHERE number = ?1");
    Statement row = m_database.prepare(sql);
    if (row.bind(1, number).step() != Statement::Step::Row) {
        return std::nullopt;
    }
    return read(row);
}

std::vector<Finding> FindingTable::all() {
    const std::string sql = select("ORDER BY number");
    Statement rows = m_database.prepare(sql);
    return readAll(rows);
}

std::vector<Finding> FindingTable::like(const std::string& idPrefix) {
    const std::string sql = select("WHERE substr(id, 1, length(?1)) = ?1 ORDER BY number");
    Statement rows = m_database.prepare(sql);
    rows.bindText(1, idPrefix);
    return readAll(rows);
}

std::size_t FindingTable::forgetDeleted(std::int64_t before) {
    Statement remove =
        m_database.prepare("DELETE FROM finding WHERE state = ?1 AND last_seen < ?2");
    remove.bind(1, static_cast<int>(FindingState::Deleted)).bind(2, before);
    return remove.run() ? static_cast<std::size_t>(m_database.changes()) : 0;
}

} // namespace korvale::agent
