#pragma once

#include "agent/base/FileIdentity.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace korvale::agent {

class VerdictTable;

/// Numbers are stored: never renumber. What was not judged is never remembered.
enum class KnownVerdict : int { Clean = 0, Abnormal = 1, Unsafe = 2 };

/// Remembers what the engine said of an unchanged file (same file system, inode, ctime and size)
/// with the same signatures. A file of its own, which may be deleted at any time: nothing but time
/// is lost with it, hence synchronous NORMAL and 20,000 verdicts a transaction.
///
/// Any thread, one at a time by a lock inside; calls read the disk and now and then write it. The
/// caller sees to it that nothing is remembered of a file whose ctime is too young to tell a later
/// change, or whose file system keeps no honest ctime.
class VerdictCache {
public:
    /// Opens or makes the file `path`. A damaged one is deleted and begun anew. Null and a sentence
    /// in `error` when that fails: go on without a cache.
    static std::unique_ptr<VerdictCache> open(const std::string& path, std::string& error);
    ~VerdictCache(); ///< writes what waits
    VerdictCache(const VerdictCache&) = delete;
    VerdictCache& operator=(const VerdictCache&) = delete;

    /// Only verdicts given with this key count from now on. Empty: none counts, none is kept.
    void setSignatureKey(const std::string& key);
    [[nodiscard]] std::optional<KnownVerdict> find(const FileIdentity& file);
    /// The same among the verdicts given with `key`.
    [[nodiscard]] std::optional<KnownVerdict> find(const FileIdentity& file,
                                                   const std::string& key);
    void remember(const FileIdentity& file, KnownVerdict verdict);
    /// A verdict that turned out wrong or was taken back.
    void forget(const FileIdentity& file);
    /// Writes what waits. False on a full disk; then what waited is forgotten, as the cache is only
    /// a cache.
    bool flush();
    [[nodiscard]] std::size_t size(); ///< verdicts of all signatures, written and waiting
    /// Deletes verdicts of other signatures once there are more than `most` in all, and if that is
    /// not enough everything.
    void trim(std::size_t most);

private:
    explicit VerdictCache(std::unique_ptr<VerdictTable> table);

    std::mutex m_mutex;
    std::unique_ptr<VerdictTable> m_table;
};

} // namespace korvale::agent
