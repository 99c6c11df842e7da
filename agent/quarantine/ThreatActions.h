#pragma once

#include "agent/store/Finding.h"

#include <cstdint>
#include <optional>
#include <string>

namespace korvale::agent {

class Store;
class Vault;

/// What became of one threat.
struct ThreatResult {
    bool done = false;
    /// One word of the control interface: "taken", "restored", "waived", "unwaived", "deleted", or
    /// what kept it from being so.
    std::string outcome;
    std::string reason; ///< a sentence for people, may be empty
};

struct RestoreWish {
    std::string path;     ///< absolute; empty: where it was
    bool beside = false;  ///< under another name when the old one is in use
    bool waive = true;    ///< else it is found and taken again
    std::uint32_t by = 0; ///< user id of who asks, for the waive
    std::int64_t now = 0; ///< wall clock, seconds
};

/// What a person does with threats, on findings as the store has them. Any thread; calls read and
/// write whole files.
class ThreatActions {
public:
    /// Both must outlive this object.
    ThreatActions(Store& store, Vault& vault) : m_store(store), m_vault(vault) {}

    /// Takes the file, if it still has the content that was found.
    ThreatResult quarantine(const Finding& finding);
    ThreatResult restore(const Finding& finding, const RestoreWish& wish);
    /// `by`, `now` as in RestoreWish. A file in quarantine stays there.
    ThreatResult waive(const Finding& finding, std::uint32_t by, std::int64_t now,
                       const std::string& reason);
    ThreatResult endWaive(const Finding& finding);
    /// Deletes it from the vault, or from where it lies if it still has the content that was found.
    ThreatResult remove(const Finding& finding);

private:
    [[nodiscard]] std::optional<std::string> inVault(const Finding& finding) const;
    ThreatResult take(const Finding& finding, std::string& record);

    Store& m_store;
    Vault& m_vault;
};

} // namespace korvale::agent
