#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace korvale::agent {

/// When the official signatures were made, from clamd's answer to VERSION: "ClamAV 1.4.6/27900/Fri
/// Nov 14 09:00:00 2026", in local time. No value for any other text ("ClamAV 1.4.6").
[[nodiscard]] std::optional<std::chrono::sys_seconds> signatureTimeOf(std::string_view version);

/// What lies in clamd's folder of signatures.
struct SignatureFiles {
    std::optional<std::chrono::sys_seconds> newest; ///< no value: none there, or not readable
    std::string key;                                ///< another one for other files; empty as above
    bool complete = false; ///< the two official ones without which Debian does not start clamd
};

[[nodiscard]] SignatureFiles lookAtSignatures(const std::string& folder);

} // namespace korvale::agent
