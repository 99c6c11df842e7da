// QJsonDocument as an outside judge: it and the program's reader say the same of a text, but for
// the differences that are listed here.
#include "QtJsonJudge.h"
#include "RandomLists.h"
#include "model/JsonValue.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

struct Difference {
    const char* why;
    QByteArray text;
    bool weAccept; ///< the judge does the opposite
};

class ListedDifference : public testing::TestWithParam<Difference> {};

TEST_P(ListedDifference, IsOne) {
    EXPECT_EQ(JsonValue::parse(GetParam().text).has_value(), GetParam().weAccept) << GetParam().why;
    EXPECT_EQ(judged(GetParam().text).isUndefined(), GetParam().weAccept) << GetParam().why;
}

INSTANTIATE_TEST_SUITE_P(
    All, ListedDifference,
    testing::Values(
        Difference{"the judge drops a byte order mark", "\xEF\xBB\xBF[1]", false},
        Difference{"the judge takes control characters in strings", "[\"\x01\"]", false},
        Difference{"the judge takes any character behind a backslash", "[\"\\x\"]", false},
        Difference{"the judge needs no digit behind a point", "[1.]", false},
        Difference{"the judge needs no digit in front of a point", "[.5]", false},
        Difference{"the judge nests 1024 deep", QByteArray(600, '[') + QByteArray(600, ']'), false},
        Difference{"the judge's numbers are doubles", "[1e400]", true},
        Difference{"the judge takes no number too near to 0 for one", "[1e-400]", true}));

TEST(JsonJudgesDiffer, TheJudgeDropsAByteOrderMarkInFrontOfAText) {
    const QByteArray text = "[\"\xEF\xBB\xBFx\"]";
    EXPECT_EQ(judged(text)[0].toString(), QStringLiteral("x"));
    EXPECT_EQ(JsonValue::parse(text)->elements().begin().operator*().utf8(), "\xEF\xBB\xBFx");
}

class JsonJudges : public testing::TestWithParam<std::uint64_t> {};

TEST_P(JsonJudges, ValidListsMeanTheSame) {
    RandomNumbers numbers(GetParam());
    for (int round = 0; round < 100; ++round) {
        QByteArray text = QByteArray::fromStdString(RandomLists(numbers).list(below(numbers, 20)));
        text.replace("1e400", "1e300"); // listed
        const auto ours = JsonValue::parse(text);
        const QJsonValue theirs = judged(text);
        ASSERT_TRUE(ours && !theirs.isUndefined()) << text.constData();
        ASSERT_TRUE(meansTheSame(*ours, theirs)) << text.constData();
    }
}

TEST_P(JsonJudges, DamagedListsAreAcceptedOrRefusedAlike) {
    RandomNumbers numbers(GetParam());
    int accepted = 0;
    for (int round = 0; round < 1000; ++round) {
        QByteArray text = QByteArray::fromStdString(
            damaged(RandomLists(numbers).list(1 + below(numbers, 4)), numbers));
        text.replace("1e400", "1e300");
        const bool ours = JsonValue::parse(text).has_value();
        if (ours) {
            ++accepted;
            EXPECT_FALSE(judged(text).isUndefined()) << text.constData();
        } else if (!judged(text).isUndefined()) {
            EXPECT_TRUE(JsonValue::parse(withoutListed(text))) << text.constData();
        }
    }
    EXPECT_GT(accepted, 50);
}

INSTANTIATE_TEST_SUITE_P(Seeds, JsonJudges, testing::Range<std::uint64_t>(21, 25));

} // namespace
} // namespace korvale
