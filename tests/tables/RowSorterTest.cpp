#include "fakes/RecordingRowBatch.h"
#include "tables/RowList.h"
#include "tables/SortKey.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

std::vector<QString> files(const RowList& rows) {
    std::vector<QString> result;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        result.push_back(rows.text(row, RowKey::File).value_or(QStringLiteral("(none)")));
    }
    return result;
}

std::vector<QString> sorted(std::vector<std::optional<QString>> texts, bool ascending = true) {
    const std::size_t size = texts.size();
    RowList rows(std::make_shared<RecordingRowBatch>(
        size, [texts = std::move(texts)](std::size_t i, RowKey) { return texts[i]; }));
    rows.sort({{RowKey::File, ascending}});
    return files(rows);
}

using Texts = std::vector<QString>;

TEST(RowSorter, NumbersCompareByValue) {
    EXPECT_EQ(sorted({u"10"_s, u"9"_s, u"100"_s, u"1"_s}),
              (Texts{u"1"_s, u"9"_s, u"10"_s, u"100"_s}));
    EXPECT_EQ(sorted({u"file10.exe"_s, u"file9.exe"_s}), (Texts{u"file9.exe"_s, u"file10.exe"_s}));
}

TEST(RowSorter, VeryLongNumbersCompareByValueToo) {
    const QString small = QStringLiteral("8") + QString(300, u'9');
    const QString large = QStringLiteral("1") + QString(301, u'0');
    EXPECT_EQ(sorted({large, small}), (Texts{small, large}));
}

TEST(RowSorter, LeadingZerosDoNotCount) {
    EXPECT_EQ(sorted({u"a010"_s, u"a9"_s, u"a010b"_s, u"a10"_s}),
              (Texts{u"a9"_s, u"a010"_s, u"a10"_s, u"a010b"_s}));
}

TEST(RowSorter, CaseDoesNotCount) {
    EXPECT_EQ(sorted({u"b"_s, u"A"_s, u"B"_s, u"a"_s}), (Texts{u"A"_s, u"a"_s, u"b"_s, u"B"_s}));
    EXPECT_EQ(sorted({u"\u00c9b"_s, u"\u00e9a"_s}), (Texts{u"\u00e9a"_s, u"\u00c9b"_s}));
}

TEST(RowSorter, AccentedLettersStandBesideTheirBaseLetter) {
    EXPECT_EQ(sorted({u"zebra"_s, u"\u00e4pfel"_s, u"banane"_s, u"apfel"_s, u"apfelmus"_s}),
              (Texts{u"apfel"_s, u"\u00e4pfel"_s, u"apfelmus"_s, u"banane"_s, u"zebra"_s}));
}

TEST(RowSorter, MissingValuesComeFirstAndLastWhenTurned) {
    EXPECT_EQ(sorted({u"a"_s, std::nullopt, u""_s}), (Texts{u"(none)"_s, u""_s, u"a"_s}));
    EXPECT_EQ(sorted({std::nullopt, u""_s, u"a"_s}, false), (Texts{u"a"_s, u""_s, u"(none)"_s}));
}

TEST(RowSorter, APrefixComesBeforeWhatItBegins) {
    EXPECT_EQ(sorted({u"abcdefgh"_s, u"abcdefg"_s, u"abcdefghi"_s, u"abcdef"_s}),
              (Texts{u"abcdef"_s, u"abcdefg"_s, u"abcdefgh"_s, u"abcdefghi"_s}));
}

TEST(RowSorter, NoDescriptorsChangeNothing) {
    RowList rows(listedRows({{{RowKey::File, u"b"_s}}, {{RowKey::File, u"a"_s}}}));
    rows.sort({});
    EXPECT_EQ(files(rows), (Texts{u"b"_s, u"a"_s}));
}

