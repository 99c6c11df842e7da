#include "tables/RowList.h"

#include "fakes/RecordingRowBatch.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <vector>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

QString file(const RowList& rows, std::size_t row) {
    return rows.text(row, RowKey::File).value_or(QStringLiteral("(none)"));
}

TEST(RowList, ABatchShowsInItsOwnOrderWithoutBeingRead) {
    const auto batch = numberedRows(1'000'000);
    const RowList rows(batch);
    EXPECT_EQ(rows.size(), 1'000'000U);
    EXPECT_EQ(batch->calls, 0U);
    EXPECT_EQ(file(rows, 999'999), u"999999"_s);
}

TEST(RowList, NoBatchIsAnEmptyList) {
    EXPECT_EQ(RowList(nullptr).size(), 0U);
}

TEST(RowList, ARowBeyondTheEndHasNoText) {
    const RowList rows(numberedRows(3));
    EXPECT_EQ(rows.text(3, RowKey::File), std::nullopt);
}

TEST(RowList, PrependedRowsComeFirstInTheirOrder) {
    RowList rows(numberedRows(2, QStringLiteral("old")));
    rows.prepend(numberedRows(2, QStringLiteral("new")));
    ASSERT_EQ(rows.size(), 4U);
    EXPECT_EQ(file(rows, 0), u"new0"_s);
    EXPECT_EQ(file(rows, 1), u"new1"_s);
    EXPECT_EQ(file(rows, 2), u"old0"_s);
    EXPECT_EQ(file(rows, 3), u"old1"_s);
}

TEST(RowList, TruncatingLetsGoOfBatchesWithoutRows) {
    const auto oldest = numberedRows(2, QStringLiteral("oldest"));
    RowList rows(oldest);
    rows.prepend(numberedRows(2, QStringLiteral("middle")));
    rows.prepend(numberedRows(2, QStringLiteral("newest")));
    rows.truncate(3);
    EXPECT_EQ(oldest.use_count(), 1);
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(file(rows, 1), u"newest1"_s);
    EXPECT_EQ(file(rows, 2), u"middle0"_s);
}

TEST(RowList, TruncatingToNothingEmptiesTheList) {
    const auto batch = numberedRows(2);
    RowList rows(batch);
    rows.truncate(0);
    EXPECT_EQ(rows.size(), 0U);
    EXPECT_EQ(batch.use_count(), 1);
}

TEST(RowList, TruncatingABatchInItsOwnOrderKeepsItsFirstRows) {
    RowList rows(numberedRows(5));
    rows.truncate(2);
    rows.prepend(numberedRows(1, QStringLiteral("new")));
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(file(rows, 2), u"1"_s);
}

/// Bytes that `rows` holds beside its batches.
std::size_t bytesOf(RowList& rows) {
    const std::size_t before = ::mallinfo2().uordblks;
    rows = RowList();
    return before - ::mallinfo2().uordblks;
}

TEST(RowList, WhatGrewRowByRowHasNoRoomToSpare) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer's allocator tells nothing of what is in use";
#endif
    std::vector<RowBatchPtr> batches;
    for (int number = 0; number < 2048; ++number) {
        batches.push_back(numberedRows(4));
    }
    RowList rows;
    for (const RowBatchPtr& batch : batches) {
        rows.prepend(batch);
    }
    const std::size_t needed = 2048 * (sizeof(RowBatchPtr) + 4 * sizeof(RowRef));
    const std::size_t held = bytesOf(rows);
    EXPECT_GE(held, needed) << "nothing was measured";
    EXPECT_LT(held, needed + needed / 50);
}

TEST(RowList, UnsortedItsRowsStandAsTheyCame) {
    RowList rows(numberedRows(3, u"a"_s));
    rows.prepend(numberedRows(1, u"b"_s));
    rows.prepend(numberedRows(2, u"c"_s));
    const auto texts = [&rows] {
        QStringList all;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            all << file(rows, row);
        }
        return all.join(u' ');
    };
    EXPECT_EQ(texts(), u"c0 c1 b0 a0 a1 a2"_s);
    rows.sort({{RowKey::File, false}});
    EXPECT_EQ(texts(), u"c1 c0 b0 a2 a1 a0"_s);
    rows.sort({{RowKey::File, true}});
    rows.truncate(4); // without c0 and c1, whose batch goes
    rows.prepend(numberedRows(1, u"d"_s));
    rows.sort({{RowKey::File, true}});
    rows.unsort();
    EXPECT_EQ(texts(), u"d0 b0 a0 a1 a2"_s);
}

TEST(RowList, ASortOfOneLeavesItsCopyAsItIs) {
    RowList rows(numberedRows(2, u"a"_s));
    rows.sort({{RowKey::File, false}});
    const RowList copy = rows;
    rows.sort({{RowKey::File, true}});
    EXPECT_EQ(file(copy, 0), u"a1"_s);
    EXPECT_EQ(file(rows, 0), u"a0"_s);
}

} // namespace
} // namespace korvale
