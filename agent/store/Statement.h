#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace korvale::agent {

/// A compiled SQL statement. Parameters are numbered from 1, columns from 0. What is bound is
/// copied. Used by one thread at a time.
class Statement {
public:
    enum class Step { Row, Done, Failed };

    /// An SQL text that does not compile makes every `step()` fail.
    Statement(sqlite3* database, std::string_view sql);
    ~Statement();
    Statement(Statement&& other) noexcept;
    Statement& operator=(Statement&&) = delete;

    Statement& bind(int parameter, std::int64_t value);
    Statement& bindText(int parameter, const std::string& value);
    /// Raw bytes: paths and attribute values are no text.
    Statement& bindBytes(int parameter, const std::string& value);

    Step step();
    /// Runs a statement without rows and makes it ready for new values. False when it failed.
    bool run();
    void reset();

    [[nodiscard]] std::int64_t integer(int column) const;
    /// A text or bytes, as they are.
    [[nodiscard]] std::string bytes(int column) const;

private:
    sqlite3_stmt* m_statement = nullptr;
};

} // namespace korvale::agent
