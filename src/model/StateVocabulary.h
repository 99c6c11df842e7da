#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace korvale {

// The agent's state numbers in the user's language. Nothing here fails; main thread.

/// Bits of a file's threat state.
namespace FileStateBit {
inline constexpr std::uint32_t unsafe = 1;
inline constexpr std::uint32_t abnormal = 2;
inline constexpr std::uint32_t waived = 4;
inline constexpr std::uint32_t quarantined = 8;
inline constexpr std::uint32_t running = 16;
} // namespace FileStateBit

/// Bits of an event. Not those of a file's state: 2 and 8 mean something else here, on purpose.
namespace EventBit {
inline constexpr std::uint32_t detected = 1;
inline constexpr std::uint32_t quarantined = 2;
inline constexpr std::uint32_t waived = 4;
inline constexpr std::uint32_t removed = 8;
inline constexpr std::uint32_t stateChange = 16;
} // namespace EventBit

/// States of a process.
namespace ProcessState {
inline constexpr std::uint32_t alert = 0;
inline constexpr std::uint32_t ignored = 1;
inline constexpr std::uint32_t blocked = 2;
inline constexpr std::uint32_t terminated = 3;
} // namespace ProcessState

/// The word's key, which is the same in every language.
[[nodiscard]] const char* stateKeyFromValue(std::uint32_t fileState);
[[nodiscard]] QString stateStringFromValue(std::uint32_t fileState);

[[nodiscard]] const char* procStateKeyFromValue(std::uint32_t processState);
[[nodiscard]] QString procStateStringFromValue(std::uint32_t processState);

[[nodiscard]] const char* eventKeyFromValue(std::uint32_t event);
/// What an event did to a file. The words of a state change each end in a blank, the last one too.
[[nodiscard]] QString eventThreatStringFromValue(std::uint32_t event, std::uint32_t fileState);

/// Name of an exploit violation, from its type in decimal without leading zeros; the same in every
/// language. No value for a type outside of the table.
[[nodiscard]] std::optional<QString> memdefTypeString(QStringView type);

} // namespace korvale
