#include "agent/quarantine/VaultRecovery.h"

#include "agent/base/Log.h"
#include "agent/quarantine/ContentDigest.h"
#include "agent/quarantine/FileTraits.h"
#include "agent/quarantine/MovedFile.h"
#include "agent/quarantine/SafeOpen.h"
#include "agent/quarantine/VaultNames.h"
#include "agent/store/Store.h"

#include <fcntl.h>
#include <sys/stat.h>

namespace korvale::agent {

void VaultRecovery::run() {
    for (const QuarantineRecord& record : m_store.records()) {
        recover(record);
    }
}

bool VaultRecovery::hasCopy(const std::string& id) const {
    struct stat status {};
    return ::fstatat(m_vault.folder, VaultPlace::copyName(id).c_str(), &status,
                     AT_SYMLINK_NOFOLLOW) == 0;
}

void VaultRecovery::recover(const QuarantineRecord& record) {
    switch (record.state) {
    case QuarantineState::Prepared:
        finishTaking(record);
        return;
    case QuarantineState::Restored:
    case QuarantineState::Removed:
        forgetCopy(m_vault, m_store, record.id);
        return;
    case QuarantineState::Taken:
        if (!hasCopy(record.id)) {
            logError("quarantine: the copy of " + printable(record.path) +
                     " is gone from the vault");
        }
        return;
    }
}

void VaultRecovery::finishTaking(const QuarantineRecord& record) {
    const UniqueFd folder = openFolder(folderOf(record.path));
    auto moved = MovedFile::find(m_vault, folder.get(), nameOf(record.path), record.id);
    if (moved && hasCopy(record.id) && moved->is(record, true)) {
        if (moved->destroy()) {
            settle(record);
        }
        return;
    }
    if (moved) {
        if (const auto name = moved->putBack()) {
            logWarning("quarantine: " + printable(record.path) + " was put back as " +
                       printable(*name));
            forgetCopy(m_vault, m_store, record.id);
        } else {
            logError("quarantine: what was " + printable(record.path) +
                     " could not be put back and waits in the vault's folder");
        }
        return;
    }
    if (!hasCopy(record.id) || stillInPlace(folder.get(), record)) {
        forgetCopy(m_vault, m_store, record.id);
        return;
    }
    settle(record); // the process ended after the file was removed
}

bool VaultRecovery::stillInPlace(int folder, const QuarantineRecord& record) const {
    const UniqueFd file = folder >= 0 ? openRegular(folder, nameOf(record.path)) : UniqueFd();
    const auto identity = file ? identify(file.get()) : std::nullopt;
    if (!identity || identity->inode != record.judged.inode ||
        identity->fileSystem != record.judged.fileSystem ||
        contentDigest(file.get()) != record.sha256) {
        return false;
    }
    if (!applyFlags(file.get(), record.inodeFlags)) {
        logWarning("quarantine: the flags of " + printable(record.path) + " are lost");
    }
    return true;
}

void VaultRecovery::settle(const QuarantineRecord& record) {
    if (m_store.settleRecord(record.id, QuarantineState::Taken, FindingState::Quarantined)) {
        logInfo("quarantine: taking " + printable(record.path) + " is finished");
    }
}

} // namespace korvale::agent
