#include "model/IndexTable.h"

#include <gtest/gtest.h>
#include <random>
#include <unordered_map>
#include <vector>

namespace korvale {
namespace {

/// Numbers, each found by its hash: one of a few or of many.
class Numbers {
public:
    Numbers(std::size_t most, std::uint64_t hashes) : m_table(most), m_hashes(hashes) {}

    /// Where `number` stands among the different ones so far.
    std::uint32_t indexOf(std::uint64_t number) {
        const std::uint64_t hash = number % m_hashes * 0x9E3779B97F4A7C15U;
        m_table.prefetch(hash);
        IndexTable::Entry& entry =
            m_table.at(hash, [&](std::uint32_t index) { return m_numbers[index] == number; });
        if (entry.isNew()) {
            entry.setIndex(static_cast<std::uint32_t>(m_numbers.size()));
            m_numbers.push_back(number);
        }
        return entry.index();
    }

private:
    IndexTable m_table;
    std::uint64_t m_hashes;
    std::vector<std::uint64_t> m_numbers;
};

class IndexTableWithHashes : public testing::TestWithParam<std::uint64_t> {};

TEST_P(IndexTableWithHashes, FindsWhatTheStandardMapFinds) {
    std::mt19937_64 random(7);
    Numbers numbers(1000, GetParam());
    std::unordered_map<std::uint64_t, std::uint32_t> expected;
    for (int i = 0; i < 5000; ++i) {
        const std::uint64_t number = random() % 1000;
        const auto index = static_cast<std::uint32_t>(expected.size());
        ASSERT_EQ(numbers.indexOf(number), expected.try_emplace(number, index).first->second);
    }
    EXPECT_GT(expected.size(), 900U);
}

INSTANTIATE_TEST_SUITE_P(AnyNumber, IndexTableWithHashes, testing::Values(1, 2, 64, 1000, 1 << 20));

TEST(IndexTable, AnEntryCanBeGivenAnotherIndex) {
    IndexTable table(1);
    table.at(5, [](std::uint32_t) { return false; }).setIndex(0);
    IndexTable::Entry& entry = table.at(5, [](std::uint32_t index) { return index == 0; });
    ASSERT_FALSE(entry.isNew());
    entry.setIndex(7);
    EXPECT_EQ(table.at(5, [](std::uint32_t index) { return index == 7; }).index(), 7U);
}

} // namespace
} // namespace korvale
