#include "agent/store/Database.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

// Another process (a person with the sqlite3 tool) may hold the lock for a moment.
constexpr int kBusyMilliseconds = 5000;

} // namespace

Database::Opening Database::open(const std::string& path, Synchronous synchronous,
                                 std::string_view schema, int version,
                                 std::unique_ptr<Database>& database, std::string& error) {
    // Made here, since SQLite would make it readable for all.
    const int file = ::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file >= 0) {
        ::close(file);
    }
    sqlite3* handle = nullptr;
    const int opened = sqlite3_open_v2(path.c_str(), &handle,
                                       SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE |
                                           SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_NOFOLLOW,
                                       nullptr);
    std::unique_ptr<Database> made(new Database(handle));
    Opening result = Opening::Failed;
    if (opened == SQLITE_OK) {
        sqlite3_busy_timeout(handle, kBusyMilliseconds);
        result = made->prepareFile(synchronous, schema, version);
    }
    if (result == Opening::Opened) {
        database = std::move(made);
    } else {
        error = path + ": " + made->error();
    }
    return result;
}

Database::Opening Database::prepareFile(Synchronous synchronous, std::string_view schema,
                                        int version) {
    const bool set = run("PRAGMA journal_mode=WAL") &&
                     run(synchronous == Synchronous::Full ? "PRAGMA synchronous=FULL"
                                                          : "PRAGMA synchronous=NORMAL") &&
                     run("PRAGMA cache_size=-4096");
    if (!set) {
        return judge();
    }
    Statement asked = prepare("PRAGMA user_version");
    if (asked.step() != Statement::Step::Row) {
        return judge();
    }
    const std::int64_t present = asked.integer(0);
    asked.reset();
    if (present < version) {
        Transaction transaction(*this);
        const std::string mark = "PRAGMA user_version=" + std::to_string(version);
        if (!run(std::string(schema).c_str()) || !run(mark.c_str()) || !transaction.commit()) {
            return judge();
        }
    }
    if (synchronous == Synchronous::Normal) {
        return Opening::Opened; // what may be lost need not be read whole at each start
    }
    Statement check = prepare("PRAGMA quick_check(1)");
    if (check.step() != Statement::Step::Row) {
        return judge();
    }
    return check.bytes(0) == "ok" ? Opening::Opened : Opening::Damaged;
}

Database::Opening Database::judge() const {
    const int code = sqlite3_errcode(m_handle);
    return code == SQLITE_CORRUPT || code == SQLITE_NOTADB ? Opening::Damaged : Opening::Failed;
}

Database::~Database() {
    sqlite3_close_v2(m_handle);
}

bool Database::run(const char* sql) {
    return sqlite3_exec(m_handle, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::int64_t Database::lastRow() const {
    return sqlite3_last_insert_rowid(m_handle);
}

int Database::changes() const {
    return sqlite3_changes(m_handle);
}

std::string Database::error() const {
    return sqlite3_errmsg(m_handle);
}

bool Database::full() const {
    const int code = sqlite3_errcode(m_handle);
    return code == SQLITE_FULL || code == SQLITE_IOERR;
}

Transaction::Transaction(Database& database)
    : m_database(database), m_open(database.run("BEGIN IMMEDIATE")) {}

Transaction::~Transaction() {
    if (m_open) {
        m_database.run("ROLLBACK");
    }
}

bool Transaction::commit() {
    if (!m_open || !m_database.run("COMMIT")) {
        return false;
    }
    m_open = false;
    return true;
}

} // namespace korvale::agent
