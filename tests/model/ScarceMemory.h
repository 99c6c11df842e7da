#pragma once

#include <cstddef>

namespace korvale {

/// While it lives, the program has no memory for blocks of `limit` bytes and more, however much the
/// machine has. Only in programs that are linked with ScarceMemory.cpp, which takes the place of
/// the operators new.
class ScarceMemory {
public:
    explicit ScarceMemory(std::size_t limit);
    ScarceMemory(const ScarceMemory&) = delete;
    ScarceMemory& operator=(const ScarceMemory&) = delete;
    ~ScarceMemory();

    /// Blocks that were refused so far.
    [[nodiscard]] static int refused();
};

} // namespace korvale
