#pragma once

#include "agent/base/FileIdentity.h"

#include <optional>
#include <string>

namespace korvale::agent {

/// Whether an engine can judge what is behind a descriptor, and which file in which state it is. An
/// engine that is handed anything but a readable regular file answers that it is clean.
struct ReadableFile {
    FileIdentity identity; ///< fileSystem is the device number here: enough while the system runs
    std::string trouble;   ///< why it cannot be judged, for people; empty: it can

    [[nodiscard]] static ReadableFile look(int descriptor);
};

} // namespace korvale::agent
