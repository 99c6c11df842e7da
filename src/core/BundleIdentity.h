#pragma once

#include "core/InfoDictionary.h"

#include <QString>

#include <array>
#include <span>

namespace korvale {

/// Capacity of each identity text. A text of that many bytes or more is cut there, unterminated; of
/// a character that would be cut nothing is left.
inline constexpr std::size_t bundleTextCapacity = 128;

/// The texts of the start-up version lines: zero-filled, then filled with UTF-8. Written once, by
/// OSLoggingStartup, before any other thread exists.
struct BundleIdentity {
    std::array<char, bundleTextCapacity> identifier{};
    std::array<char, bundleTextCapacity> version{};
    std::array<char, bundleTextCapacity> name{};
};

[[nodiscard]] const BundleIdentity& bundleIdentity();

/// The first act of the process: fills the identity texts. Always 0.
int OSLoggingStartup(const InfoDictionary& info, const QString& processName);

/// Each fills the destination with at most its size, and leaves the rest as it is.
void BundleIdentifierInitPath(std::span<char> destination, const InfoDictionary& info);
/// "short version (version)".
void BundleIdentifierInitVersion(std::span<char> destination, const InfoDictionary& info);
/// "CFBundleDisplayName", else "CFBundleName", else the process's name.
void BundleIdentifierInitName(std::span<char> destination, const InfoDictionary& info,
                              const QString& processName);

/// What a buffer holds: up to its first NUL, or all of it.
[[nodiscard]] QString bufferText(std::span<const char> buffer);

} // namespace korvale
