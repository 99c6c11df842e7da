#include "model/JsonEscapes.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace korvale {

namespace {

char simpleEscape(char c) {
    constexpr std::string_view names = "\"\\/bfnrt";
    constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
    const std::size_t at = names.find(c);
    return at == std::string_view::npos ? '\0' : meanings[at];
}

std::optional<std::uint32_t> fourHexDigits(std::span<const char> text) {
    if (text.size() < 4) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (const char c : text.first(4)) {
        constexpr std::string_view digits = "0123456789abcdefABCDEF";
        const std::size_t at = digits.find(c);
        if (at == std::string_view::npos) {
            return std::nullopt;
        }
        value = value * 16 + static_cast<std::uint32_t>(at < 16 ? at : at - 6);
    }
    return value;
}

constexpr std::uint32_t replacementCharacter = 0xFFFD;

bool isHighSurrogate(std::uint32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}

bool isLowSurrogate(std::uint32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The code point behind "\u", taken off the front of `rest` (one or two escapes long). Half a
/// surrogate pair is valid JSON and no character: writers spell bytes that are no text that way.
std::optional<std::uint32_t> takeCodePoint(std::span<char>& rest) {
    const auto first = fourHexDigits(rest);
    if (!first) {
        return std::nullopt;
    }
    rest = rest.subspan(4);
    if (!isHighSurrogate(*first)) {
        return isLowSurrogate(*first) ? replacementCharacter : first;
    }
    if (rest.size() < 2 || rest[0] != '\\' || rest[1] != 'u') {
        return replacementCharacter;
    }
    const auto second = fourHexDigits(rest.subspan(2));
    if (!second || !isLowSurrogate(*second)) {
        return replacementCharacter; // what follows stands for itself
    }
    rest = rest.subspan(6);
    return 0x10000 + ((*first - 0xD800) << 10) + (*second - 0xDC00);
}

/// Writes `code` in UTF-8, which is never longer than its escape; returns the place behind it.
char* putUtf8(char* out, std::uint32_t code) {
    const auto put = [&out](std::uint32_t byte) { *out++ = static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
        return out;
    }
    if (code < 0x800) {
        put(0xC0 | (code >> 6));
    } else {
        if (code < 0x10000) {
            put(0xE0 | (code >> 12));
        } else {
            put(0xF0 | (code >> 18));
            put(0x80 | ((code >> 12) & 0x3F));
        }
        put(0x80 | ((code >> 6) & 0x3F));
    }
    put(0x80 | (code & 0x3F));
    return out;
}

} // namespace

std::optional<std::size_t> resolveEscapes(std::span<char> text) {
    char* out = text.data();
    std::span<char> rest = text;
    while (!rest.empty()) {
        const auto* backslash = static_cast<char*>(std::memchr(rest.data(), '\\', rest.size()));
        const std::size_t plain =
            backslash ? static_cast<std::size_t>(backslash - rest.data()) : rest.size();
        std::memmove(out, rest.data(), plain);
        out += plain;
        rest = rest.subspan(plain);
        if (rest.empty()) {
            break;
        }
        if (rest.size() < 2) {
            return std::nullopt;
        }
        const char name = rest[1];
        rest = rest.subspan(2);
        if (name == 'u') {
            const auto code = takeCodePoint(rest);
            if (!code) {
                return std::nullopt;
            }
            out = putUtf8(out, *code);
        } else if (const char meaning = simpleEscape(name)) {
            *out++ = meaning;
        } else {
            return std::nullopt;
        }
    }
    return static_cast<std::size_t>(out - text.data());
}

} // namespace korvale
