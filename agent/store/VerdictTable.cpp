#include "agent/store/VerdictTable.h"

#include "agent/store/Database.h"
#include "agent/store/VerdictCache.h"

#include <algorithm>
#include <bit>
#include <utility>
#include <vector>

namespace korvale::agent {
namespace {

// One transaction: large enough that the disk is no matter, small enough that memory is none.
constexpr std::size_t kMostWaiting = 20'000;

std::int64_t stored(std::uint64_t number) {
    return std::bit_cast<std::int64_t>(number);
}

} // namespace

VerdictTable::VerdictTable(std::unique_ptr<Database> database)
    : m_database(std::move(database)),
      m_find(std::make_unique<Statement>(m_database->prepare(
          "SELECT ctime, size, signature, verdict FROM verdict WHERE file_system = ?1 AND "
          "inode = ?2"))),
      m_insert(std::make_unique<Statement>(m_database->prepare(
          "INSERT OR REPLACE INTO verdict(file_system, inode, ctime, size, signature, verdict) "
          "VALUES(?1, ?2, ?3, ?4, ?5, ?6)"))) {}

VerdictTable::~VerdictTable() = default;

void VerdictTable::setSignatureKey(const std::string& key) {
    if (key == m_key) {
        return;
    }
    flush();
    m_key = key;
    m_signature = 0;
    if (key.empty()) {
        return;
    }
    m_database->prepare("INSERT OR IGNORE INTO signature(key) VALUES(?1)").bindText(1, key).run();
    m_signature = numberOf(key);
}

std::int64_t VerdictTable::numberOf(const std::string& key) {
    Statement number = m_database->prepare("SELECT number FROM signature WHERE key = ?1");
    return number.bindText(1, key).step() == Statement::Step::Row ? number.integer(0) : 0;
}

std::optional<KnownVerdict> VerdictTable::find(const FileIdentity& file) {
    if (m_signature == 0) {
        return std::nullopt;
    }
    if (const auto waiting = m_waiting.find({file.fileSystem, file.inode});
        waiting != m_waiting.end()) {
        const Waiting& known = waiting->second;
        return known.ctimeNs == file.ctimeNs && known.size == file.size
                   ? std::optional(known.verdict)
                   : std::nullopt;
    }
    return written(file, m_signature);
}

std::optional<KnownVerdict> VerdictTable::find(const FileIdentity& file, const std::string& key) {
    if (key == m_key) {
        return find(file);
    }
    const std::int64_t signature = key.empty() ? 0 : numberOf(key);
    return signature == 0 ? std::nullopt : written(file, signature);
}

std::optional<KnownVerdict> VerdictTable::written(const FileIdentity& file,
                                                  std::int64_t signature) {
    m_find->bind(1, stored(file.fileSystem)).bind(2, stored(file.inode));
    std::optional<KnownVerdict> verdict;
    if (m_find->step() == Statement::Step::Row && m_find->integer(0) == file.ctimeNs &&
        m_find->integer(1) == file.size && m_find->integer(2) == signature) {
        const std::int64_t value = m_find->integer(3);
        if (value >= 0 && value <= static_cast<int>(KnownVerdict::Unsafe)) {
            verdict = static_cast<KnownVerdict>(value);
        }
    }
    m_find->reset();
    return verdict;
}

void VerdictTable::put(const FileIdentity& file, KnownVerdict verdict) {
    if (m_signature == 0) {
        return;
    }
    m_waiting.insert_or_assign({file.fileSystem, file.inode},
                               Waiting{file.ctimeNs, file.size, verdict});
    if (m_waiting.size() >= kMostWaiting) {
        flush();
    }
}

void VerdictTable::remove(const FileIdentity& file) {
    m_waiting.erase({file.fileSystem, file.inode});
    m_database->prepare("DELETE FROM verdict WHERE file_system = ?1 AND inode = ?2")
        .bind(1, stored(file.fileSystem))
        .bind(2, stored(file.inode))
        .run();
}

bool VerdictTable::write(const Key& key, const Waiting& waiting) {
    m_insert->bind(1, stored(key.fileSystem)).bind(2, stored(key.inode));
    m_insert->bind(3, waiting.ctimeNs).bind(4, waiting.size).bind(5, m_signature);
    return m_insert->bind(6, static_cast<int>(waiting.verdict)).run();
}

bool VerdictTable::flush() {
    if (m_waiting.empty()) {
        return true;
    }
    // In the order of the table, so that neighbours are written together.
    std::vector<std::pair<Key, Waiting>> rows(m_waiting.begin(), m_waiting.end());
    std::sort(rows.begin(), rows.end(), [](const auto& left, const auto& right) {
        return std::pair(left.first.fileSystem, left.first.inode) <
               std::pair(right.first.fileSystem, right.first.inode);
    });
    m_waiting.clear();
    Transaction transaction(*m_database);
    bool written = true;
    for (const auto& [key, waiting] : rows) {
        written = written && write(key, waiting);
    }
    return written && transaction.commit();
}

std::size_t VerdictTable::size() {
    Statement count = m_database->prepare("SELECT count(*) FROM verdict");
    const bool counted = count.step() == Statement::Step::Row;
    return m_waiting.size() + (counted ? static_cast<std::size_t>(count.integer(0)) : 0);
}

void VerdictTable::removeOtherSignatures() {
    Transaction transaction(*m_database);
    m_database->prepare("DELETE FROM verdict WHERE signature <> ?1").bind(1, m_signature).run();
    m_database->prepare("DELETE FROM signature WHERE number <> ?1").bind(1, m_signature).run();
    transaction.commit();
}

void VerdictTable::removeAll() {
    m_waiting.clear();
    m_database->run("DELETE FROM verdict");
}

} // namespace korvale::agent
