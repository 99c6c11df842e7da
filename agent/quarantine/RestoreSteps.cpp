#include "agent/quarantine/RestoreSteps.h"

#include "agent/base/Log.h"
#include "agent/quarantine/FileTraits.h"
#include "agent/quarantine/SafeOpen.h"
#include "agent/quarantine/VaultCopy.h"
#include "agent/quarantine/VaultNames.h"
#include "agent/store/Store.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr int kMostNames = 1000;

std::string pathIn(const std::string& folder, const std::string& name) {
    return folder == "/" ? folder + name : folder + '/' + name;
}

} // namespace

RestoreSteps::RestoreSteps(const VaultPlace& vault, Store& store, const QuarantineRecord& record,
                           const RestoreOptions& options)
    : m_vault(vault),
      m_store(store),
      m_record(record),
      m_options(options),
      m_folderPath(folderOf(options.path.empty() ? record.path : options.path)),
      m_name(nameOf(options.path.empty() ? record.path : options.path)) {}

bool RestoreSteps::give(RestoreOutcome outcome, const std::string& reason) {
    m_result.outcome = outcome;
    m_result.reason = reason;
    return false;
}

bool RestoreSteps::giveErrno(const std::string& doing) {
    const int error = errno;
    const bool full = error == ENOSPC || error == EDQUOT || error == EFBIG;
    return give(full ? RestoreOutcome::NoRoom : RestoreOutcome::Failed,
                doing + ": " + std::strerror(error));
}

RestoreResult RestoreSteps::run() {
    if (openFolders() && write() && name() && settle()) {
        m_result.outcome = RestoreOutcome::Restored;
    } else {
        dropFile();
    }
    return m_result;
}

bool RestoreSteps::openFolders() {
    m_copy = openRegular(m_vault.folder, VaultPlace::copyName(m_record.id));
    if (!m_copy) {
        return give(RestoreOutcome::Damaged, "The copy in the vault cannot be opened.");
    }
    m_folder = openFolder(m_folderPath);
    if (!m_folder) {
        return give(RestoreOutcome::NoFolder, errno == ELOOP
                                                  ? "A symbolic link is in the folder's path."
                                                  : "The folder cannot be opened.");
    }
    // Asked again when it is named; told early, before a large file is written.
    if (!m_options.beside &&
        ::faccessat(m_folder.get(), m_name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0) {
        return give(RestoreOutcome::NameTaken, "There is something of that name.");
    }
    return true;
}

bool RestoreSteps::makeFile() {
    // Nobody else reads it before its owner and mode are right.
    m_file = UniqueFd(::openat(m_folder.get(), ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (m_file || (errno != EOPNOTSUPP && errno != EISDIR && errno != ENOENT)) {
        return m_file.isOpen();
    }
    m_temporary = VaultPlace::asideName(m_record.id);
    m_file = UniqueFd(::openat(m_folder.get(), m_temporary.c_str(),
                               O_CREAT | O_EXCL | O_NOFOLLOW | O_RDWR | O_CLOEXEC, 0600));
    return m_file.isOpen();
}

bool RestoreSteps::write() {
    if (!makeFile()) {
        return giveErrno("The folder takes no file");
    }
    const CopyResult result = decipherInto(m_copy.get(), m_file.get());
    if (result.error != 0 && result.error != EBADMSG) {
        errno = result.error;
        return giveErrno("It cannot be written");
    }
    if (result.error != 0 || result.sha256 != m_record.sha256) {
        return give(RestoreOutcome::Damaged, "The copy in the vault is damaged.");
    }
    m_result.reason = applyTraits(m_file.get(), m_record);
    if (::fsync(m_file.get()) != 0) {
        return giveErrno("It cannot be written");
    }
    m_vault.at(VaultStep::Written);
    return true;
}

bool RestoreSteps::name() {
    for (int number = 0; number < kMostNames; ++number) {
        const std::string name =
            number == 0 ? m_name : m_name + " (restored " + std::to_string(number) + ")";
        const bool named = m_temporary.empty()
                               ? nameFile(m_file.get(), m_folder.get(), name)
                               : moveName(m_folder.get(), m_temporary, m_folder.get(), name);
        if (named) {
            m_temporary.clear();
            m_result.path = pathIn(m_folderPath, name);
            // A file that cannot be changed can get no name: the flags come last.
            if (!applyFlags(m_file.get(), m_record.inodeFlags)) {
                m_result.reason += " Its flags could not be restored.";
            }
            m_vault.at(VaultStep::Linked);
            return ::fsync(m_folder.get()) == 0 || giveErrno("The folder cannot be written");
        }
        if (errno != EEXIST) {
            return giveErrno("It cannot be named");
        }
        if (!m_options.beside) {
            return give(RestoreOutcome::NameTaken, "There is something of that name.");
        }
    }
    return give(RestoreOutcome::NameTaken, "There are too many files of that name.");
}

bool RestoreSteps::settle() {
    if (!m_store.settleRecord(m_record.id, QuarantineState::Restored, m_options.finding)) {
        // The file is there. The copy stays, too: rather twice than not at all.
        logWarning("quarantine: restoring " + printable(m_result.path) +
                   " could not be noted: " + m_store.lastError());
        m_result.reason += " The vault keeps its copy, as the store cannot be written.";
        return true;
    }
    m_vault.at(VaultStep::Settled);
    if (!forgetCopy(m_vault, m_store, m_record.id)) {
        logWarning("quarantine: the copy of " + printable(m_result.path) +
                   " could not be removed yet");
    }
    return true;
}

void RestoreSteps::dropFile() {
    if (!m_temporary.empty() && m_file) {
        ::unlinkat(m_folder.get(), m_temporary.c_str(), 0);
    }
}

} // namespace korvale::agent
