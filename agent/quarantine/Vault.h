#pragma once

#include "agent/base/FileIdentity.h"
#include "agent/base/UniqueFd.h"
#include "agent/quarantine/VaultPlace.h"
#include "agent/store/Finding.h"
#include "agent/store/QuarantineRecord.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace korvale::agent {

class Store;

enum class TakeOutcome {
    Taken,   ///< the file is in the vault and nowhere else under that name
    Changed, ///< another file or another content than was judged: judge again
    Busy,    ///< open for writing: judge again after its close
    Gone,    ///< there is no such name any more
    NoRoom,  ///< vault or store are full; the file stays where it is
    Failed,  ///< anything else, see `reason`; the file stays where it is
};

struct TakeRequest {
    std::int64_t finding = 0; ///< its number in the store
    int folder = -1;          ///< descriptor of the file's folder (O_PATH will do); borrowed
    std::string name;         ///< the file's name in it, raw bytes, no '/'
    std::string path;         ///< for the record and for people: where it was
    FileIdentity judged;      ///< what the engine was shown
    std::string sha256;       ///< of what the engine was shown; empty: not known
    bool evenIfOpen = false;  ///< also while somebody has it open for writing (a person's word)
};

struct TakeResult {
    TakeOutcome outcome = TakeOutcome::Failed;
    std::string id;     ///< of the record; empty unless Taken
    bool noted = true;  ///< false: taken, but the store had no room to say so yet
    std::string reason; ///< a sentence for people, also when taken and there is more to say
    /// Hard links that remain elsewhere. They were made mode 0, so that no user runs or reads them.
    std::uint32_t otherNames = 0;
};

enum class RestoreOutcome {
    Restored,
    NoRecord,  ///< no such id, or not in the vault any more
    NameTaken, ///< something else has that name now
    NoFolder,  ///< the folder is gone, or a link is in its path
    NoRoom,
    Damaged, ///< the copy in the vault is not what was put there
    Failed,
};

struct RestoreOptions {
    std::string path;    ///< absolute; empty: where it was
    bool beside = false; ///< when the name is taken: under a name like "name (restored 1)"
    /// What its finding becomes, in the same transaction; none: it is not touched.
    std::optional<FindingState> finding;
};

struct RestoreResult {
    RestoreOutcome outcome = RestoreOutcome::Failed;
    std::string path;   ///< where it lies now
    std::string reason; ///< a sentence for people
};

/// The folder that only root reads, into which bad files are moved. A file is taken by descriptor:
/// whatever is renamed, replaced or linked meanwhile, no other file than the judged one is ever
/// taken, and at every moment the file is whole in its place, in the vault, or in both.
///
/// Copies are enciphered with a key that lies beside them, which is no secret: no scanner, indexer
/// or double click shall find in them what was taken.
///
/// Any thread, one at a time by a lock inside; calls read and write whole files.
class Vault {
public:
    /// Makes the folder (mode 0700, owned by the caller) when it is missing, and finishes or takes
    /// back what an earlier process began. `store` must outlive the vault. Null and a sentence in
    /// `error` when the folder cannot be used.
    static std::unique_ptr<Vault> open(const std::string& folder, Store& store, std::string& error);
    ~Vault();
    Vault(const Vault&) = delete;
    Vault& operator=(const Vault&) = delete;

    TakeResult take(const TakeRequest& request);
    /// Puts a copy back with owner, mode, times, access lists, attributes and flags. Never replaces
    /// anything, never follows a link.
    RestoreResult restore(const std::string& id, const RestoreOptions& options = {});
    /// Deletes a copy for ever; its finding becomes Deleted. False and a sentence in `error` when
    /// there is none or it fails.
    bool remove(const std::string& id, std::string& error);
    [[nodiscard]] std::vector<QuarantineRecord> list() const; ///< those in the vault
    /// Notes what was taken while the store had no room for it; every other call does so first. How
    /// many still wait.
    std::size_t settleWaiting();

    /// For tests that end or disturb the process at a step.
    void onStep(std::function<void(VaultStep)> call);

private:
    Vault(UniqueFd folder, Store& store);
    void settleLocked();

    mutable std::mutex m_mutex;
    UniqueFd m_folder;
    VaultPlace m_place;
    Store& m_store;
    std::vector<std::string> m_unsettled; ///< ids of records that still say Prepared
};

} // namespace korvale::agent
