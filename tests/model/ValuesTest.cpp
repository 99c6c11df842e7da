#include "model/Values.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace korvale {
namespace {

JsonValue value(const std::string& text) {
    const auto list = JsonValue::parse(QByteArray::fromStdString("[" + text + "]"));
    return list ? *list->elements().begin() : JsonValue();
}

struct TextCase {
    const char* json;
    const char* text;
};

class ValueText : public testing::TestWithParam<TextCase> {};

TEST_P(ValueText, IsWhatAFormattedTextShows) {
    EXPECT_EQ(valueText(value(GetParam().json)).toStdString(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    AnyOf, ValueText,
    testing::Values(TextCase{"\"a b\"", "a b"}, TextCase{"\"\"", ""}, TextCase{"5", "5"},
                    TextCase{"-17", "-17"}, TextCase{"-0", "0"}, TextCase{"3.0", "3"},
                    TextCase{"1e2", "100"}, TextCase{"0.1", "0.1"}, TextCase{"0.10", "0.1"},
                    TextCase{"-2.50", "-2.5"},
                    TextCase{"0.30000000000000004", "0.30000000000000004"},
                    TextCase{"9007199254740993", "9007199254740993"},
                    TextCase{"18446744073709551615", "18446744073709551615"},
                    TextCase{"123456789012345678901234567890", "123456789012345678901234567890"},
                    TextCase{"1e400", "1e400"}, TextCase{"true", "1"}, TextCase{"false", "0"},
                    TextCase{"null", "(null)"}, TextCase{"[]", "[]"}, TextCase{"{}", "{}"},
                    TextCase{"[1, [true], {\"a\" : null}]", "[1,[true],{\"a\":null}]"},
                    TextCase{"{ \"b\": \"x\\\"\\u000a\", \"a\": 1.0 }",
                             "{\"b\":\"x\\\"\\n\",\"a\":1}"},
                    TextCase{R"(["\u0008\u000C\u000D\u0009\\\/\u0001\u001F\u007F\u00e9"])",
                             "[\"\\b\\f\\r\\t\\\\/\\u0001\\u001f\x7F\xC3\xA9\"]"},
                    TextCase{"[[],{},[[]]]", "[[],{},[[]]]"}));

TEST(Values, MissingIsNoCellText) {
    EXPECT_EQ(cellText(JsonValue()), std::nullopt);
    EXPECT_EQ(cellText(value("null")), std::nullopt);
    EXPECT_EQ(cellText(value("\"\"")), QString());
    EXPECT_EQ(cellText(value("false")), QStringLiteral("0"));
}

TEST(Values, AByteOrderMarkInATextIsACharacter) {
    EXPECT_EQ(valueText(value(R"("\uFEFF\uFEFFa")")), QStringLiteral("\uFEFF\uFEFFa"));
    EXPECT_EQ(textOnly(value("\"\xEF\xBB\xBF/x\"")), QStringLiteral("\uFEFF/x"));
}

TEST(Values, OnlyTextsAreTakenAsTexts) {
    EXPECT_EQ(textOnly(value("\"5\"")), QStringLiteral("5"));
    EXPECT_EQ(textOnly(value("5")), std::nullopt);
    EXPECT_EQ(textOnly(value("true")), std::nullopt);
    EXPECT_EQ(textOnly(value("null")), std::nullopt);
    EXPECT_EQ(textOnly(value("[\"a\"]")), std::nullopt);
}

struct IntegerCase {
    const char* json;
    std::int64_t integer;
};

class IntegerValue : public testing::TestWithParam<IntegerCase> {};

TEST_P(IntegerValue, IsCutTowardsZero) {
    EXPECT_EQ(integerValue(value(GetParam().json)), GetParam().integer);
}

INSTANTIATE_TEST_SUITE_P(
    AnyOf, IntegerValue,
    testing::Values(IntegerCase{"9", 9}, IntegerCase{"-9", -9}, IntegerCase{"1.9", 1},
                    IntegerCase{"-1.9", -1}, IntegerCase{"0.99", 0}, IntegerCase{"12e-1", 1},
                    IntegerCase{"1.25e2", 125}, IntegerCase{"true", 1}, IntegerCase{"false", 0},
                    IntegerCase{"null", 0}, IntegerCase{"[1]", 0}, IntegerCase{"{}", 0},
                    IntegerCase{"\"12\"", 12}, IntegerCase{"\" \\t-7x\"", -7},
                    IntegerCase{"\"+3\"", 3}, IntegerCase{"\"x3\"", 0}, IntegerCase{"\"\"", 0},
                    IntegerCase{"\"1.9\"", 1}, IntegerCase{"\"- 4\"", 0},
                    IntegerCase{"9223372036854775807", std::numeric_limits<std::int64_t>::max()},
                    IntegerCase{"18446744073709551615", -1}, IntegerCase{"18446744073709551617", 1},
                    IntegerCase{"-18446744073709551617", -1},
                    IntegerCase{"1e20", 7766279631452241920}, IntegerCase{"1e400", 0},
                    IntegerCase{"1e-400", 0}, IntegerCase{"1e99999999999999999999", 0},
                    IntegerCase{"-1e-99999999999999999999", 0}));

TEST(Values, IntegersAreCutToTheirWidth) {
    EXPECT_EQ(integer32Value(value("4294967297")), 1);
    EXPECT_EQ(integer32Value(value("2147483648")), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(unsigned32Value(value("-1")), 4294967295U);
    EXPECT_EQ(unsigned32Value(value("4294967305")), 9U);
    EXPECT_EQ(unsigned32Value(value("\"4294967305\"")), 9U);
}

struct BooleanCase {
    const char* json;
    bool boolean;
};

class BooleanValue : public testing::TestWithParam<BooleanCase> {};

TEST_P(BooleanValue, FollowsTheFirstMeaningfulCharacter) {
    EXPECT_EQ(booleanValue(value(GetParam().json)), GetParam().boolean);
}

INSTANTIATE_TEST_SUITE_P(
    AnyOf, BooleanValue,
    testing::Values(BooleanCase{"true", true}, BooleanCase{"false", false}, BooleanCase{"1", true},
                    BooleanCase{"0", false}, BooleanCase{"-0.0", false}, BooleanCase{"0.1", true},
                    BooleanCase{"0e5", false}, BooleanCase{"1e-400", true},
                    BooleanCase{"\"yes\"", true}, BooleanCase{"\"True\"", true},
                    BooleanCase{"\"no\"", false}, BooleanCase{"\" -007\"", true},
                    BooleanCase{"\"000\"", false}, BooleanCase{"\"+0Y\"", true},
                    BooleanCase{"\"\"", false}, BooleanCase{"\"x1\"", false},
                    BooleanCase{"null", false}, BooleanCase{"[1]", false}));

} // namespace
} // namespace korvale
