#pragma once

#include "agent/quarantine/Vault.h"
#include "agent/quarantine/VaultPlace.h"

namespace korvale::agent {

class MovedFile;
class WriteLease;

/// One file on its way into the vault. At every moment it is whole in its place, in the vault, or
/// in both, and VaultRecovery finds the way on from there.
class TakeSteps {
public:
    /// All borrowed for the one call of `run`.
    TakeSteps(const VaultPlace& vault, Store& store, const TakeRequest& request)
        : m_vault(vault), m_store(store), m_request(request) {}

    TakeResult run();

private:
    // Each false: `m_result` says why.
    bool openJudged();
    bool copy();
    bool record(const UniqueFd& copy);
    bool finish(const WriteLease& lease);
    bool settle(MovedFile& moved);

    void hideOtherNames();
    void putBack(MovedFile& moved);
    void undo();
    bool give(TakeOutcome outcome, const std::string& reason);
    bool giveErrno(const std::string& doing);

    const VaultPlace& m_vault;
    Store& m_store;
    const TakeRequest& m_request;
    QuarantineRecord m_record;
    UniqueFd m_file;
    bool m_recorded = false;
    bool m_loosened = false;
    bool m_hidden = false;
    TakeResult m_result;
};

} // namespace korvale::agent
