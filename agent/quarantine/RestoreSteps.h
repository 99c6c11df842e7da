#pragma once

#include "agent/quarantine/Vault.h"
#include "agent/quarantine/VaultPlace.h"

namespace korvale::agent {

/// One file on its way out of the vault.
class RestoreSteps {
public:
    /// All borrowed for the one call of `run`; `record` is one of a taken file.
    RestoreSteps(const VaultPlace& vault, Store& store, const QuarantineRecord& record,
                 const RestoreOptions& options);

    RestoreResult run();

private:
    // Each false: `m_result` says why.
    bool openFolders();
    bool write();
    bool name();
    bool settle();

    bool makeFile();
    void dropFile();
    bool give(RestoreOutcome outcome, const std::string& reason);
    bool giveErrno(const std::string& doing);

    const VaultPlace& m_vault;
    Store& m_store;
    const QuarantineRecord& m_record;
    const RestoreOptions& m_options;
    std::string m_folderPath;
    std::string m_name;
    UniqueFd m_copy;
    UniqueFd m_folder;
    UniqueFd m_file;
    std::string m_temporary; ///< its name so far, on a file system without unnamed files
    RestoreResult m_result;
};

} // namespace korvale::agent
