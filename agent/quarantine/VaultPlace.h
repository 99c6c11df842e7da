#pragma once

#include <functional>
#include <string>

namespace korvale::agent {

/// Where a file can be on its way in or out when the process ends.
enum class VaultStep {
    Copied,   ///< in: the copy is written and has no name yet
    Recorded, ///< in: the store knows of it
    Named,    ///< in: the copy has its name, the file is untouched
    Moved,    ///< in: the file is out of its folder and not yet looked at again
    Unlinked, ///< in: only the copy is left
    Written,  ///< out: the file is written again and has no name yet
    Linked,   ///< out: the file has its name again
    Settled,  ///< out: the store knows of it, the copy is still there
};

/// The vault's folder and the names in it.
struct VaultPlace {
    int folder = -1; ///< descriptor, owned by the vault
    /// Called at each step. For tests that end or disturb the process there; empty otherwise.
    std::function<void(VaultStep)> onStep;

    void at(VaultStep step) const {
        if (onStep) {
            onStep(step);
        }
    }
    [[nodiscard]] static std::string copyName(const std::string& id) { return id + ".kvq"; }
    /// The file itself, between its folder and its end.
    [[nodiscard]] static std::string takenName(const std::string& id) { return id + ".taken"; }
    /// A folder beside the file that serves instead when the vault is on another file system.
    [[nodiscard]] static std::string asideName(const std::string& id) { return ".korvale-" + id; }
};

} // namespace korvale::agent
