#include "agent/watch/KnownStarts.h"

#include <algorithm>

namespace korvale::agent {

std::size_t KnownStarts::indexOf(const StartKey& key) {
    constexpr std::uint64_t mix = 0x9E3779B97F4A7C15ULL;
    const std::uint64_t hash = (key.inode * mix) ^ (key.device * (mix >> 7U));
    return static_cast<std::size_t>((hash >> 32U) % buckets);
}

bool KnownStarts::contains(const StartKey& key) const {
    const Bucket& bucket = m_buckets[indexOf(key)];
    return key.inode != 0 &&
           std::find(bucket.keys.begin(), bucket.keys.end(), key) != bucket.keys.end();
}

void KnownStarts::insert(const StartKey& key) {
    Bucket& bucket = m_buckets[indexOf(key)];
    // An older state of the same file makes room first.
    auto* place = std::find_if(bucket.keys.begin(), bucket.keys.end(), [&](const StartKey& other) {
        return other.inode == 0 || (other.inode == key.inode && other.device == key.device);
    });
    if (place == bucket.keys.end()) {
        place = &bucket.keys[bucket.next];
        bucket.next = (bucket.next + 1) % ways;
    }
    *place = key;
}

void KnownStarts::clear() {
    m_buckets.fill(Bucket());
}

} // namespace korvale::agent
