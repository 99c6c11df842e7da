#pragma once

#include "agent/quarantine/VaultPlace.h"
#include "agent/store/QuarantineRecord.h"

namespace korvale::agent {

class Store;

/// Finishes or takes back what an ended process left half done. Where it is in doubt the file stays
/// in its place and the copy in the vault.
class VaultRecovery {
public:
    /// Both must outlive this object.
    VaultRecovery(const VaultPlace& vault, Store& store) : m_vault(vault), m_store(store) {}

    /// Looks at every record, and once at the vault's own folder. Errors are logged.
    void run();

private:
    void recover(const QuarantineRecord& record);
    void finishTaking(const QuarantineRecord& record);
    bool stillInPlace(int folder, const QuarantineRecord& record) const;
    void settle(const QuarantineRecord& record);
    [[nodiscard]] bool hasCopy(const std::string& id) const;

    const VaultPlace& m_vault;
    Store& m_store;
};

} // namespace korvale::agent
