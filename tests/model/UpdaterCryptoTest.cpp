#include "model/UpdaterCrypto.h"

#include "fakes/UpdaterMessage.h"
#include "model/UpdaterKey.h"
#include "model/UpdaterKeyTables.h"
#include "model/Utf8Text.h"

#include <QFile>

#include <gtest/gtest.h>
#include <string_view>

namespace korvale {
namespace {

using namespace std::string_view_literals;

const QDate someDay(2024, 5, 17);

QDateTime at(QDate day, QTime time = QTime(12, 0)) {
    return {day, time};
}

QString encrypted(const QString& text, QDate day = someDay) {
    return fakes::updaterMessage(text, day);
}

std::optional<QString> decrypt(const QString& base64) {
    return UpdaterCrypto::decryptUpdaterMessage(base64, at(someDay));
}

TEST(UpdaterCrypto, ReadsAMessageOfToday) {
    for (const QString& text :
         {QStringLiteral("Update 1.2.3 wird installiert … 完了"), QStringLiteral("x"),
          QStringLiteral("line\nfeed <b>&\u202Eevil"), QString(5000, u'é')}) {
        EXPECT_EQ(decrypt(encrypted(text)), text);
    }
}

TEST(UpdaterCrypto, ReadsItAtEveryHourOfTheLocalDay) {
    const QString message = encrypted(QStringLiteral("hello"));
    EXPECT_TRUE(UpdaterCrypto::decryptUpdaterMessage(message, at(someDay, QTime(0, 0))));
    EXPECT_TRUE(UpdaterCrypto::decryptUpdaterMessage(message, at(someDay, QTime(23, 59, 59))));
}

TEST(UpdaterCrypto, AMessageOfYesterdayIsNothing) {
    const QString text = QStringLiteral("hello, this is long enough for three blocks of cipher");
    EXPECT_EQ(decrypt(encrypted(text, someDay.addDays(-1))), std::nullopt);
    EXPECT_EQ(decrypt(encrypted(text, someDay.addDays(1))), std::nullopt);
    EXPECT_EQ(decrypt(encrypted(text, someDay)), text);
}

TEST(UpdaterCrypto, ExactlyTheFramingIsTheEmptyText) {
    const std::optional<QString> text = decrypt(fakes::encryptedBytes("12345", someDay));
    ASSERT_TRUE(text);
    EXPECT_TRUE(text->isEmpty());
    EXPECT_FALSE(text->isNull());
}

TEST(UpdaterCrypto, LessThanTheFramingIsNothing) {
    EXPECT_EQ(decrypt(fakes::encryptedBytes("1234", someDay)), std::nullopt);
    EXPECT_EQ(decrypt(fakes::encryptedBytes("", someDay)), std::nullopt);
}

TEST(UpdaterCrypto, WhatIsNotUtf8IsNothing) {
    EXPECT_EQ(decrypt(fakes::encryptedBytes("12\xFF\xFE"
                                            "345",
                                            someDay)),
              std::nullopt);
    EXPECT_EQ(decrypt(fakes::encryptedBytes("12ab\xC3"
                                            "345",
                                            someDay)),
              std::nullopt)
        << "a sequence that is cut off";
}

TEST(UpdaterCrypto, TheFramingMayBeAnyBytes) {
    EXPECT_EQ(decrypt(fakes::encryptedBytes("\x00\xFFtext\xC3\x28\x00"sv, someDay)),
              QStringLiteral("text"));
}

TEST(UpdaterCrypto, ForeignCharactersInBase64AreDropped) {
    QString message = encrypted(QStringLiteral("some longer message for the user"));
    for (qsizetype i = message.size(); i >= 0; i -= 7) {
        message.insert(i, QStringLiteral("\r\n -_\u00e9\u4e00"));
    }
    EXPECT_EQ(decrypt(message), QStringLiteral("some longer message for the user"));
}

TEST(UpdaterCrypto, WhatIsLeftMustBeStrictBase64) {
    const QString message =
        fakes::encryptedBytes("12345678", someDay); // one block: 22 digits, "=="
    ASSERT_TRUE(decrypt(message));
    ASSERT_TRUE(message.endsWith(QStringLiteral("==")));
    EXPECT_EQ(decrypt(message.chopped(1)), std::nullopt);
    EXPECT_EQ(decrypt(message.chopped(2)), std::nullopt);
    EXPECT_EQ(decrypt(message + u'='), std::nullopt);
    EXPECT_EQ(decrypt(message + message), std::nullopt) << "padding in the middle";
    EXPECT_EQ(decrypt(u'=' + message), std::nullopt);
}

TEST(UpdaterCrypto, GarbageIsNothing) {
    for (const QString& garbage :
         {QString(), QStringLiteral(" \n"), QStringLiteral("===="), QStringLiteral("AAAA"),
          QStringLiteral("AAAAAAAAAAAAAAAAAAAAAA=="), QStringLiteral("{\"a\": 1}"),
          QString(QChar(0)), QString(1000, u'ü')}) {
        EXPECT_EQ(decrypt(garbage), std::nullopt) << garbage.toStdString();
    }
}

TEST(UpdaterCrypto, ATruncatedMessageIsNothing) {
    const QByteArray whole = QByteArray::fromBase64(encrypted(QString(100, u'a')).toLatin1());
    for (const qsizetype length : {0, 1, 15, 17, 31, 63}) {
        EXPECT_EQ(decrypt(QString::fromLatin1(whole.first(length).toBase64())), std::nullopt)
            << length;
    }
}

TEST(UpdaterCrypto, AnUnknownDateIsNothing) {
    EXPECT_EQ(UpdaterCrypto::decryptUpdaterMessage(encrypted(QStringLiteral("a")), QDateTime()),
              std::nullopt);
}

TEST(UpdaterCrypto, TheTablesAreThoseOfTheKeyFile) {
    QFile file(QStringLiteral(KORVALE_TEST_KEY_FILE));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray tables = QByteArray::fromHex(file.readAll());
    ASSERT_EQ(tables.size(), 64);
    EXPECT_EQ(QByteArrayView(updaterBaseKey), tables.first(32));
    EXPECT_EQ(QByteArrayView(updaterVectorArea), tables.last(32));
}

/// The base key 100, 101, 102 … with the given bytes in place of its own.
UpdaterKey::Bytes keyWith(std::initializer_list<std::pair<std::size_t, std::uint8_t>> changes) {
    UpdaterKey::Bytes bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(100 + i);
    }
    for (const auto& [index, value] : changes) {
        bytes[index] = value;
    }
    return bytes;
}

TEST(UpdaterKey, DependsOnTheDay) {
    struct Case {
        QDate date;
        UpdaterKey::Bytes key;
    };
    const Case cases[]{
        {QDate(2021, 2, 3), keyWith({{3, 34}, {12, 9}})},       // a Wednesday
        {QDate(2023, 1, 1), keyWith({{1, 1}, {0, 0}})},         // a Sunday sets byte 0 to 0
        {QDate(2021, 12, 31), keyWith({{31, 110}, {20, 155}})}, // day 365, a Friday
        {QDate(2024, 12, 31), keyWith({{31, 111}, {8, 62}})},   // day 366, a Tuesday
        {QDate(2023, 9, 12), keyWith({{12, 0}, {8, 24}})},      // day 255 is 0
        {QDate(2023, 9, 13), keyWith({{13, 1}, {12, 39}})},     // day 256 is 1
        {QDate(2021, 1, 4), keyWith({{4, 4}})},                 // a Monday: both writes meet
        {QDate(2023, 11, 4), keyWith({{4, 53}, {24, 24}})},     // a Saturday
        {QDate(2021, 10, 4), keyWith({{4, 4}})},                // day 277 is lost to the weekday
    };
    for (const Case& expected : cases) {
        EXPECT_EQ(UpdaterKey(keyWith({}), expected.date).bytes(), expected.key)
            << expected.date.toString(Qt::ISODate).toStdString();
    }
}

TEST(Utf8Text, OnlyValidUtf8IsText) {
    EXPECT_EQ(textFromUtf8("gr\xC3\xBC\xC3\x9F"), QStringLiteral("grüß"));
    EXPECT_EQ(textFromUtf8(""), QString());
    EXPECT_FALSE(textFromUtf8("")->isNull());
    EXPECT_EQ(textFromUtf8("\xEF\xBB\xBFx"), QStringLiteral("\uFEFFx"));
    EXPECT_EQ(textFromUtf8("\xEF\xBB\xBF"), QStringLiteral("\uFEFF"));
    EXPECT_EQ(utf8Text("\xEF\xBB\xBFx"), QStringLiteral("\uFEFFx"));
    EXPECT_EQ(textFromUtf8("\xC0\x80"), std::nullopt);     // overlong
    EXPECT_EQ(textFromUtf8("\xED\xA0\x80"), std::nullopt); // surrogate
    EXPECT_EQ(textFromUtf8("abc\xE2\x82"), std::nullopt);  // cut off
}

} // namespace
} // namespace korvale
