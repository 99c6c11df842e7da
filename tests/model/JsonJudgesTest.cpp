// QJsonDocument as an outside judge: it and the program's reader say the same of a text, but for
// the differences that are listed here.
#include "ParsedJson.h"
#include "RandomLists.h"
#include "model/JsonValue.h"
#include "model/Values.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace korvale {
namespace {

QJsonValue judged(const QByteArray& text) {
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (document.isObject()) {
        return document.object();
    }
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(QJsonValue::Undefined);
}

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
        Difference{"the judge's numbers are doubles", "[1e400]", true}));

/// The text without what only the judge takes.
QByteArray withoutListed(const QByteArray& text) {
    QByteArray result;
    bool inString = false;
    for (qsizetype i = text.startsWith("\xEF\xBB\xBF") ? 3 : 0; i < text.size(); ++i) {
        const char c = text[i];
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (!inString) {
            inString = c == '"';
            if (c == '.' && (result.isEmpty() || result.back() < '0' || result.back() > '9')) {
                result += '0';
            }
            result += c;
            if (c == '.' && (next < '0' || next > '9')) {
                result += '0';
            }
        } else if (c == '\\') {
            ++i;
            const bool known = QByteArrayView("\"\\/bfnrtu").contains(next);
            result += known ? QByteArray("\\") + next : QByteArray("?");
        } else {
            inString = c != '"';
            result += c >= 0 && c < 0x20 ? '?' : c;
        }
    }
    return result;
}

QString withoutHalves(const QString& text) {
    const std::u32string characters = text.toStdU32String();
    return QString::fromUcs4(characters.data(), static_cast<qsizetype>(characters.size()));
}

void expectEqual(const JsonValue& ours, const QJsonValue& theirs) {
    switch (ours.kind()) {
    case JsonKind::Null:
        EXPECT_TRUE(theirs.isNull());
        break;
    case JsonKind::False:
    case JsonKind::True:
        EXPECT_TRUE(theirs.isBool());
        EXPECT_EQ(ours.kind() == JsonKind::True, theirs.toBool());
        break;
    case JsonKind::Number:
        EXPECT_EQ(std::strtod(std::string(ours.utf8()).c_str(), nullptr), theirs.toDouble(NAN));
        break;
    case JsonKind::Text:
        EXPECT_EQ(*textOnly(ours), withoutHalves(theirs.toString()));
        break;
    case JsonKind::List: {
        ASSERT_EQ(ours.size(), static_cast<std::size_t>(theirs.toArray().size()));
        qsizetype index = 0;
        for (const JsonValue& element : ours.elements()) {
            expectEqual(element, theirs.toArray().at(index++));
        }
        break;
    }
    case JsonKind::Object:
        for (const JsonMember& member : ours.members()) {
            const QString name = *textOnly(member.name);
            if (!name.contains(QChar::ReplacementCharacter)) { // theirs may have several of these
                expectEqual(member.value, theirs.toObject().value(name));
            }
        }
        break;
    }
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
        expectEqual(*ours, theirs);
        ASSERT_FALSE(HasFailure()) << text.constData();
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
