#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace korvale {

using RandomNumbers = std::mt19937_64;

/// A number from 0 to `limit` - 1.
[[nodiscard]] inline std::size_t below(RandomNumbers& numbers, std::size_t limit) {
    return numbers() % limit;
}

template <typename Item, std::size_t size>
[[nodiscard]] const Item& pick(RandomNumbers& numbers, const Item (&items)[size]) {
    return items[below(numbers, size)];
}

/// Lists of file threats, as JSON texts with what makes lists hard: escapes, odd types and
/// spellings, repeated names. The same numbers make the same lists.
class RandomLists {
public:
    /// `numbers` must outlive this object.
    explicit RandomLists(RandomNumbers& numbers) : m_numbers(numbers) {}

    [[nodiscard]] std::string list(std::size_t records);
    /// The text as a JSON string, some of its characters escaped without need.
    [[nodiscard]] std::string text(const std::string& utf8);

private:
    std::string object(const std::vector<std::string>& members);
    std::string path(std::size_t records);
    std::string record();
    std::string member();
    std::string blank();

    RandomNumbers& m_numbers;
};

/// One or a few bytes changed, removed, doubled or cut off.
[[nodiscard]] std::string damaged(std::string text, RandomNumbers& numbers);

} // namespace korvale
