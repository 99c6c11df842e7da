#include "agent/store/QuarantineTable.h"

#include "agent/store/AttributeBytes.h"
#include "agent/store/Database.h"

#include <bit>

namespace korvale::agent {
namespace {

constexpr std::string_view kSelect =
    "SELECT id, finding, path, sha256, file_system, inode, size, ctime, mtime, mode, owner, grp, "
    "accessed, modified, flags, attributes, other_names, since, state FROM quarantine ";

// Columns of kSelect.
enum Column : int {
    Id,
    FindingNumber,
    Path,
    Sha256,
    FileSystem,
    Inode,
    Size,
    Changed,
    Modified,
    Mode,
    Owner,
    Group,
    AccessedBefore,
    ModifiedBefore,
    Flags,
    Attributes,
    OtherNames,
    Since,
    State,
};

std::uint32_t narrow(std::int64_t value) {
    return static_cast<std::uint32_t>(value);
}

QuarantineRecord read(const Statement& row) {
    QuarantineRecord record;
    record.id = row.bytes(Id);
    record.finding = row.integer(FindingNumber);
    record.path = row.bytes(Path);
    record.sha256 = row.bytes(Sha256);
    record.judged = {std::bit_cast<std::uint64_t>(row.integer(FileSystem)),
                     std::bit_cast<std::uint64_t>(row.integer(Inode)), row.integer(Size),
                     row.integer(Changed), row.integer(Modified)};
    record.mode = narrow(row.integer(Mode));
    record.owner = narrow(row.integer(Owner));
    record.group = narrow(row.integer(Group));
    record.accessedNs = row.integer(AccessedBefore);
    record.modifiedNs = row.integer(ModifiedBefore);
    record.inodeFlags = narrow(row.integer(Flags));
    record.attributes = unpackAttributes(row.bytes(Attributes));
    record.otherNames = narrow(row.integer(OtherNames));
    record.since = row.integer(Since);
    record.state = static_cast<QuarantineState>(row.integer(State));
    return record;
}

} // namespace

bool QuarantineTable::add(const QuarantineRecord& record) {
    Statement insert = m_database.prepare(
        "INSERT INTO quarantine(id, finding, path, sha256, file_system, inode, size, ctime, mtime, "
        "mode, owner, grp, accessed, modified, flags, attributes, other_names, since, state) "
        "VALUES(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, ?14, ?15, ?16, ?17, ?18, "
        "?19)");
    const auto at = [](Column column) { return column + 1; };
    insert.bindText(at(Id), record.id).bind(at(FindingNumber), record.finding);
    insert.bindBytes(at(Path), record.path).bindText(at(Sha256), record.sha256);
    insert.bind(at(FileSystem), std::bit_cast<std::int64_t>(record.judged.fileSystem));
    insert.bind(at(Inode), std::bit_cast<std::int64_t>(record.judged.inode));
    insert.bind(at(Size), record.judged.size).bind(at(Changed), record.judged.ctimeNs);
    insert.bind(at(Modified), record.judged.mtimeNs).bind(at(Mode), record.mode);
    insert.bind(at(Owner), record.owner).bind(at(Group), record.group);
    insert.bind(at(AccessedBefore), record.accessedNs).bind(at(ModifiedBefore), record.modifiedNs);
    insert.bind(at(Flags), record.inodeFlags);
    insert.bindBytes(at(Attributes), packAttributes(record.attributes));
    insert.bind(at(OtherNames), record.otherNames).bind(at(Since), record.since);
    return insert.bind(at(State), static_cast<int>(record.state)).run();
}

bool QuarantineTable::setState(const std::string& id, QuarantineState state) {
    Statement update = m_database.prepare("UPDATE quarantine SET state = ?1 WHERE id = ?2");
    return update.bind(1, static_cast<int>(state)).bindText(2, id).run() &&
           m_database.changes() == 1;
}

bool QuarantineTable::remove(const std::string& id) {
    Statement remove = m_database.prepare("DELETE FROM quarantine WHERE id = ?1");
    return remove.bindText(1, id).run();
}

std::optional<QuarantineRecord> QuarantineTable::find(const std::string& id) {
    Statement row = m_database.prepare(std::string(kSelect) + "WHERE id = ?1");
    if (row.bindText(1, id).step() != Statement::Step::Row) {
        return std::nullopt;
    }
    return read(row);
}

std::vector<QuarantineRecord> QuarantineTable::all() {
    Statement rows = m_database.prepare(std::string(kSelect) + "ORDER BY number");
    std::vector<QuarantineRecord> records;
    while (rows.step() == Statement::Step::Row) {
        records.push_back(read(rows));
    }
    return records;
}

} // namespace korvale::agent
