#include "agent/quarantine/VaultCipher.h"

#include <algorithm>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <string_view>

namespace korvale::agent {
namespace {

constexpr std::string_view kMark = "KVQ1\n";
constexpr std::size_t kKeySize = 32;
constexpr std::size_t kCounterSize = 16;
static_assert(kMark.size() + kKeySize + kCounterSize == VaultCipher::kHeaderSize);

} // namespace

std::optional<VaultCipher::Header> VaultCipher::makeHeader() {
    Header header{};
    std::copy(kMark.begin(), kMark.end(), header.begin());
    if (RAND_bytes(header.data() + kMark.size(), static_cast<int>(kKeySize + kCounterSize)) != 1) {
        return std::nullopt;
    }
    return header;
}

std::optional<VaultCipher> VaultCipher::begin(const Header& header) {
    if (!std::equal(kMark.begin(), kMark.end(), header.begin())) {
        return std::nullopt;
    }
    Context context(EVP_CIPHER_CTX_new(), &EVP_CIPHER_CTX_free);
    const std::uint8_t* const key = header.data() + kMark.size();
    if (!context ||
        EVP_EncryptInit_ex(context.get(), EVP_aes_256_ctr(), nullptr, key, key + kKeySize) != 1) {
        return std::nullopt;
    }
    return VaultCipher(std::move(context));
}

bool VaultCipher::apply(std::span<std::uint8_t> bytes) {
    int written = 0;
    return EVP_EncryptUpdate(m_context.get(), bytes.data(), &written, bytes.data(),
                             static_cast<int>(bytes.size())) == 1;
}

} // namespace korvale::agent
