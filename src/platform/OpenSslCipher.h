#pragma once

#include <openssl/evp.h>

namespace korvale {

/// What the program uses of OpenSSL's libcrypto.
struct OpenSslCipher {
    decltype(&EVP_CIPHER_CTX_new) newContext;
    decltype(&EVP_CIPHER_CTX_free) freeContext;
    decltype(&EVP_aes_256_cbc) aes256Cbc;
    decltype(&EVP_CipherInit_ex) init;
    decltype(&EVP_CipherUpdate) update;
    decltype(&EVP_CipherFinal_ex) finish;
};

/// The functions; nullptr when the library cannot be loaded (logged once). It is loaded at the
/// first call and not linked, since merely having it in the process costs some 400 kB of private
/// memory and 2.5 million instructions at start, and most sessions never see an updater message.
[[nodiscard]] const OpenSslCipher* openSslCipher();

} // namespace korvale
