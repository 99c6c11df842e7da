#include "agent/publish/UpdaterStatusWriter.h"

#include "agent/publish/BuildSettings.h"
#include "agent/publish/HostCacheWriter.h"

#include <QDateTime>
#include <QRandomGenerator>

#include <algorithm>
#include <memory>
#include <openssl/evp.h>

namespace korvale::agent {
namespace {

constexpr int kNoiseBefore = 2;
constexpr int kNoiseAfter = 3;
constexpr qsizetype kBlock = 16;

QByteArray noise(int length) {
    QByteArray bytes;
    for (int i = 0; i < length; ++i) {
        bytes += static_cast<char>(QRandomGenerator::global()->bounded(256));
    }
    return bytes;
}

const unsigned char* bytesOf(const QByteArray& data) {
    return static_cast<const unsigned char*>(static_cast<const void*>(data.constData()));
}

std::optional<QByteArray> encrypted(const QByteArray& plain, const UpdaterKey& key) {
    using Context = std::unique_ptr<EVP_CIPHER_CTX, decltype(&EVP_CIPHER_CTX_free)>;
    const Context context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    const QByteArray vector = QByteArray::fromHex(build::kVectorHex);
    QByteArray output(plain.size() + kBlock, '\0');
    auto* out = static_cast<unsigned char*>(static_cast<void*>(output.data()));
    int length = 0;
    int rest = 0;
    if (!context ||
        EVP_EncryptInit_ex(context.get(), EVP_aes_256_cbc(), nullptr, key.data(),
                           bytesOf(vector)) != 1 ||
        EVP_EncryptUpdate(context.get(), out, &length, bytesOf(plain),
                          static_cast<int>(plain.size())) != 1 ||
        EVP_EncryptFinal_ex(context.get(), out + length, &rest) != 1) {
        return std::nullopt;
    }
    output.truncate(length + rest);
    return output;
}

} // namespace

UpdaterKey updaterKey(const QDate& day) {
    const QByteArray base = QByteArray::fromHex(build::kBaseKeyHex);
    UpdaterKey key{};
    std::copy_n(base.cbegin(), key.size(), key.begin());
    const int weekday = day.dayOfWeek() % 7; // 0 is Sunday
    key.at(static_cast<std::size_t>(day.day())) = static_cast<unsigned char>(day.dayOfYear() % 255);
    // The second write wins where both fall on one byte.
    key.at(std::size_t{4} * static_cast<std::size_t>(weekday)) =
        static_cast<unsigned char>((day.day() * weekday) % 256);
    return key;
}

std::optional<QByteArray> encryptedStatus(const QString& text, const QDate& day) {
    const QByteArray plain = noise(kNoiseBefore) + text.toUtf8() + noise(kNoiseAfter);
    const std::optional<QByteArray> data = encrypted(plain, updaterKey(day));
    if (!data) {
        return std::nullopt;
    }
    return data->toBase64();
}

UpdaterStatusWriter::UpdaterStatusWriter(QString folder) : m_folder(std::move(folder)) {}

std::optional<QString> UpdaterStatusWriter::write(const QString& text, const QDate& day,
                                                  const QString& name) {
    const std::optional<QByteArray> content = encryptedStatus(text, day);
    if (!content) {
        m_error = QStringLiteral("the cipher failed");
        return std::nullopt;
    }
    QString chosen = name;
    for (int number = 1; chosen.isEmpty() || (name.isEmpty() && chosen <= m_lastName); ++number) {
        chosen = QStringLiteral("%1-%2.kvupupdate")
                     .arg(QDateTime::currentDateTimeUtc().toString(
                         QStringLiteral("yyyyMMdd-HHmmss-zzz")))
                     .arg(number, 3, 10, QChar(u'0'));
    }
    HostCacheWriter writer(m_folder);
    if (!writer.write(chosen, *content)) {
        m_error = writer.error();
        return std::nullopt;
    }
    if (name.isEmpty()) {
        m_lastName = chosen;
    }
    return chosen;
}

} // namespace korvale::agent
