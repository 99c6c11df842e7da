#pragma once

#include "agent/store/Statement.h"

#include <memory>
#include <string>
#include <string_view>

namespace korvale::agent {

/// One SQLite file in WAL mode. Used by one thread at a time.
class Database {
public:
    enum class Synchronous {
        Normal, ///< a power loss may undo the last transactions
        Full,   ///< a transaction is on the disk when it is committed
    };
    enum class Opening { Opened, Damaged, Failed };

    /// Opens or makes the file, mode 0600; with Full it is checked. `schema` is run when `version`
    /// is newer than the file's; it must not fail on tables that exist.
    static Opening open(const std::string& path, Synchronous synchronous, std::string_view schema,
                        int version, std::unique_ptr<Database>& database, std::string& error);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    [[nodiscard]] Statement prepare(std::string_view sql) { return {m_handle, sql}; }
    bool run(const char* sql);
    [[nodiscard]] std::int64_t lastRow() const;
    [[nodiscard]] int changes() const; ///< rows the last statement changed
    [[nodiscard]] std::string error() const;
    /// Whether the last failure was for want of room.
    [[nodiscard]] bool full() const;

private:
    explicit Database(sqlite3* handle) : m_handle(handle) {}
    Opening prepareFile(Synchronous synchronous, std::string_view schema, int version);
    [[nodiscard]] Opening judge() const;

    sqlite3* m_handle;
};

/// A transaction that is taken back unless it is committed.
class Transaction {
public:
    explicit Transaction(Database& database);
    ~Transaction();
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    bool commit();

private:
    Database& m_database;
    bool m_open;
};

} // namespace korvale::agent
