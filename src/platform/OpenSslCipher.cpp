#include "platform/OpenSslCipher.h"

#include "core/base/Logging.h"

#include <QLibrary>

#include <bit>
#include <openssl/opensslv.h>
#include <optional>

namespace korvale {
namespace {

template <typename Function>
bool resolve(QLibrary& library, const char* name, Function& function) {
    const QFunctionPointer symbol = library.resolve(name);
    function = std::bit_cast<Function>(symbol);
    return symbol != nullptr;
}

std::optional<OpenSslCipher> load() {
    // The version whose headers this was compiled with: its interface is stable within one number.
    QLibrary library(QStringLiteral("crypto"), OPENSSL_VERSION_MAJOR);
    OpenSslCipher cipher{};
    if (resolve(library, "EVP_CIPHER_CTX_new", cipher.newContext) &&
        resolve(library, "EVP_CIPHER_CTX_free", cipher.freeContext) &&
        resolve(library, "EVP_aes_256_cbc", cipher.aes256Cbc) &&
        resolve(library, "EVP_CipherInit_ex", cipher.init) &&
        resolve(library, "EVP_CipherUpdate", cipher.update) &&
        resolve(library, "EVP_CipherFinal_ex", cipher.finish)) {
        return cipher;
    }
    logLine(LogLevel::Warn, "Updater messages cannot be read: %@",
            [&library] { return library.errorString(); });
    return std::nullopt;
}

} // namespace

const OpenSslCipher* openSslCipher() {
    static const std::optional<OpenSslCipher> cipher = load();
    return cipher ? &*cipher : nullptr;
}

} // namespace korvale
