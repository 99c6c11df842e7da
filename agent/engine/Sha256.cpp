#include "agent/engine/Sha256.h"

#include <cerrno>
#include <charconv>
#include <memory>
#include <openssl/evp.h>
#include <unistd.h>
#include <vector>

namespace korvale::agent {
namespace {

constexpr std::size_t kBlock = std::size_t{256} << 10;

struct FreeContext {
    void operator()(EVP_MD_CTX* context) const { ::EVP_MD_CTX_free(context); }
};
using Context = std::unique_ptr<EVP_MD_CTX, FreeContext>;

Context begun() {
    Context context(::EVP_MD_CTX_new());
    if (context && ::EVP_DigestInit_ex(context.get(), ::EVP_sha256(), nullptr) != 1) {
        context.reset();
    }
    return context;
}

std::optional<Sha256Digest> finished(const Context& context) {
    Sha256Digest digest{};
    unsigned int length = 0;
    if (::EVP_DigestFinal_ex(context.get(), digest.data(), &length) != 1 ||
        length != digest.size()) {
        return std::nullopt;
    }
    return digest;
}

} // namespace

std::string toHex(const Sha256Digest& digest) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    text.reserve(kSha256Digits);
    for (const std::uint8_t byte : digest) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::optional<Sha256Digest> parseSha256(std::string_view hex) {
    Sha256Digest digest{};
    if (hex.size() != kSha256Digits) {
        return std::nullopt;
    }
    for (std::size_t index = 0; index < digest.size(); ++index) {
        const char* const pair = hex.data() + 2 * index;
        const auto [behind, error] = std::from_chars(pair, pair + 2, digest[index], 16);
        if (error != std::errc() || behind != pair + 2) {
            return std::nullopt;
        }
    }
    return digest;
}

std::optional<Sha256Digest> sha256Of(std::string_view bytes) {
    const Context context = begun();
    if (!context || ::EVP_DigestUpdate(context.get(), bytes.data(), bytes.size()) != 1) {
        return std::nullopt;
    }
    return finished(context);
}

std::optional<Sha256Digest> sha256Of(int descriptor, std::int64_t limit,
                                     std::chrono::steady_clock::time_point deadline,
                                     const std::stop_token& stop) {
    const Context context = begun();
    std::vector<char> block(kBlock);
    std::int64_t offset = 0;
    while (context && !stop.stop_requested() && std::chrono::steady_clock::now() < deadline) {
        const ssize_t count = ::pread(descriptor, block.data(), block.size(), offset);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count == 0) {
            return finished(context);
        }
        if (count < 0 || (offset += count) > limit ||
            ::EVP_DigestUpdate(context.get(), block.data(), static_cast<std::size_t>(count)) != 1) {
            break;
        }
    }
    return std::nullopt;
}

} // namespace korvale::agent
