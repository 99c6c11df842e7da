#include "model/CCCryptMessage.h"

#include <QByteArray>

#include <gtest/gtest.h>
#include <vector>

namespace korvale {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes bytes(const char* hex) {
    const QByteArray decoded = QByteArray::fromHex(hex);
    return {decoded.begin(), decoded.end()};
}

// NIST SP 800-38A, F.2.5 (CBC-AES256.Encrypt), first block.
const Bytes key = bytes("603deb1015ca71be2b73aef0857d77811f352c073b6108d72d9810a30914dff4");
const Bytes vector = bytes("000102030405060708090a0b0c0d0e0f");
const Bytes plain = bytes("6bc1bee22e409f96e93d7e117393172a");
const Bytes firstBlock = bytes("f58c4c04d6e5f1ba779eabfb5f7bfbd6");

struct Outcome {
    std::int32_t status;
    Bytes output;
    std::size_t length;
};

Outcome crypt(const Bytes& input, std::size_t room, int encrypt) {
    Outcome outcome{0, Bytes(room + 1, 0xEE), room};
    outcome.status =
        CCCrypt_Message(input.data(), input.size(), key.data(), key.size(), vector.data(),
                        outcome.output.data(), &outcome.length, encrypt);
    if (outcome.status == CCCryptStatus::success) {
        outcome.output.resize(outcome.length);
    }
    return outcome;
}

TEST(CCCryptMessage, EncryptsAsThePublishedVectorSays) {
    const Outcome encrypted = crypt(plain, 32, 1);
    ASSERT_EQ(encrypted.status, 0);
    ASSERT_EQ(encrypted.output.size(), 32U); // a full block gets a block of padding
    EXPECT_EQ(Bytes(encrypted.output.begin(), encrypted.output.begin() + 16), firstBlock);
}

TEST(CCCryptMessage, DecryptsWhatItEncrypted) {
    for (const std::size_t length : {1U, 15U, 16U, 17U, 1000U}) {
        const Bytes message(length, 0x5A);
        const Outcome encrypted = crypt(message, length + 16, 1);
        ASSERT_EQ(encrypted.status, 0);
        EXPECT_EQ(encrypted.length, (length / 16 + 1) * 16);
        const Outcome decrypted = crypt(encrypted.output, encrypted.output.size(), 0);
        ASSERT_EQ(decrypted.status, 0);
        EXPECT_EQ(decrypted.output, message);
    }
}

TEST(CCCryptMessage, EveryFlagButZeroEncrypts) {
    EXPECT_EQ(crypt(plain, 32, 7).output, crypt(plain, 32, 1).output);
}

TEST(CCCryptMessage, AMissingPointerOrAnotherKeyLengthIsAParameterError) {
    std::uint8_t output[32]{};
    std::size_t length = sizeof output;
    const auto call = [&](const std::uint8_t* in, const std::uint8_t* k, std::size_t keyLength,
                          const std::uint8_t* iv, std::uint8_t* out, std::size_t* inOut) {
        return CCCrypt_Message(in, 16, k, keyLength, iv, out, inOut, 1);
    };
    const std::uint8_t* const in = plain.data();
    EXPECT_EQ(call(nullptr, key.data(), 32, vector.data(), output, &length), -4300);
    EXPECT_EQ(call(in, nullptr, 32, vector.data(), output, &length), -4300);
    EXPECT_EQ(call(in, key.data(), 32, nullptr, output, &length), -4300);
    EXPECT_EQ(call(in, key.data(), 32, vector.data(), nullptr, &length), -4300);
    EXPECT_EQ(call(in, key.data(), 32, vector.data(), output, nullptr), -4300);
    EXPECT_EQ(call(in, key.data(), 16, vector.data(), output, &length), -4300);
    EXPECT_EQ(call(in, key.data(), 33, vector.data(), output, &length), -4300);
    EXPECT_EQ(call(in, key.data(), 0, vector.data(), output, &length), -4300);
    EXPECT_EQ(length, sizeof output) << "nothing is done";
    EXPECT_EQ(output[0], 0);
}

TEST(CCCryptMessage, AMessageBeyondTheLibrarysReachIsAParameterError) {
    std::uint8_t output = 0;
    std::size_t length = 1;
    EXPECT_EQ(CCCrypt_Message(plain.data(), std::size_t{1} << 40, key.data(), 32, vector.data(),
                              &output, &length, 1),
              -4300);
}

TEST(CCCryptMessage, TooLittleRoomLeavesTheOutputAloneAndSaysHowMuchIsNeeded) {
    const Outcome encrypted = crypt(plain, 31, 1);
    EXPECT_EQ(encrypted.status, -4301);
    EXPECT_EQ(encrypted.length, 32U);
    EXPECT_EQ(encrypted.output, Bytes(32, 0xEE));

    const Outcome decrypted = crypt(crypt(plain, 32, 1).output, 15, 0);
    EXPECT_EQ(decrypted.status, -4301);
    EXPECT_EQ(decrypted.length, 16U);
    EXPECT_EQ(decrypted.output, Bytes(16, 0xEE));
}

TEST(CCCryptMessage, AnEncryptedMessageIsWholeBlocks) {
    EXPECT_EQ(crypt(Bytes(15, 0), 64, 0).status, -4303);
    EXPECT_EQ(crypt(Bytes(33, 0), 64, 0).status, -4303);
}

TEST(CCCryptMessage, BadPaddingIsADecodeError) {
    Bytes encrypted = crypt(plain, 32, 1).output;
    encrypted.resize(16); // the padding is cut off
    EXPECT_EQ(crypt(encrypted, 32, 0).status, -4304);
    const std::uint8_t nothing = 0;
    std::uint8_t output[16];
    std::size_t length = sizeof output;
    EXPECT_EQ(CCCrypt_Message(&nothing, 0, key.data(), 32, vector.data(), output, &length, 0),
              -4304);
}

} // namespace
} // namespace korvale
