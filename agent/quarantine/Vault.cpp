#include "agent/quarantine/Vault.h"

#include "agent/quarantine/RestoreSteps.h"
#include "agent/quarantine/SafeOpen.h"
#include "agent/quarantine/TakeSteps.h"
#include "agent/quarantine/VaultNames.h"
#include "agent/quarantine/VaultRecovery.h"
#include "agent/store/Store.h"

#include <cerrno>
#include <cstring>
#include <sys/stat.h>

namespace korvale::agent {

std::unique_ptr<Vault> Vault::open(const std::string& folder, Store& store, std::string& error) {
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        error = folder + ": " + std::strerror(errno);
        return nullptr;
    }
    UniqueFd opened = openFolder(folder);
    struct stat status {};
    if (!opened || ::fstat(opened.get(), &status) != 0) {
        error = folder + ": " + std::strerror(errno);
        return nullptr;
    }
    if (status.st_uid != ::geteuid() || (status.st_mode & 0077U) != 0) {
        error = folder + ": is not owned by this user or is open to others (mode 0700 is needed)";
        return nullptr;
    }
    std::unique_ptr<Vault> vault(new Vault(std::move(opened), store));
    VaultRecovery(vault->m_place, store).run();
    return vault;
}

Vault::Vault(UniqueFd folder, Store& store) : m_folder(std::move(folder)), m_store(store) {
    m_place.folder = m_folder.get();
}

Vault::~Vault() = default;

void Vault::onStep(std::function<void(VaultStep)> call) {
    m_place.onStep = std::move(call);
}

TakeResult Vault::take(const TakeRequest& request) {
    const std::lock_guard lock(m_mutex);
    settleLocked();
    TakeResult result = TakeSteps(m_place, m_store, request).run();
    if (!result.noted) {
        m_unsettled.push_back(result.id);
    }
    return result;
}

RestoreResult Vault::restore(const std::string& id, const RestoreOptions& options) {
    const std::lock_guard lock(m_mutex);
    settleLocked();
    const auto record = m_store.record(id);
    if (!record || record->state != QuarantineState::Taken) {
        return {RestoreOutcome::NoRecord, {}, "It is not in the vault."};
    }
    return RestoreSteps(m_place, m_store, *record, options).run();
}

bool Vault::remove(const std::string& id, std::string& error) {
    const std::lock_guard lock(m_mutex);
    settleLocked();
    const auto record = m_store.record(id);
    if (!record || record->state != QuarantineState::Taken) {
        error = "It is not in the vault.";
        return false;
    }
    if (!m_store.settleRecord(id, QuarantineState::Removed, FindingState::Deleted)) {
        error = "It cannot be noted: " + m_store.lastError();
        return false;
    }
    if (!forgetCopy(m_place, m_store, id)) {
        error = std::string("It cannot be removed: ") + std::strerror(errno);
        return false;
    }
    return true;
}

std::size_t Vault::settleWaiting() {
    const std::lock_guard lock(m_mutex);
    settleLocked();
    return m_unsettled.size();
}

void Vault::settleLocked() {
    std::erase_if(m_unsettled, [this](const std::string& id) {
        return m_store.settleRecord(id, QuarantineState::Taken, FindingState::Quarantined);
    });
}

std::vector<QuarantineRecord> Vault::list() const {
    std::vector<QuarantineRecord> records = m_store.records();
    std::erase_if(records, [](const QuarantineRecord& record) {
        return record.state != QuarantineState::Taken;
    });
    return records;
}

} // namespace korvale::agent
