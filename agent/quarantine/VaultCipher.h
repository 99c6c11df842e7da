#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>

struct evp_cipher_ctx_st;

namespace korvale::agent {

/// Turns content into something that no scanner, indexer or double click recognises, and back
/// (AES-256 in counter mode). Its key stands at the beginning of each copy: this keeps nothing
/// secret, the vault's permissions do.
class VaultCipher {
public:
    /// "KVQ1\n", 32 bytes of key, 16 bytes of counter.
    static constexpr std::size_t kHeaderSize = 53;
    using Header = std::array<std::uint8_t, kHeaderSize>;

    /// A header with a new random key; nothing when there is no randomness.
    static std::optional<Header> makeHeader();
    /// Nothing when it is no such header.
    static std::optional<VaultCipher> begin(const Header& header);

    /// Enciphers or deciphers the next bytes of the stream in place.
    bool apply(std::span<std::uint8_t> bytes);

private:
    using Context = std::unique_ptr<evp_cipher_ctx_st, void (*)(evp_cipher_ctx_st*)>;
    explicit VaultCipher(Context context) : m_context(std::move(context)) {}

    Context m_context;
};

} // namespace korvale::agent
