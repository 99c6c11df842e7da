#pragma once

#include "agent/store/Finding.h"

#include <string>
#include <vector>

namespace korvale::agent {

class Database;

/// The rows of waived contents. Whoever calls holds the store's lock.
class WaiveTable {
public:
    explicit WaiveTable(Database& database) : m_database(database) {}

    /// Replaces an earlier one of the same content.
    bool put(const Waive& waive);
    bool remove(const std::string& id);
    [[nodiscard]] bool contains(const std::string& id);
    [[nodiscard]] std::vector<Waive> all(); ///< oldest first

private:
    Database& m_database;
};

} // namespace korvale::agent
