#include "agent/quarantine/VaultNames.h"

#include "agent/quarantine/VaultPlace.h"
#include "agent/store/Store.h"

#include <array>
#include <cerrno>
#include <sys/random.h>
#include <unistd.h>

namespace korvale::agent {

std::string newVaultId() {
    std::array<unsigned char, 16> bytes{};
    if (::getrandom(bytes.data(), bytes.size(), 0) != static_cast<ssize_t>(bytes.size())) {
        return {};
    }
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string id;
    for (const unsigned char byte : bytes) {
        id += kDigits[byte >> 4];
        id += kDigits[byte & 15];
    }
    return id;
}

bool forgetCopy(const VaultPlace& vault, Store& store, const std::string& id) {
    if (::unlinkat(vault.folder, VaultPlace::copyName(id).c_str(), 0) != 0 && errno != ENOENT) {
        return false;
    }
    return ::fsync(vault.folder) == 0 && store.forgetRecord(id);
}

} // namespace korvale::agent
