#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

namespace korvale::agent {

/// What the agent knows of an engine, as of the last time it asked.
struct EngineState {
    bool reachable = false; ///< it answered when it was last asked, and can read what it is given
    std::string version;    ///< as the engine writes it, valid UTF-8; empty: never answered
    /// Changes whenever the engine may judge otherwise: part of the verdict cache's key. Empty: not
    /// known, no verdict may be remembered.
    std::string signatureKey;
    std::optional<std::chrono::sys_seconds> signatureTime; ///< of the newest signatures
    /// Larger files are answered without having been read. Bytes.
    std::int64_t maxFileSize = std::numeric_limits<std::int64_t>::max();
    /// The signatures are there without which the system does not start it.
    bool startable = false;
    /// The process that listens on its socket, where it runs in one of its own: the service
    /// manager's when that listens for it; 0: none.
    std::int32_t listener = 0;
    std::string trouble; ///< why it is not reachable, for people; empty when it is
    /// False: it answers, but calls clean what it cannot have scanned; it counts as not reachable.
    bool believed = true;
    /// How often it has found a known bad file that it was given to see whether it scans, and how
    /// often it was caught not scanning. Provisional verdicts given before a proof hold; those
    /// since the last proof do not when a doubt comes first. Both only grow.
    std::uint64_t proofs = 0;
    std::uint64_t doubts = 0;

    friend bool operator==(const EngineState&, const EngineState&) = default;
};

/// Signatures older than this protect from nothing that is new.
inline constexpr std::chrono::days kFreshFor{7};

/// Reachable, and with signatures that are not too old at `now`. A signature time after `now` is a
/// clock that was set back, and no reason to call the signatures old.
[[nodiscard]] inline bool isFresh(const EngineState& state, std::chrono::sys_seconds now) {
    return state.reachable && state.signatureTime && now - *state.signatureTime <= kFreshFor;
}

} // namespace korvale::agent
