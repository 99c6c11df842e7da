#include "model/UpdaterCrypto.h"

#include "model/CCCryptMessage.h"
#include "model/UpdaterKey.h"
#include "model/UpdaterKeyTables.h"
#include "model/Utf8Text.h"

#include <QByteArray>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string_view>
#include <vector>

namespace korvale {
namespace {

using Bytes = std::vector<std::uint8_t>;

// What stands around the text.
constexpr std::size_t bytesBefore = 2;
constexpr std::size_t bytesAfter = 3;

/// Empty when what is left without the foreign characters is not base64 (RFC 4648, with padding).
Bytes decodeBase64(const QString& text) {
    static constexpr std::u16string_view alphabet =
        u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/=";
    QByteArray base64;
    base64.reserve(text.size());
    for (const QChar character : text) {
        if (alphabet.find(character.unicode()) != std::u16string_view::npos) {
            base64 += static_cast<char>(character.unicode());
        }
    }
    const QByteArray decoded = QByteArray::fromBase64(base64);
    // Qt overlooks missing padding and stray bits; the way back does not.
    return decoded.toBase64() == base64 ? Bytes(decoded.begin(), decoded.end()) : Bytes();
}

std::optional<QString> decrypt(const QString& base64, const QDateTime& localTime) {
    const Bytes encrypted = decodeBase64(base64);
    if (encrypted.empty() || !localTime.isValid()) {
        return std::nullopt;
    }
    const UpdaterKey key(updaterBaseKey, localTime.date());
    Bytes message(encrypted.size());
    std::size_t length = message.size();
    // The first half of the vector area is the vector; the cipher takes no more.
    if (CCCrypt_Message(encrypted.data(), encrypted.size(), key.bytes().data(), key.bytes().size(),
                        updaterVectorArea.data(), message.data(), &length,
                        0) != CCCryptStatus::success ||
        length < bytesBefore + bytesAfter) {
        return std::nullopt;
    }
    const auto* const text = message.data() + bytesBefore;
    return textFromUtf8({text, static_cast<qsizetype>(length - bytesBefore - bytesAfter)});
}

} // namespace

std::optional<QString> UpdaterCrypto::decryptUpdaterMessage(const QString& base64,
                                                            const QDateTime& localTime) {
    try {
        return decrypt(base64, localTime);
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

} // namespace korvale
