#pragma once

#include "agent/base/FileIdentity.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace korvale::agent {

class Database;
class Statement;
enum class KnownVerdict : int;

/// The rows of remembered verdicts, and those that wait to be written together. Whoever calls holds
/// the cache's lock.
class VerdictTable {
public:
    explicit VerdictTable(std::unique_ptr<Database> database);
    ~VerdictTable();
    VerdictTable(const VerdictTable&) = delete;
    VerdictTable& operator=(const VerdictTable&) = delete;

    void setSignatureKey(const std::string& key);
    [[nodiscard]] std::optional<KnownVerdict> find(const FileIdentity& file);
    [[nodiscard]] std::optional<KnownVerdict> find(const FileIdentity& file,
                                                   const std::string& key);
    void put(const FileIdentity& file, KnownVerdict verdict);
    void remove(const FileIdentity& file);
    bool flush();
    [[nodiscard]] std::size_t size();
    void removeOtherSignatures();
    void removeAll();

private:
    struct Key {
        std::uint64_t fileSystem;
        std::uint64_t inode;
        friend bool operator==(const Key&, const Key&) = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const {
            return std::hash<std::uint64_t>()(key.inode * 0x9E3779B97F4A7C15ULL ^ key.fileSystem);
        }
    };
    struct Waiting {
        std::int64_t ctimeNs;
        std::int64_t size;
        KnownVerdict verdict;
    };

    bool write(const Key& key, const Waiting& waiting);
    [[nodiscard]] std::int64_t numberOf(const std::string& key);
    [[nodiscard]] std::optional<KnownVerdict> written(const FileIdentity& file,
                                                      std::int64_t signature);

    std::unique_ptr<Database> m_database;
    std::unique_ptr<Statement> m_find;
    std::unique_ptr<Statement> m_insert;
    std::unordered_map<Key, Waiting, KeyHash> m_waiting;
    std::string m_key;
    std::int64_t m_signature = 0; // 0: none, nothing counts
};

} // namespace korvale::agent
