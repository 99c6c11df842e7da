#pragma once

#include "agent/store/QuarantineRecord.h"

#include <optional>
#include <string>
#include <vector>

namespace korvale::agent {

class Database;

/// The rows of quarantined files. Whoever calls holds the store's lock.
class QuarantineTable {
public:
    explicit QuarantineTable(Database& database) : m_database(database) {}

    bool add(const QuarantineRecord& record);
    /// False when there is no such row, too.
    bool setState(const std::string& id, QuarantineState state);
    bool remove(const std::string& id);
    [[nodiscard]] std::optional<QuarantineRecord> find(const std::string& id);
    [[nodiscard]] std::vector<QuarantineRecord> all();

private:
    Database& m_database;
};

} // namespace korvale::agent
