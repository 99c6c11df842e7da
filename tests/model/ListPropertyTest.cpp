// The program's way of reading lists against the plain one, on random lists. The seeds are fixed:
// each run does the same.
#include "PlainFileThreats.h"
#include "PlainJson.h"
#include "RandomLists.h"
#include "model/FileThreatGroups.h"
#include "model/JsonFingerprint.h"
#include "model/JsonValue.h"
#include "model/Paths.h"
#include "model/StateVocabulary.h"
#include "platform/Texts.h"

#include <QStringList>

#include <algorithm>
#include <gtest/gtest.h>
#include <map>

namespace korvale {
namespace {

std::optional<JsonValue> parse(const std::string& text) {
    return JsonValue::parse(QByteArray::fromStdString(text));
}

std::uint64_t fingerprint(const JsonValue& value) {
    return jsonFingerprint(*value.document(), value.index());
}

QString nameOf(const std::string& path) {
    return lastPathComponent(QString::fromStdString(path)).toLower();
}

void expectSameThreats(const FileThreatGroups& fast, const PlainThreats& plain) {
    EXPECT_EQ(fast.tally, plain.tally);
    EXPECT_EQ(fast.lastUnsafeName, nameOf(plain.lastUnsafePath));
    EXPECT_EQ(fast.lastAbnormalName, nameOf(plain.lastAbnormalPath));
    ASSERT_EQ(fast.rows->size(), plain.rows.size());
    for (std::size_t i = 0; i < plain.rows.size(); ++i) {
        const PlainThreatRow& row = plain.rows[i];
        QStringList paths;
        for (const std::string& path : row.paths) {
            paths << QString::fromStdString(path);
        }
        EXPECT_EQ(fast.rows->text(i, RowKey::FileToolTip), paths.join(QStringLiteral("\n\n")));
        EXPECT_EQ(fast.rows->text(i, RowKey::File), nameOf(row.paths.front()));
        EXPECT_EQ(fast.rows->text(i, RowKey::Found), QString::number(row.paths.size()));
        const auto text = [&](RowKey key) {
            const auto found = fast.rows->text(i, key);
            return found ? std::optional(found->toStdString()) : std::nullopt;
        };
        EXPECT_EQ(text(RowKey::Category), stateStringFromValue(row.state).toStdString());
        EXPECT_EQ(text(RowKey::Id), row.id);
        EXPECT_EQ(text(RowKey::IdToolTip), row.id);
        EXPECT_EQ(text(RowKey::Score), row.score);
        EXPECT_EQ(text(RowKey::CategoryToolTip), localizedText("CategoryTooltip").toStdString());
        EXPECT_EQ(text(RowKey::FoundToolTip), localizedText("FoundTooltip").toStdString());
    }
}

/// Members in another order, and everything spelled anew; of repeated names only the last is kept.
std::string rewritten(const PlainJson& value, RandomNumbers& numbers) {
    std::vector<std::string> parts;
    switch (value.kind) {
    case PlainJson::Kind::Null:
        return "null";
    case PlainJson::Kind::False:
        return " false";
    case PlainJson::Kind::True:
        return "true ";
    case PlainJson::Kind::Number:
        return value.text;
    case PlainJson::Kind::Text: {
        std::string out = "\"";
        const std::u16string utf16 = QString::fromStdString(value.text).toStdU16String();
        for (const char16_t unit : utf16) {
            out += QStringLiteral("\\u%1").arg(int{unit}, 4, 16, QLatin1Char('0')).toStdString();
        }
        return out + "\"";
    }
    case PlainJson::Kind::List:
        for (const PlainJson& element : value.elements) {
            parts.push_back(rewritten(element, numbers));
        }
        break;
    case PlainJson::Kind::Object:
        for (const auto& [name, member] : value.members) {
            PlainJson key;
            key.kind = PlainJson::Kind::Text;
            key.text = name;
            parts.push_back(rewritten(key, numbers) + " :" + rewritten(member, numbers));
        }
        std::shuffle(parts.begin(), parts.end(), numbers);
        break;
    }
    std::string out;
    for (const std::string& part : parts) {
        out.append(out.empty() ? "" : " ,\n").append(part);
    }
    return value.kind == PlainJson::Kind::List ? "[" + out + "]" : "{" + out + "}";
}

class ListProperty : public testing::TestWithParam<std::uint64_t> {};

TEST_P(ListProperty, FastAndPlainReadingAgree) {
    RandomNumbers numbers(GetParam());
    for (int round = 0; round < 60; ++round) {
        const std::string text = RandomLists(numbers).list(below(numbers, 40));
        const auto plain = parsePlainJson(text);
        const auto fast = parse(text);
        ASSERT_TRUE(plain) << text;
        ASSERT_TRUE(fast) << text;
        expectSameThreats(groupFileThreats(*fast), plainFileThreats(*plain));
        ASSERT_FALSE(HasFailure()) << text;
    }
}

TEST_P(ListProperty, ShuffledAndReformattedListsAreUnchanged) {
    RandomNumbers numbers(GetParam());
    for (int round = 0; round < 60; ++round) {
        const std::string text = RandomLists(numbers).list(below(numbers, 40));
        const std::string other = rewritten(*parsePlainJson(text), numbers);
        const auto one = parse(text);
        const auto two = parse(other);
        ASSERT_TRUE(one && two) << text << '\n' << other;
        EXPECT_EQ(fingerprint(*one), fingerprint(*two)) << text << '\n' << other;
        EXPECT_TRUE(*one == *two);
    }
}

TEST_P(ListProperty, ListsHaveChangedWhenThePlainOnesDiffer) {
    RandomNumbers numbers(GetParam());
    std::map<std::string, std::uint64_t> seen;
    std::map<std::uint64_t, std::string> byFingerprint;
    for (int round = 0; round < 400; ++round) {
        const std::string text = RandomLists(numbers).list(below(numbers, 3));
        const std::string canonical = parsePlainJson(text)->canonical();
        const std::uint64_t print = fingerprint(*parse(text));
        EXPECT_EQ(seen.emplace(canonical, print).first->second, print) << text;
        EXPECT_EQ(byFingerprint.emplace(print, canonical).first->second, canonical) << text;
    }
}

TEST_P(ListProperty, DamagedListsAreAbsentOrReadAlike) {
    RandomNumbers numbers(GetParam());
    for (int round = 0; round < 1000; ++round) {
        const std::string text = damaged(RandomLists(numbers).list(1 + below(numbers, 4)), numbers);
        const auto plain = parsePlainJson(text);
        const auto fast = parse(text);
        ASSERT_EQ(plain.has_value(), fast.has_value()) << text;
        if (plain) {
            const auto again = parse(rewritten(*plain, numbers));
            ASSERT_TRUE(again) << text;
            EXPECT_EQ(fingerprint(*fast), fingerprint(*again)) << text;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ListProperty, testing::Range<std::uint64_t>(1, 9));

TEST(LongLists, AHundredThousandRecordsMakeTheRowsTheyShould) {
    constexpr int records = 100'000;
    std::string text = "{";
    for (int i = 0; i < records; ++i) {
        text.append(i == 0 ? "\"/dir/File" : ",\"/dir/File").append(std::to_string(i));
        text.append("\":{\"State\":").append(i % 2 == 0 ? "1" : "10").append(",\"ID\":\"");
        text.append(std::to_string(i / 4)).append("\"}");
    }
    // The last thousand come once more, with another state.
    for (int i = records - 1000; i < records; ++i) {
        text.append(",\"/dir/File").append(std::to_string(i)).append("\":{\"State\":5}");
    }
    text += '}';
    const auto list = parse(text);
    ASSERT_TRUE(list);
    EXPECT_EQ(list->size(), static_cast<std::size_t>(records));
    const FileThreatGroups groups = groupFileThreats(*list);
    EXPECT_EQ(groups.tally.unsafeDetected, 49'500);
    EXPECT_EQ(groups.tally.abnormalQuarantined, 49'500);
    EXPECT_EQ(groups.tally.unsafeWaived, 1000);
    ASSERT_EQ(groups.rows->size(), 99'000U / 2 + 1);
    EXPECT_EQ(groups.rows->text(0, RowKey::FileToolTip),
              QStringLiteral("/dir/File0\n\n/dir/File2"));
    EXPECT_EQ(groups.rows->text(1, RowKey::Id), QStringLiteral("0"));
    EXPECT_EQ(groups.rows->text(49'500, RowKey::Found), QStringLiteral("1000"));
    EXPECT_EQ(groups.lastUnsafeName, QStringLiteral("file99999"));
}

} // namespace
} // namespace korvale
