#pragma once

#include <string>

namespace korvale::agent {

class Store;
struct VaultPlace;

/// 32 random hex digits; empty when there is no randomness.
[[nodiscard]] std::string newVaultId();
/// Removes a copy, then its record: never the record of a copy that is there. False with errno.
bool forgetCopy(const VaultPlace& vault, Store& store, const std::string& id);

} // namespace korvale::agent
