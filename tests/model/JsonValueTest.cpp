#include "model/JsonValue.h"

#include <gmock/gmock.h>
#include <string>
#include <vector>

namespace korvale {
namespace {

using testing::ElementsAre;

std::optional<JsonValue> parse(std::string_view text) {
    return JsonValue::parse(QByteArrayView(text.data(), static_cast<qsizetype>(text.size())));
}

std::string nested(std::size_t depth) {
    return std::string(depth, '[') + std::string(depth, ']');
}

std::vector<std::string> namesOf(const JsonValue& value) {
    std::vector<std::string> names;
    for (const JsonMember& member : value.members()) {
        names.emplace_back(member.name.utf8());
    }
    return names;
}

class InvalidJson : public testing::TestWithParam<std::string> {};

TEST_P(InvalidJson, IsNoValue) {
    EXPECT_FALSE(parse(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Grammar, InvalidJson,
                         testing::Values("", " ", "\n", "5", "\"a\"", "null", "true", "{", "}", "[",
                                         "]", "[}", "{]", "[1,]", "[,1]", "[1 2]", "[1}",
                                         "{\"a\":1]", "{\"a\"}", "{\"a\":}", "{\"a\":1,}", "{,}",
                                         "{1:2}", "{a:1}", "{\"a\" 1}", "{\"a\":1 \"b\":2}", "[1]x",
                                         "[1][2]", "{} {}", "[1],", "//c\n[1]", "[1]/**/", "['a']",
                                         "[undefined]", "[NaN]", "[Infinity]", "[-Infinity]"));
INSTANTIATE_TEST_SUITE_P(Words, InvalidJson,
                         testing::Values("[tru]", "[truE]", "[truex]", "[true1]", "[true\"a\"]",
                                         "[nul]", "[nullnull]", "[falsetrue]", "[fals", "[true",
                                         "[t", "[True]", "[true\x01]"));
INSTANTIATE_TEST_SUITE_P(Numbers, InvalidJson,
                         testing::Values("[01]", "[-]", "[+1]", "[.5]", "[1.]", "[1.e5]", "[1e]",
                                         "[1e+]", "[-01]", "[1e5.5]", "[0x10]", "[1_000]",
                                         "[1\"a\"]", "[--1]", "[1-2]", "[1.2.3]", "[1\f]", "[1",
                                         "[1e", "[-", std::string("[1\0]", 4), "[1\x1A]", "[00]",
                                         "[1a]"));
INSTANTIATE_TEST_SUITE_P(Texts, InvalidJson,
                         testing::Values("[\"a]", "[\"a\\\"]", "[\"\\x\"]", "[\"\\\"]",
                                         "[\"\\u12\"]", "[\"\\u12G4\"]", "[\"\\uD800\\u12\"]",
                                         "[\"\\uD800\\uDC0\"]", "[\"\\uD800\\x\"]",
                                         "[\"\\uD800\\\"]", "[\"a\nb\"]", "[\"a\tb\"]",
                                         std::string("[\"a\0b\"]", 7), "[\"\\U0041\"]", "[\"\\'\"]",
                                         "[\"a\"\"b\"]", "[\"a\"b]", "[b\"a\"]", "[\\\"a\"]",
                                         "[\"a\"\\]", "{\"\\q\":1}"));
INSTANTIATE_TEST_SUITE_P(Encoding, InvalidJson,
                         testing::Values("\xEF\xBB\xBF[1]", "[\"\xFF\"]", "[\"\xC3\"]",
                                         "[\"\xC0\xAF\"]", "[\"\xED\xA0\x80\"]",
                                         "[\"\xF4\x90\x80\x80\"]", "[\"\xE2\x82\"]", "[\"\x80\"]",
                                         "[1]\xC2\xA0", "\xFF\xFE[\0", "[\xC3\xA9]"));
INSTANTIATE_TEST_SUITE_P(Depth, InvalidJson,
                         testing::Values(nested(513), nested(100'000), std::string(1'000'000, '['),
                                         std::string(1'000'000, '{')));

class ValidJson : public testing::TestWithParam<std::string> {};

TEST_P(ValidJson, IsAValue) {
    EXPECT_TRUE(parse(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(
    AnyOf, ValidJson,
    testing::Values("{}", "[]", " \t\r\n[ ] \n", "{ }", "[[],{}]", "[0]", "[-0]", "[-0.0e-0]",
                    "[1e400]", "[-1E+999999999999999999999]", "[1e-400]",
                    "[123456789012345678901234567890]", "[18446744073709551616]", "[\"\\u0000\"]",
                    "[\"\\uD83D\\uDE00\"]", "[\"\x7F\"]", "[\"\xF4\x8F\xBF\xBF\"]",
                    "[\"\\\"\\\\\\/\\b\\f\\n\\r\\t\"]", "{\"\":1}", "[true,false,null]",
                    nested(512), "[\" \"]", "[\"\\\\\"]", "{ \"a\" : [ 1 , 2 ] }"));

TEST(JsonValue, EachSingleWrongByteInvalidatesTheWholeText) {
    const std::string valid = R"({"/a":{"State":9,"ID":"ab","X":[true,-1.5e3,null]},"/b":{}})";
    ASSERT_TRUE(parse(valid));
    for (std::size_t at = 0; at < valid.size(); ++at) {
        std::string damaged = valid;
        damaged[at] = '\xFF';
        EXPECT_FALSE(parse(damaged)) << at;
        EXPECT_FALSE(parse(valid.substr(0, at))) << at;
    }
}

TEST(JsonValue, MembersKeepTheOrderOfTheFile) {
    EXPECT_THAT(namesOf(*parse(R"({"z":1,"a":2,"m":3})")), ElementsAre("z", "a", "m"));
}

TEST(JsonValue, OfTwoMembersWithOneNameTheLastCounts) {
    const JsonValue value = *parse(R"({"a":1,"b":{"x":[1]},"a":2,"b":3})");
    EXPECT_EQ(value.size(), 2U);
    EXPECT_EQ(value["a"].utf8(), "2");
    EXPECT_EQ(value["b"].utf8(), "3");
    EXPECT_THAT(namesOf(value), ElementsAre("a", "b"));
}

TEST(JsonValue, NamesAreComparedWithoutTheirEscapes) {
    const JsonValue value = *parse(R"({"St\u0061te":1,"State":2,"\/p":3})");
    EXPECT_EQ(value.size(), 2U);
    EXPECT_EQ(value["State"].utf8(), "2");
    EXPECT_EQ(value["/p"].utf8(), "3");
}

TEST(JsonValue, ShortNamesAreRecognisedWhateverTheirSpelling) {
    EXPECT_EQ(parse(R"({"a":1,"\u0061":2})")->size(), 1U);
    EXPECT_EQ((*parse(R"({"\u0061":1,"a":2})"))["a"].utf8(), "2");
    EXPECT_EQ(parse(R"({"\/":1,"/":2,"\u002f":3})")->size(), 1U);
    EXPECT_EQ(parse("{\"\":1,\"\" :2}")->size(), 1U);
    EXPECT_EQ(parse("{\"a\" :1,\"a\"\n:2,\"a\":3}")->size(), 1U);
    EXPECT_EQ(parse(R"({"\u00e9":1,"é":2})")->size(), 1U);
    EXPECT_EQ(parse(R"({"":1,"\u0000":2,"a":3,"aa":4})")->size(), 4U);
}

TEST(JsonValue, LastOfEqualNamesCountsAmongManyMembersToo) {
    std::string text = "{";
    for (int i = 0; i < 1000; ++i) {
        text.append("\"").append(std::to_string(i % 300)).append("\":");
        text.append(std::to_string(i)).append(",");
    }
    text.back() = '}';
    const JsonValue value = *parse(text);
    EXPECT_EQ(value.size(), 300U);
    EXPECT_EQ(value["5"].utf8(), "905");
    EXPECT_EQ(value["250"].utf8(), "850");
    EXPECT_EQ(namesOf(value).front(), "100");
}

TEST(JsonValue, EscapesBecomeTheirCharacters) {
    const JsonValue value =
        *parse(R"(["\"\\\/\b\f\n\r\t","\u00e9\u20AC\uD83D\uDE00","x\u0000y","é"])");
    std::vector<std::string> texts;
    for (const JsonValue& element : value.elements()) {
        texts.emplace_back(element.utf8());
    }
    EXPECT_THAT(texts, ElementsAre("\"\\/\b\f\n\r\t", "é€😀", std::string("x\0y", 3), "é"));
}

TEST(JsonValue, HalfASurrogatePairIsTheReplacementCharacter) {
    const JsonValue value = *parse(R"(["\udce9","\uD800","a\uDC00b","\uD800x","\uD800\u0041",
                                       "\uDC00\uD800","\uD800\uD800","\uD800\uD83D\uDE00",
                                       "\uD83D\uDE00\uDE00","\uD800\n\uDC00"])");
    std::vector<std::string> texts;
    for (const JsonValue& element : value.elements()) {
        texts.emplace_back(element.utf8());
    }
    EXPECT_THAT(texts,
                ElementsAre("\uFFFD", "\uFFFD", "a\uFFFDb", "\uFFFDx", "\uFFFDA", "\uFFFD\uFFFD",
                            "\uFFFD\uFFFD", "\uFFFD😀", "😀\uFFFD", "\uFFFD\n\uFFFD"));
}

TEST(JsonValue, NamesThatDifferInTheirHalfSurrogatesOnlyAreOne) {
    const JsonValue value = *parse(R"({"/\udce9":1,"/\ud800":2,"/\ufffd":3})");
    EXPECT_EQ(value.size(), 1U);
    EXPECT_EQ(value["/\uFFFD"].utf8(), "3");
}

TEST(JsonValue, MissingMembersAndOtherTypesReadAsNull) {
    const JsonValue value = *parse(R"({"list":[1],"text":"t","null":null})");
    EXPECT_TRUE(value["nothing"].isNull());
    EXPECT_TRUE(value["null"].isNull());
    EXPECT_TRUE(value["list"]["x"].isNull());
    EXPECT_TRUE(value["text"]["x"]["y"].isNull());
    EXPECT_TRUE(JsonValue()["x"].isNull());
    EXPECT_EQ(JsonValue().size(), 0U);
    EXPECT_EQ(value["text"].size(), 0U);
    EXPECT_TRUE(value["list"].utf8().empty());
    EXPECT_TRUE(namesOf(value["list"]).empty());
}

TEST(JsonValue, OutlivesTheDocumentItWasTakenFrom) {
    JsonValue inner;
    { inner = (*parse(R"({"a":{"b":"deep"}})"))["a"]["b"]; }
    EXPECT_EQ(inner.utf8(), "deep");
}

struct Pair {
    const char* a;
    const char* b;
    bool equal;
};

class EqualityByValue : public testing::TestWithParam<Pair> {};

TEST_P(EqualityByValue, Holds) {
    const JsonValue a = *parse(std::string("[").append(GetParam().a).append("]"));
    const JsonValue b = *parse(std::string("[").append(GetParam().b).append("]"));
    EXPECT_EQ(a == b, GetParam().equal) << GetParam().a << ' ' << GetParam().b;
    EXPECT_EQ(*a.elements().begin() == *b.elements().begin(), GetParam().equal);
}

INSTANTIATE_TEST_SUITE_P(
    AnyOf, EqualityByValue,
    testing::Values(Pair{"1", "1.0", true}, Pair{"1", "10e-1", true}, Pair{"100", "1e2", true},
                    Pair{"-0", "0", true}, Pair{"0.0", "0e5", true}, Pair{"1", "-1", false},
                    Pair{"0.5", "5e-1", true}, Pair{"1", "\"1\"", false}, Pair{"1", "true", true},
                    Pair{"0", "false", true}, Pair{"true", "1.0", true}, Pair{"true", "2", false},
                    Pair{"true", "false", false}, Pair{"[0.0]", "[false]", true},
                    Pair{"null", "false", false}, Pair{"100000000000000000000", "1e20", true},
                    Pair{"18446744073709551616", "18446744073709551617", false},
                    Pair{"1e400", "1e401", false}, Pair{"1e400", "10e399", true},
                    Pair{"9007199254740993", "9007199254740992", false},
                    Pair{"1234567890123456789012", "1234567890123456789012.000", true},
                    Pair{"12345678901234567.8", "123456789012345678e-1", true},
                    Pair{"\"a\"", "\"\\u0061\"", true}, Pair{"\"a\"", "\"A\"", false},
                    Pair{"{\"a\":1,\"b\":2}", "{\"b\":2.0,\"a\":1}", true},
                    Pair{"{\"a\":1}", "{\"a\":1,\"b\":null}", false},
                    Pair{"{\"a\":7,\"a\":1}", "{\"a\":1}", true},
                    Pair{"{\"a\":1,\"b\":2}", "{\"a\":2,\"b\":1}", false},
                    Pair{"[1,2]", "[2,1]", false}, Pair{"[]", "{}", false},
                    Pair{"[[]]", "[]", false}, Pair{"[1,[2]]", "[1,[2]]", true},
                    Pair{"\"\"", "\"\\u0000\"", false}));

TEST(JsonValue, NullEqualsMissing) {
    const JsonValue value = *parse(R"({"a":null})");
    EXPECT_EQ(value["a"], value["b"]);
    EXPECT_EQ(value["a"], JsonValue());
}

} // namespace
} // namespace korvale
