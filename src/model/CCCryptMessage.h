#pragma once

#include <cstddef>
#include <cstdint>

namespace korvale {

/// Results of CCCrypt_Message.
namespace CCCryptStatus {
inline constexpr std::int32_t success = 0;
inline constexpr std::int32_t parameterError = -4300;
inline constexpr std::int32_t bufferTooSmall = -4301;
inline constexpr std::int32_t noMemory = -4302;
inline constexpr std::int32_t alignmentError = -4303;
inline constexpr std::int32_t decodeError = -4304;
} // namespace CCCryptStatus

inline constexpr std::size_t cipherKeyLength = 32;
inline constexpr std::size_t cipherBlockLength = 16;

/// AES-256 in CBC mode with PKCS#7 padding; decrypts when `encrypt` is 0, else encrypts. `vector`
/// is one block. `inOutLength` is the room in `output` and receives the number of bytes produced,
/// or, when the room is too small, the number that is needed; then nothing is written. A null
/// pointer, another key length or a message beyond 2 GiB is a parameter error and nothing is done.
/// Any thread.
[[nodiscard]] std::int32_t CCCrypt_Message(const std::uint8_t* input, std::size_t inputLength,
                                           const std::uint8_t* key, std::size_t keyLength,
                                           const std::uint8_t* vector, std::uint8_t* output,
                                           std::size_t* inOutLength, int encrypt);

} // namespace korvale
