#include "agent/base/Utf8.h"

#include <cstdint>

namespace korvale::agent {
namespace {

constexpr std::uint32_t kNone = 0xffffffff;

std::uint32_t byteAt(std::string_view bytes, std::size_t index) {
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : kNone;
}

/// The bytes after the first, six bits each; kNone when one is missing or no continuation.
std::uint32_t continued(std::string_view bytes, std::uint32_t first, std::size_t length) {
    std::uint32_t point = first;
    for (std::size_t index = 1; index < length; ++index) {
        const std::uint32_t next = byteAt(bytes, index);
        if (next == kNone || (next & 0xc0) != 0x80) {
            return kNone;
        }
        point = point << 6 | (next & 0x3f);
    }
    return point;
}

struct Character {
    std::uint32_t point = kNone;
    std::size_t length = 0;
};

Character firstCharacter(std::string_view bytes) {
    const std::uint32_t lead = byteAt(bytes, 0);
    if (lead < 0x80) {
        return {lead, 1};
    }
    std::uint32_t point = kNone;
    std::size_t length = 0;
    std::uint32_t least = 0;
    if (lead != kNone && (lead & 0xe0) == 0xc0) {
        length = 2, least = 0x80, point = continued(bytes, lead & 0x1f, length);
    } else if (lead != kNone && (lead & 0xf0) == 0xe0) {
        length = 3, least = 0x800, point = continued(bytes, lead & 0x0f, length);
    } else if (lead != kNone && (lead & 0xf8) == 0xf0) {
        length = 4, least = 0x10000, point = continued(bytes, lead & 0x07, length);
    }
    const bool surrogate = point >= 0xd800 && point <= 0xdfff;
    if (length == 0 || point < least || point > 0x10ffff || surrogate) {
        return {};
    }
    return {point, length};
}

} // namespace

std::size_t utf8Length(std::string_view bytes) {
    return firstCharacter(bytes).length;
}

bool isControl(std::string_view character) {
    const std::uint32_t point = firstCharacter(character).point;
    return point < 0x20 || (point >= 0x7f && point < 0xa0) || point == 0x61c ||
           (point >= 0x200e && point <= 0x200f) || (point >= 0x2028 && point <= 0x202e) ||
           (point >= 0x2066 && point <= 0x2069);
}

std::string validUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const std::size_t length = utf8Length(bytes);
        if (length == 0) {
            text += "\xef\xbf\xbd";
            bytes.remove_prefix(1);
        } else {
            text += bytes.substr(0, length);
            bytes.remove_prefix(length);
        }
    }
    return text;
}

} // namespace korvale::agent
