#pragma once

#include "model/JsonDocument.h"

#include <cstddef>
#include <memory>

namespace korvale {

class JsonScanner;

/// Strict RFC 8259 parser: UTF-8, an object or a list on top, nested at most maxJsonDepth deep. It
/// keeps its work space for the next text. One thread at a time.
class JsonParser {
public:
    JsonParser();
    ~JsonParser();
    JsonParser(const JsonParser&) = delete;
    JsonParser& operator=(const JsonParser&) = delete;

    /// The document in the first `size` of `bytes`, or nullptr when any byte of it is wrong or
    /// there is no memory for it. `bytes` has at least jsonPadding writable bytes more; texts lose
    /// their escapes in place, so the bytes are not JSON any more afterwards. More than maxJsonSize
    /// is refused.
    [[nodiscard]] std::shared_ptr<const JsonDocument> parse(std::shared_ptr<char[]> bytes,
                                                            std::size_t size);

private:
    std::shared_ptr<const JsonDocument> parseText(std::shared_ptr<char[]> bytes, std::size_t size);

    std::unique_ptr<JsonScanner> m_scanner;
};

inline constexpr std::size_t maxJsonDepth = 512;
inline constexpr std::size_t maxJsonSize = std::size_t{256} << 20;
inline constexpr std::size_t jsonPadding = 1;

} // namespace korvale
