#include "agent/store/Statement.h"

#include <sqlite3.h>
#include <utility>

namespace korvale::agent {

Statement::Statement(sqlite3* database, std::string_view sql) {
    sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &m_statement, nullptr);
}

Statement::~Statement() {
    sqlite3_finalize(m_statement);
}

Statement::Statement(Statement&& other) noexcept
    : m_statement(std::exchange(other.m_statement, nullptr)) {}

Statement& Statement::bind(int parameter, std::int64_t value) {
    sqlite3_bind_int64(m_statement, parameter, value);
    return *this;
}

Statement& Statement::bindText(int parameter, const std::string& value) {
    sqlite3_bind_text64(m_statement, parameter, value.data(), value.size(), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
    return *this;
}

Statement& Statement::bindBytes(int parameter, const std::string& value) {
    // Never a null pointer, which would bind NULL.
    sqlite3_bind_blob64(m_statement, parameter, value.data(), value.size(), SQLITE_TRANSIENT);
    return *this;
}

Statement::Step Statement::step() {
    if (m_statement == nullptr) {
        return Step::Failed;
    }
    switch (sqlite3_step(m_statement)) {
    case SQLITE_ROW:
        return Step::Row;
    case SQLITE_DONE:
        return Step::Done;
    default:
        return Step::Failed;
    }
}

bool Statement::run() {
    const bool done = step() == Step::Done;
    reset();
    return done;
}

void Statement::reset() {
    sqlite3_reset(m_statement);
    sqlite3_clear_bindings(m_statement);
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

std::string Statement::bytes(int column) const {
    const void* const data = sqlite3_column_blob(m_statement, column);
    const int size = sqlite3_column_bytes(m_statement, column);
    return data == nullptr
               ? std::string()
               : std::string(static_cast<const char*>(data), static_cast<std::size_t>(size));
}

} // namespace korvale::agent
