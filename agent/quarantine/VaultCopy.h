#pragma once

#include <cstdint>
#include <string>

namespace korvale::agent {

/// What a copy into or out of the vault came to.
struct CopyResult {
    int error = 0;         ///< errno; EBADMSG: no copy of ours, or cut off. 0: all was copied
    std::string sha256;    ///< of the plain content
    std::int64_t size = 0; ///< bytes of the plain content
};

/// Writes header and enciphered content of `source` into the empty file `target`, and waits until
/// it is on the disk. Both borrowed; the offset of `source` stays.
[[nodiscard]] CopyResult encipherInto(int source, int target);
/// The way back, likewise. The caller compares the digest.
[[nodiscard]] CopyResult decipherInto(int source, int target);

} // namespace korvale::agent
