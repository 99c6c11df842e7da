#include "agent/audit/AuditRecord.h"

#include <algorithm>
#include <charconv>

namespace korvale::agent {
namespace {

constexpr std::string_view kBegin = "audit(";
constexpr std::string_view kBeginEnd = "): ";

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-';
}

std::optional<std::string> decoded(std::string_view digits) {
    std::string bytes;
    if (digits.empty() || digits.size() % 2 != 0) {
        return std::nullopt;
    }
    for (; !digits.empty(); digits.remove_prefix(2)) {
        unsigned int byte = 0;
        const char* const end = digits.data() + 2;
        const auto [stop, error] = std::from_chars(digits.data(), end, byte, 16);
        if (error != std::errc() || stop != end) {
            return std::nullopt;
        }
        if (byte != 0) {
            bytes += static_cast<char>(byte);
        }
    }
    return bytes;
}

} // namespace

std::optional<std::string> AuditRecord::plain(std::string_view name) const {
    const auto found = m_fields.find(name);
    return found == m_fields.end() ? std::nullopt : std::optional(found->second.text);
}

std::optional<std::string> AuditRecord::text(std::string_view name) const {
    const auto found = m_fields.find(name);
    if (found == m_fields.end()) {
        return std::nullopt;
    }
    return found->second.quoted ? std::optional(found->second.text) : decoded(found->second.text);
}

std::optional<std::uint64_t> AuditRecord::number(std::string_view name) const {
    const std::string digits = plain(name).value_or(std::string());
    const bool isHex = digits.starts_with("0x");
    const char* const begin = digits.data() + (isHex ? 2 : 0);
    const char* const end = digits.data() + digits.size();
    std::uint64_t value = 0;
    const auto [stop, error] = std::from_chars(begin, end, value, isHex ? 16 : 10);
    return error == std::errc() && stop == end ? std::optional(value) : std::nullopt;
}

std::optional<AuditRecord> parseAuditRecord(std::uint16_t type, std::string_view text) {
    AuditRecord record;
    record.type = type;
    const std::size_t end = text.find(kBeginEnd);
    if (!text.starts_with(kBegin) || end == std::string_view::npos) {
        return std::nullopt;
    }
    text.remove_prefix(end + kBeginEnd.size());
    while (!text.empty()) {
        const auto* const stop = std::find_if_not(text.begin(), text.end(), isNameCharacter);
        const std::string_view name = text.substr(0, static_cast<std::size_t>(stop - text.begin()));
        const bool isField = !name.empty() && text.substr(name.size()).starts_with('=');
        text.remove_prefix(name.size() + (isField ? 1 : 0));
        const bool quoted = isField && text.starts_with('"');
        text.remove_prefix(quoted ? 1 : 0);
        const std::size_t length = text.find(quoted ? '"' : ' ');
        if (quoted && length == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string_view value = text.substr(0, length);
        if (isField && record.m_fields.size() < AuditRecord::mostFields) {
            record.m_fields.try_emplace(std::string(name),
                                        AuditRecord::Value{std::string(value), quoted});
        }
        text.remove_prefix(std::min(text.size(), value.size() + 1));
    }
    return record;
}

} // namespace korvale::agent
