#pragma once

#include <array>
#include <cstddef>
#include <link.h>

namespace korvale::agent {

/// What a process of this program must have in memory at any moment: the code and data of the
/// program and of the C library, and a piece of its stack. (Everything else that is mapped would be
/// every library that the agent uses and its guard does not.)
class OwnPages {
public:
    /// To be found before a fork: the list of libraries has a lock, which another thread may hold
    /// then.
    [[nodiscard]] static OwnPages find();

    /// Keeps them in memory, and all the rest from its first use on. What the limit on locked
    /// memory does not allow is left out. Allocates and locks nothing.
    void lock() const;

private:
    struct Part {
        const void* begin = nullptr;
        std::size_t size = 0;
    };
    static int add(dl_phdr_info* object, std::size_t size, void* pages);

    std::array<Part, 16> m_parts;
    std::size_t m_count = 0;
};

} // namespace korvale::agent
