#pragma once

#include "agent/watch/StartKey.h"

#include <array>
#include <cstddef>

namespace korvale::agent {

/// Files that may run without a question, as they were judged clean and have not changed since. A
/// table of a fixed size that allocates nothing; what is forgotten for want of room is asked again.
/// One thread.
class KnownStarts {
public:
    static constexpr std::size_t buckets = 4096;
    static constexpr std::size_t ways = 4;

    [[nodiscard]] bool contains(const StartKey& key) const;
    void insert(const StartKey& key);
    /// Also touches every page of the table.
    void clear();

private:
    struct Bucket {
        std::array<StartKey, ways> keys; ///< inode 0: free
        std::size_t next = 0;            ///< which one goes when all are taken
    };
    [[nodiscard]] static std::size_t indexOf(const StartKey& key);

    std::array<Bucket, buckets> m_buckets;
};

} // namespace korvale::agent
