// An updater's message: any text, and any bytes that really were encrypted today.

#include "Target.h"
#include "model/CCCryptMessage.h"
#include "model/UpdaterCrypto.h"
#include "model/UpdaterKey.h"
#include "model/UpdaterKeyTables.h"
#include "model/Utf8Text.h"

#include <QByteArrayView>

#include <vector>

using namespace korvale;

namespace {

const QDate today(2024, 5, 17);

std::optional<QString> decrypt(const QString& base64) {
    return UpdaterCrypto::decryptUpdaterMessage(base64, QDateTime(today, QTime(12, 0)));
}

QString encrypt(const std::uint8_t* data, std::size_t size) {
    const UpdaterKey key(updaterBaseKey, today);
    std::vector<std::uint8_t> output(size + cipherBlockLength);
    std::size_t length = output.size();
    if (CCCrypt_Message(data, size, key.bytes().data(), key.bytes().size(),
                        updaterVectorArea.data(), output.data(), &length,
                        1) != CCCryptStatus::success) {
        std::abort();
    }
    const QByteArrayView encrypted(output.data(), static_cast<qsizetype>(length));
    return QString::fromLatin1(encrypted.toByteArray().toBase64());
}

} // namespace

const fuzz::Grammar& fuzz::targetGrammar() {
    return fuzz::addresses; // words of no importance here: its separators cut Base64 into pieces
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    if (const auto text = textFromUtf8(bytes)) {
        fuzz::taken += decrypt(*text) ? 1U : 0U;
    }
    if (data != nullptr) {
        const auto expected = size >= 5 ? textFromUtf8(bytes.sliced(2).chopped(3)) : std::nullopt;
        if (decrypt(encrypt(data, size)) != expected) {
            std::abort();
        }
        fuzz::taken += expected ? 1U : 0U;
    }
    return 0;
}
