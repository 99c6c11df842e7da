#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace korvale::bench {

/// Deterministic lists as the agent writes them: the same arguments give the same bytes everywhere.
struct ListShape {
    std::size_t records = 0;
    std::uint64_t seed = 1;
    /// Paths to a row: how many files, on average, share an identifier and a state.
    double pathsPerRow = 1.35;
};

/// A list of file threats: paths of 80 to 120 characters, some not in ASCII, 64-digit identifiers,
/// all states. `pass` 0 is the list itself; with every other value one record in a thousand has
/// another state.
[[nodiscard]] std::string fileStateList(const ListShape& shape, std::uint64_t pass = 0);

/// An event list whose records are numbered from `first`.
[[nodiscard]] std::string eventList(std::size_t first, std::size_t records);

} // namespace korvale::bench