TEST(RowSorter, LaterDescriptorsBreakTies) {
    RowList rows(listedRows({{{RowKey::File, u"1"_s}, {RowKey::Category, u"y"_s}},
                             {{RowKey::File, u"2"_s}, {RowKey::Category, u"x"_s}},
                             {{RowKey::File, u"3"_s}, {RowKey::Category, u"Y"_s}},
                             {{RowKey::File, u"4"_s}, {RowKey::Category, u"x"_s}}}));
    rows.sort({{RowKey::Category, true}, {RowKey::File, false}});
    EXPECT_EQ(files(rows), (Texts{u"4"_s, u"2"_s, u"3"_s, u"1"_s}));
}

TEST(RowSorter, EqualRowsKeepTheirOrderInBothDirections) {
    for (const bool ascending : {true, false}) {
        RowList rows(listedRows({{{RowKey::File, u"1"_s}, {RowKey::Category, u"x"_s}},
                                 {{RowKey::File, u"2"_s}, {RowKey::Category, u"X"_s}},
                                 {{RowKey::File, u"3"_s}, {RowKey::Category, u"x"_s}}}));
        rows.sort({{RowKey::Category, ascending}});
        EXPECT_EQ(files(rows), (Texts{u"1"_s, u"2"_s, u"3"_s})) << ascending;
    }
}

TEST(RowSorter, EachTextIsAskedForOncePerDescriptorAndOnlyForTies) {
    const auto batch = numberedRows(5000);
    RowList rows(batch);
    rows.sort({{RowKey::File, false}, {RowKey::Category, true}});
    EXPECT_EQ(batch->calls, 5000U);
}

// The order the sort keys stand for, written plainly: compare keys pairwise, sort stably.
std::vector<int> plainlySorted(const std::vector<std::pair<QString, QString>>& rows,
                               bool firstAscending, bool secondAscending) {
    const auto key = [](const QString& text) {
        std::string bytes;
        appendSortKey(text.isNull() ? std::nullopt : std::optional(text), bytes);
        return bytes;
    };
    std::vector<int> order(rows.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i] = static_cast<int>(i);
    }
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        const auto& left = rows[static_cast<std::size_t>(a)];
        const auto& right = rows[static_cast<std::size_t>(b)];
        if (key(left.first) != key(right.first)) {
            return (key(left.first) < key(right.first)) == firstAscending;
        }
        if (key(left.second) != key(right.second)) {
            return (key(left.second) < key(right.second)) == secondAscending;
        }
        return false;
    });
    return order;
}

TEST(RowSorter, AgreesWithAPlainStableSortOnRandomRows) {
    std::mt19937 random(20240611); // NOLINT: the same rows in every run
    const QString alphabet = QStringLiteral("aAbB019\u00e9E /\u03a9\u0663");
    const auto randomText = [&]() -> QString {
        if (random() % 8 == 0) {
            return {};
        }
        QString text = QStringLiteral("");
        for (auto length = random() % 12; length > 0; --length) {
            text += alphabet[static_cast<qsizetype>(random()) % alphabet.size()];
        }
        return text;
    };
    for (int round = 0; round < 60; ++round) {
        std::vector<std::pair<QString, QString>> texts(random() % 200);
        for (auto& [first, second] : texts) {
            first = random() % 2 == 0 ? QString(u'x') : randomText();
            second = randomText();
        }
        RowList rows(std::make_shared<RecordingRowBatch>(
            texts.size(), [&](std::size_t i, RowKey key) -> std::optional<QString> {
                if (key == RowKey::Pid) {
                    return QString::number(i);
                }
                const QString& text = key == RowKey::File ? texts[i].first : texts[i].second;
                return text.isNull() ? std::nullopt : std::optional(text);
            }));
        const bool first = random() % 2 == 0;
        const bool second = random() % 2 == 0;
        rows.sort({{RowKey::File, first}, {RowKey::Category, second}});
        const std::vector<int> expected = plainlySorted(texts, first, second);
        for (std::size_t row = 0; row < expected.size(); ++row) {
            ASSERT_EQ(rows.text(row, RowKey::Pid), QString::number(expected[row]))
                << "round " << round << " row " << row;
        }
    }
}

} // namespace
} // namespace korvale
