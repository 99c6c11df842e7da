#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

struct evp_md_ctx_st;

namespace korvale::agent {

/// SHA-256 of bytes that come piece by piece.
class ContentDigest {
public:
    ContentDigest();
    void add(std::span<const std::uint8_t> bytes);
    /// 64 lower-case hex digits; empty when the digest failed. Ends it.
    [[nodiscard]] std::string hex();

private:
    std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st*)> m_context;
    bool m_good;
};

/// Of the whole file behind `descriptor`, whose offset stays; nothing when it cannot be read.
[[nodiscard]] std::optional<std::string> contentDigest(int descriptor);

} // namespace korvale::agent
