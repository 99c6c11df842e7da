#pragma once

#include "agent/store/Finding.h"
#include "agent/store/KeptFindings.h"
#include "agent/store/QuarantineRecord.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace korvale::agent {

class Database;

/// What must never be forgotten: findings, waives, quarantine records. SQLite in WAL mode; each
/// change is one transaction that is on the disk (synchronous FULL) when the call returns.
///
/// Any thread, one at a time by a lock inside; calls wait for the disk: never from a thread that
/// answers the kernel or the bus.
class Store {
public:
    /// Opens or makes the file `path`; its folder must exist. A damaged file is moved aside as
    /// "<path>.damaged-<time>" and a new one begun, which `notice()` tells. Null and a sentence in
    /// `error` when that does not work either.
    static std::unique_ptr<Store> open(const std::string& path, std::string& error);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    /// What a person should know of the opening; empty as a rule.
    [[nodiscard]] const std::string& notice() const { return m_notice; }

    /// Notes that `finding` was found (again): a known one (same id and path) keeps its number and
    /// first time and becomes Detected again, or Waived where its content is waived. Returns what
    /// now stands in the store. When the disk is full the finding is kept in memory (number below
    /// 0), is part of `findings()`, and is written by a later call or `writeKept()`.
    Finding add(const Finding& finding);
    /// False: no such finding, or it could not be written (`lastError()`).
    bool setState(std::int64_t number, FindingState state);
    [[nodiscard]] std::vector<Finding> findings() const; ///< oldest first, deleted ones too
    [[nodiscard]] std::optional<Finding> finding(std::int64_t number) const;
    /// Those whose id begins with `idPrefix` (lower-case hex digits).
    [[nodiscard]] std::vector<Finding> findingsLike(const std::string& idPrefix) const;
    /// Findings that wait in memory for room on the disk.
    [[nodiscard]] std::size_t kept() const;
    /// Tries to write them. How many still wait.
    std::size_t writeKept();
    /// Forgets findings that are Deleted and were last seen before `wallClock`; how many.
    std::size_t forgetDeleted(std::int64_t wallClock);

    /// A waive also makes all findings of that content that are Detected Waived, and its end makes
    /// them Detected again: in one transaction.
    bool waive(const Waive& waive);
    bool endWaive(const std::string& id);
    [[nodiscard]] bool isWaived(const std::string& id) const;
    [[nodiscard]] std::vector<Waive> waives() const;

    bool addRecord(const QuarantineRecord& record);
    /// Both in one transaction: the record's state, and that of the finding it belongs to.
    bool settleRecord(const std::string& id, QuarantineState state,
                      std::optional<FindingState> finding);
    bool forgetRecord(const std::string& id);
    [[nodiscard]] std::optional<QuarantineRecord> record(const std::string& id) const;
    [[nodiscard]] std::vector<QuarantineRecord> records() const; ///< oldest first

    /// Why the last call that returned false did; for the log.
    [[nodiscard]] std::string lastError() const;

private:
    explicit Store(std::unique_ptr<Database> database);
    bool succeeded(bool result); // notes the reason of a failure
    std::size_t writeKeptLocked();

    mutable std::mutex m_mutex;
    std::unique_ptr<Database> m_database;
    KeptFindings m_kept;
    std::string m_lastError;
    std::string m_notice;
};

} // namespace korvale::agent
