#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace korvale::agent {

/// The signature updater's own note, as version 1.4.6 of it writes it after it was refused.
inline std::string updaterNote(std::int64_t waitUntil) {
    std::string note("FreshClamData\1\0\0\0", 17);
    note += "c86cdf05-c64c-4b5e-af5c-dd42ed751804";
    note.resize(90, '\0');
    std::memcpy(note.data() + 61, &waitUntil, sizeof waitUntil);
    return note;
}

} // namespace korvale::agent
