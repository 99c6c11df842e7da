#include "agent/store/Store.h"

#include "agent/store/Database.h"
#include "agent/store/FindingTable.h"
#include "agent/store/QuarantineTable.h"
#include "agent/store/Schema.h"
#include "agent/store/WaiveTable.h"

#include <cstdio>
#include <ctime>
#include <unistd.h>

namespace korvale::agent {
namespace {

Database::Opening openDatabase(const std::string& path, std::unique_ptr<Database>& database,
                               std::string& error) {
    return Database::open(path, Database::Synchronous::Full, kStoreSchema, kStoreVersion, database,
                          error);
}

/// The new name, or nothing when it could not be moved.
std::string moveAside(const std::string& path) {
    std::string aside = path + ".damaged-" + std::to_string(std::time(nullptr));
    if (std::rename(path.c_str(), aside.c_str()) != 0) {
        return {};
    }
    // They belong to the damaged file; a new one must not be taken for theirs.
    std::rename((path + "-wal").c_str(), (aside + "-wal").c_str());
    ::unlink((path + "-shm").c_str());
    return aside;
}

} // namespace

std::unique_ptr<Store> Store::open(const std::string& path, std::string& error) {
    std::unique_ptr<Database> database;
    std::string notice;
    Database::Opening opening = openDatabase(path, database, error);
    if (opening == Database::Opening::Damaged) {
        const std::string aside = moveAside(path);
        if (!aside.empty()) {
            notice = "The list of findings was damaged and begun anew; the old one is " + aside;
            opening = openDatabase(path, database, error);
        }
    }
    if (opening != Database::Opening::Opened) {
        return nullptr;
    }
    std::unique_ptr<Store> store(new Store(std::move(database)));
    store->m_notice = notice;
    return store;
}

Store::Store(std::unique_ptr<Database> database) : m_database(std::move(database)) {}

Store::~Store() = default;

bool Store::succeeded(bool result) {
    if (!result) {
        m_lastError = m_database->error();
    }
    return result;
}

Finding Store::add(const Finding& finding) {
    const std::lock_guard lock(m_mutex);
    writeKeptLocked();
    if (const auto stored = FindingTable(*m_database).put(finding)) {
        return *stored;
    }
    succeeded(false);
    Finding waiting = finding;
    waiting.state = WaiveTable(*m_database).contains(finding.id) ? FindingState::Waived
                                                                 : FindingState::Detected;
    return m_kept.put(waiting);
}

std::size_t Store::writeKept() {
    const std::lock_guard lock(m_mutex);
    return writeKeptLocked();
}

std::size_t Store::writeKeptLocked() {
    FindingTable table(*m_database);
    while (m_kept.size() > 0) {
        const Finding waiting = m_kept.all().front();
        Transaction transaction(*m_database);
        const auto stored = table.put(waiting);
        if (!stored || !table.setState(stored->number, waiting.state) || !transaction.commit()) {
            succeeded(false);
            break;
        }
        m_kept.removeFirst();
    }
    return m_kept.size();
}

std::size_t Store::kept() const {
    const std::lock_guard lock(m_mutex);
    return m_kept.size();
}

bool Store::setState(std::int64_t number, FindingState state) {
    const std::lock_guard lock(m_mutex);
    return number < 0 ? m_kept.setState(number, state)
                      : succeeded(FindingTable(*m_database).setState(number, state));
}

std::vector<Finding> Store::findings() const {
    const std::lock_guard lock(m_mutex);
    std::vector<Finding> findings = FindingTable(*m_database).all();
    findings.insert(findings.end(), m_kept.all().begin(), m_kept.all().end());
    return findings;
}

std::optional<Finding> Store::finding(std::int64_t number) const {
    const std::lock_guard lock(m_mutex);
    if (number >= 0) {
        return FindingTable(*m_database).find(number);
    }
    const Finding* const waiting = m_kept.find(number);
    return waiting == nullptr ? std::nullopt : std::optional(*waiting);
}

std::vector<Finding> Store::findingsLike(const std::string& idPrefix) const {
    const std::lock_guard lock(m_mutex);
    std::vector<Finding> findings = FindingTable(*m_database).like(idPrefix);
    for (const Finding& waiting : m_kept.all()) {
        if (waiting.id.starts_with(idPrefix)) {
            findings.push_back(waiting);
        }
    }
    return findings;
}

std::size_t Store::forgetDeleted(std::int64_t wallClock) {
    const std::lock_guard lock(m_mutex);
    return FindingTable(*m_database).forgetDeleted(wallClock);
}

bool Store::waive(const Waive& waive) {
    const std::lock_guard lock(m_mutex);
    Transaction transaction(*m_database);
    const bool done =
        WaiveTable(*m_database).put(waive) &&
        FindingTable(*m_database).moveAll(waive.id, FindingState::Detected, FindingState::Waived) &&
        transaction.commit();
    if (done) {
        m_kept.moveAll(waive.id, FindingState::Detected, FindingState::Waived);
    }
    return succeeded(done);
}

bool Store::endWaive(const std::string& id) {
    const std::lock_guard lock(m_mutex);
    Transaction transaction(*m_database);
    const bool done =
        WaiveTable(*m_database).remove(id) &&
        FindingTable(*m_database).moveAll(id, FindingState::Waived, FindingState::Detected) &&
        transaction.commit();
    if (done) {
        m_kept.moveAll(id, FindingState::Waived, FindingState::Detected);
    }
    return succeeded(done);
}

bool Store::isWaived(const std::string& id) const {
    const std::lock_guard lock(m_mutex);
    return WaiveTable(*m_database).contains(id);
}

std::vector<Waive> Store::waives() const {
    const std::lock_guard lock(m_mutex);
    return WaiveTable(*m_database).all();
}

bool Store::addRecord(const QuarantineRecord& record) {
    const std::lock_guard lock(m_mutex);
    return succeeded(QuarantineTable(*m_database).add(record));
}

bool Store::settleRecord(const std::string& id, QuarantineState state,
                         std::optional<FindingState> finding) {
    const std::lock_guard lock(m_mutex);
    QuarantineTable records(*m_database);
    const auto record = records.find(id);
    if (!record) {
        m_lastError = "there is no record " + id;
        return false;
    }
    Transaction transaction(*m_database);
    bool done = records.setState(id, state);
    if (finding) {
        // A finding that was forgotten meanwhile is no reason to forget where its file is.
        FindingTable(*m_database).setState(record->finding, *finding);
    }
    done = done && transaction.commit();
    return succeeded(done);
}

bool Store::forgetRecord(const std::string& id) {
    const std::lock_guard lock(m_mutex);
    return succeeded(QuarantineTable(*m_database).remove(id));
}

std::optional<QuarantineRecord> Store::record(const std::string& id) const {
    const std::lock_guard lock(m_mutex);
    return QuarantineTable(*m_database).find(id);
}

std::vector<QuarantineRecord> Store::records() const {
    const std::lock_guard lock(m_mutex);
    return QuarantineTable(*m_database).all();
}

std::string Store::lastError() const {
    const std::lock_guard lock(m_mutex);
    return m_lastError;
}

} // namespace korvale::agent
