#pragma once

#include "agent/store/Finding.h"

#include <optional>
#include <string>
#include <vector>

namespace korvale::agent {

class Database;

/// The rows of findings. Whoever calls holds the store's lock and, for more than one call, a
/// transaction.
class FindingTable {
public:
    explicit FindingTable(Database& database) : m_database(database) {}

    /// As Store::add; no value when it could not be written.
    std::optional<Finding> put(const Finding& finding);
    /// False when there is no such row, too.
    bool setState(std::int64_t number, FindingState state);
    /// Every finding of that content that is in state `from` gets state `to`.
    bool moveAll(const std::string& id, FindingState from, FindingState to);
    [[nodiscard]] std::optional<Finding> find(std::int64_t number);
    [[nodiscard]] std::vector<Finding> all();
    [[nodiscard]] std::vector<Finding> like(const std::string& idPrefix);
    /// How many rows went.
    std::size_t forgetDeleted(std::int64_t before);

private:
    Database& m_database;
};

} // namespace korvale::agent
