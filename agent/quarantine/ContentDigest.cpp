#include "agent/quarantine/ContentDigest.h"

#include <array>
#include <cerrno>
#include <openssl/evp.h>
#include <unistd.h>
#include <vector>

namespace korvale::agent {
namespace {

constexpr std::size_t kPiece = std::size_t{256} * 1024;

} // namespace

ContentDigest::ContentDigest()
    : m_context(EVP_MD_CTX_new(), &EVP_MD_CTX_free),
      m_good(m_context && EVP_DigestInit_ex(m_context.get(), EVP_sha256(), nullptr) == 1) {}

void ContentDigest::add(std::span<const std::uint8_t> bytes) {
    m_good = m_good && EVP_DigestUpdate(m_context.get(), bytes.data(), bytes.size()) == 1;
}

std::string ContentDigest::hex() {
    std::array<std::uint8_t, EVP_MAX_MD_SIZE> digest{};
    unsigned int size = 0;
    if (!m_good || EVP_DigestFinal_ex(m_context.get(), digest.data(), &size) != 1) {
        return {};
    }
    m_good = false;
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (unsigned int i = 0; i < size; ++i) {
        text += kDigits[digest[i] >> 4];
        text += kDigits[digest[i] & 15];
    }
    return text;
}

std::optional<std::string> contentDigest(int descriptor) {
    ContentDigest digest;
    std::vector<std::uint8_t> piece(kPiece);
    off_t offset = 0;
    for (;;) {
        const ssize_t count = ::pread(descriptor, piece.data(), piece.size(), offset);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return std::nullopt;
        }
        if (count == 0) {
            std::string hex = digest.hex();
            return hex.empty() ? std::nullopt : std::optional(std::move(hex));
        }
        digest.add(std::span(piece).first(static_cast<std::size_t>(count)));
        offset += count;
    }
}

} // namespace korvale::agent
