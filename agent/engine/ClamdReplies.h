#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvale::agent {

struct ClamdReply {
    std::uint32_t number = 0; ///< of the command in its session, from 1
    std::string text;         ///< without number and terminator, any bytes

    friend bool operator==(const ClamdReply&, const ClamdReply&) = default;
};

/// Takes the bytes of a clamd session apart: "NUMBER: TEXT" and a NUL each. Trusts nothing: what is
/// not of that form breaks the session for good, as nothing behind it can be assigned to a file.
class ClamdReplies {
public:
    static constexpr std::size_t longestReply = 4096;

    /// Adds bytes and appends the replies they complete. False once the session is broken; replies
    /// before the fault are appended nevertheless.
    [[nodiscard]] bool feed(std::string_view bytes, std::vector<ClamdReply>& replies);

    /// What broke the session (the head of it), for the log.
    [[nodiscard]] const std::string& fault() const { return m_fault; }

private:
    bool take(std::string_view line, std::vector<ClamdReply>& replies);

    std::string m_begun;
    std::string m_fault;
};

} // namespace korvale::agent
