#include "agent/publish/UpdaterStatusWriter.h"

#include "agent/publish/BuildSettings.h"
#include "fakes/TestFolder.h"

#include <openssl/evp.h>

namespace korvale::agent {
namespace {

const unsigned char* bytes(const QByteArray& data) {
    return static_cast<const unsigned char*>(static_cast<const void*>(data.constData()));
}

/// What a reader with that key gets, noise included; empty when it does not decrypt.
QByteArray decrypted(const QByteArray& base64, const QByteArray& key) {
    const QByteArray data = QByteArray::fromBase64(base64);
    const QByteArray vector = QByteArray::fromHex(build::kVectorHex);
    QByteArray plain(data.size() + 16, '\0');
    auto* out = static_cast<unsigned char*>(static_cast<void*>(plain.data()));
    int length = 0;
    int rest = 0;
    EVP_CIPHER_CTX* context = EVP_CIPHER_CTX_new();
    const bool good =
        EVP_DecryptInit_ex(context, EVP_aes_256_cbc(), nullptr, bytes(key), bytes(vector)) == 1 &&
        EVP_DecryptUpdate(context, out, &length, bytes(data), static_cast<int>(data.size())) == 1 &&
        EVP_DecryptFinal_ex(context, out + length, &rest) == 1;
    EVP_CIPHER_CTX_free(context);
    return good ? plain.left(length + rest) : QByteArray();
}

QByteArray baseKeyWith(std::initializer_list<std::pair<int, int>> changes) {
    QByteArray key = QByteArray::fromHex(build::kBaseKeyHex);
    for (const auto& [index, value] : changes) {
        key[index] = static_cast<char>(value);
    }
    return key;
}

struct KeyCase {
    QDate day;
    std::initializer_list<std::pair<int, int>> changes;
};

TEST(UpdaterKey, FollowsTheDay) {
    const KeyCase cases[] = {
        {QDate(2021, 2, 3), {{3, 34}, {12, 9}}},     // a Wednesday
        {QDate(2024, 3, 4), {{4, 4}}},               // a Monday: both writes on byte 4, 4 * 1 wins
        {QDate(2024, 6, 2), {{2, 154}, {0, 0}}},     // a Sunday
        {QDate(2024, 12, 31), {{31, 111}, {8, 62}}}, // day 366, a Tuesday
        {QDate(2023, 9, 12), {{12, 0}, {8, 24}}},    // day 255
    };
    for (const KeyCase& test : cases) {
        const UpdaterKey key = updaterKey(test.day);
        EXPECT_EQ(QByteArray(static_cast<const char*>(static_cast<const void*>(key.data())),
                             static_cast<qsizetype>(key.size())),
                  baseKeyWith(test.changes))
            << test.day.toString(Qt::ISODate).toStdString();
    }
}

TEST(EncryptedStatus, HasTwoBytesBeforeAndThreeAfterTheText) {
    const QDate day(2021, 2, 3);
    const QByteArray key = baseKeyWith({{3, 34}, {12, 9}});
    for (const QString& text : {QString(), QStringLiteral("Ladevorgang läuft: 40 % ✓"),
                                QString(1000, u'x'), QStringLiteral("11 bytes ok")}) {
        const std::optional<QByteArray> status = encryptedStatus(text, day);
        ASSERT_TRUE(status.has_value());
        const QByteArray plain = decrypted(*status, key);
        ASSERT_EQ(plain.size(), text.toUtf8().size() + 5);
        EXPECT_EQ(QString::fromUtf8(plain.mid(2, plain.size() - 5)), text);
    }
}

TEST(EncryptedStatus, IsForItsDayAlone) {
    const std::optional<QByteArray> status =
        encryptedStatus(QStringLiteral("text"), QDate(2021, 2, 4));
    ASSERT_TRUE(status.has_value());
    const QByteArray plain = decrypted(*status, baseKeyWith({{3, 34}, {12, 9}}));
    EXPECT_FALSE(plain.contains("text"));
}

TEST(UpdaterStatusWriter, NewNamesSortAfterOldOnes) {
    const TestFolder folder;
    UpdaterStatusWriter writer(folder.path(QStringLiteral("status")));
    QString last = QStringLiteral("0");
    for (int i = 0; i < 50; ++i) {
        const std::optional<QString> name =
            writer.write(QStringLiteral("text"), QDate::currentDate());
        ASSERT_TRUE(name.has_value());
        EXPECT_GT(*name, last);
        EXPECT_TRUE(name->endsWith(QStringLiteral(".kvupupdate")));
        last = *name;
    }
    EXPECT_EQ(QDir(folder.path(QStringLiteral("status"))).entryList(QDir::Files).size(), 50);
}

TEST(UpdaterStatusWriter, TakesAGivenNameInsideItsFolder) {
    const TestFolder folder;
    UpdaterStatusWriter writer(folder.path(QStringLiteral("status")));
    const QDate today = QDate::currentDate();
    EXPECT_EQ(writer.write(QStringLiteral("t"), today, QStringLiteral("1.kvupupdate")),
              QStringLiteral("1.kvupupdate"));
    EXPECT_FALSE(writer.write(QStringLiteral("t"), today, QStringLiteral("../1")).has_value());
    EXPECT_FALSE(writer.error().isEmpty());
}

} // namespace
} // namespace korvale::agent
