#include "model/CCCryptMessage.h"

#include "platform/OpenSslCipher.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <new>
#include <vector>

namespace korvale {
namespace {

/// OpenSSL counts in int.
constexpr std::size_t longestInput = std::numeric_limits<int>::max() - cipherBlockLength;

/// With parameters that are good.
std::int32_t crypt(const std::uint8_t* input, std::size_t inputLength, const std::uint8_t* key,
                   const std::uint8_t* vector, std::uint8_t* output, std::size_t* inOutLength,
                   int encrypt) {
    const OpenSslCipher* const cipher = openSslCipher();
    if (cipher == nullptr) {
        return CCCryptStatus::parameterError;
    }
    const std::unique_ptr<EVP_CIPHER_CTX, decltype(cipher->freeContext)> context(
        cipher->newContext(), cipher->freeContext);
    if (!context) {
        return CCCryptStatus::noMemory;
    }
    if (cipher->init(context.get(), cipher->aes256Cbc(), nullptr, key, vector,
                     encrypt == 0 ? 0 : 1) != 1) {
        return CCCryptStatus::parameterError;
    }
    // OpenSSL may write one block more than is asked for in the end, hence not into `output`.
    std::vector<std::uint8_t> produced(inputLength + cipherBlockLength);
    int length = 0;
    int lastLength = 0;
    if (cipher->update(context.get(), produced.data(), &length, input,
                       static_cast<int>(inputLength)) != 1 ||
        cipher->finish(context.get(), produced.data() + length, &lastLength) != 1) {
        return CCCryptStatus::decodeError;
    }
    const std::size_t producedLength =
        static_cast<std::size_t>(length) + static_cast<std::size_t>(lastLength);
    const bool fits = producedLength <= *inOutLength;
    *inOutLength = producedLength;
    if (!fits) {
        return CCCryptStatus::bufferTooSmall;
    }
    std::copy_n(produced.begin(), producedLength, output);
    return CCCryptStatus::success;
}

} // namespace

std::int32_t CCCrypt_Message(const std::uint8_t* input, std::size_t inputLength,
                             const std::uint8_t* key, std::size_t keyLength,
                             const std::uint8_t* vector, std::uint8_t* output,
                             std::size_t* inOutLength, int encrypt) {
    if (input == nullptr || key == nullptr || vector == nullptr || output == nullptr ||
        inOutLength == nullptr || keyLength != cipherKeyLength || inputLength > longestInput) {
        return CCCryptStatus::parameterError;
    }
    if (encrypt == 0 && inputLength % cipherBlockLength != 0) {
        return CCCryptStatus::alignmentError;
    }
    try {
        return crypt(input, inputLength, key, vector, output, inOutLength, encrypt);
    } catch (const std::bad_alloc&) {
        return CCCryptStatus::noMemory;
    }
}

} // namespace korvale
