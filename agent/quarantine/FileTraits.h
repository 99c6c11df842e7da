#pragma once

#include <cstdint>
#include <string>

namespace korvale::agent {

struct QuarantineRecord;

/// Fills in owner, mode, times, flags and extended attributes (access lists are among them) of the
/// file behind `descriptor`. False with errno when they cannot be asked.
[[nodiscard]] bool captureTraits(int descriptor, QuarantineRecord& record);

/// Gives them to another file, flags excepted. A sentence about what the file system would not
/// take; empty when all is as it was. Never gives more rights than the file had.
[[nodiscard]] std::string applyTraits(int descriptor, const QuarantineRecord& record);

/// Immutable and append-only: what keeps a file from being renamed.
[[nodiscard]] bool isHeldFast(std::uint32_t inodeFlags);
/// Takes these two away. False with errno when that is not possible.
[[nodiscard]] bool loosen(int descriptor, std::uint32_t inodeFlags);
/// Gives a file the flags that a person may set (chattr). False with errno.
[[nodiscard]] bool applyFlags(int descriptor, std::uint32_t inodeFlags);

} // namespace korvale::agent
