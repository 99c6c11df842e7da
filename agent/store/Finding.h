#pragma once

#include <cstdint>
#include <string>

namespace korvale::agent {

enum class ThreatKind : int { Unsafe = 1, Abnormal = 2 };

/// Numbers are stored: never renumber.
enum class FindingState : int {
    Detected = 0,    ///< the file lies where it was found
    Quarantined = 1, ///< it lies in the vault
    Waived = 2,      ///< a person said that it may stay
    Deleted = 3,     ///< it is gone, from the disk or from the vault
};

/// One bad content at one path. The same content at the same path is the same finding for ever,
/// however often it is found.
struct Finding {
    std::int64_t number = 0; ///< given by the store, never reused; 0: not stored yet
    std::string id;          ///< SHA-256 of the content, 64 lower-case hex digits
    std::string path;        ///< absolute, raw bytes as the file system has them
    std::string virusName;   ///< UTF-8, as the engine said
    ThreatKind kind = ThreatKind::Unsafe;
    FindingState state = FindingState::Detected;
    std::int64_t firstSeen = 0; ///< wall clock, seconds since 1970
    std::int64_t lastSeen = 0;  ///< as above
    std::uint32_t owner = 0;    ///< user id that owns the file
    std::int64_t size = 0;      ///< bytes

    friend bool operator==(const Finding&, const Finding&) = default;
};

/// A person's word that a content is harmless, wherever it is found.
struct Waive {
    std::string id;         ///< SHA-256 of the content, as in Finding
    std::int64_t since = 0; ///< wall clock, seconds
    std::uint32_t by = 0;   ///< user id of who said so
    std::string reason;     ///< UTF-8, may be empty

    friend bool operator==(const Waive&, const Waive&) = default;
};

} // namespace korvale::agent
