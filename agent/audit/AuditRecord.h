#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace korvale::agent {

/// The fields of one record of the kernel's audit stream.
class AuditRecord {
public:
    /// Fields beyond that many are left out; the kernel's records have some twenty.
    static constexpr std::size_t mostFields = 64;

    std::uint16_t type = 0; ///< AUDIT_SECCOMP, AUDIT_AVC, …

    /// As it stands there, without quotes. No value: there is no such field.
    [[nodiscard]] std::optional<std::string> plain(std::string_view name) const;
    /// A text that somebody else chose: the kernel writes it in quotes or, with anything odd in it,
    /// as hex digits without. Raw bytes, without NUL. No value: missing, or neither of the two.
    [[nodiscard]] std::optional<std::string> text(std::string_view name) const;
    /// Decimal, or hexadecimal behind "0x".
    [[nodiscard]] std::optional<std::uint64_t> number(std::string_view name) const;

private:
    friend std::optional<AuditRecord> parseAuditRecord(std::uint16_t type, std::string_view text);
    struct Value {
        std::string text;
        bool quoted = false;
    };
    std::map<std::string, Value, std::less<>> m_fields;
};

/// Takes apart "audit(SECONDS.MS:SERIAL): NAME=VALUE NAME="VALUE" …". Words that are no field are
/// left out; of a name that comes twice the first counts. No value for what is no record, or ends
/// within quotes.
[[nodiscard]] std::optional<AuditRecord> parseAuditRecord(std::uint16_t type,
                                                          std::string_view text);

} // namespace korvale::agent
