#include "agent/quarantine/TakeSteps.h"

#include "agent/base/Log.h"
#include "agent/quarantine/FileTraits.h"
#include "agent/quarantine/MovedFile.h"
#include "agent/quarantine/SafeOpen.h"
#include "agent/quarantine/VaultCopy.h"
#include "agent/quarantine/VaultNames.h"
#include "agent/quarantine/WriteLease.h"
#include "agent/store/Store.h"

#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>

namespace korvale::agent {

bool TakeSteps::give(TakeOutcome outcome, const std::string& reason) {
    m_result.outcome = outcome;
    m_result.reason = reason;
    return false;
}

bool TakeSteps::giveErrno(const std::string& doing) {
    const int error = errno;
    const std::string reason = doing + ": " + std::strerror(error);
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return give(TakeOutcome::NoRoom, reason);
    case ENOENT:
    case ESTALE:
        return give(TakeOutcome::Gone, reason);
    default:
        return give(TakeOutcome::Failed, reason);
    }
}

TakeResult TakeSteps::run() {
    if (!openJudged()) {
        return m_result;
    }
    const WriteLease lease(m_file.get());
    if (lease.state() == WriteLease::State::OpenForWriting && !m_request.evenIfOpen) {
        give(TakeOutcome::Busy, "The file is open for writing.");
        return m_result;
    }
    if (!copy() || !finish(lease)) {
        undo();
    }
    return m_result;
}

bool TakeSteps::openJudged() {
    if (m_request.finding <= 0) { // kept in memory: its record could name no finding
        return give(TakeOutcome::NoRoom, "The store has no room for the finding yet.");
    }
    m_file = openRegular(m_request.folder, m_request.name);
    if (!m_file) {
        return errno == EINVAL || errno == ELOOP
                   ? give(TakeOutcome::Changed, "It is no regular file any more.")
                   : giveErrno("It cannot be opened");
    }
    const auto identity = identify(m_file.get());
    if (!identity || *identity != m_request.judged) {
        return give(TakeOutcome::Changed, "The file has changed since it was judged.");
    }
    m_record.id = newVaultId();
    m_record.finding = m_request.finding;
    m_record.path = m_request.path;
    m_record.judged = m_request.judged;
    m_record.since = std::time(nullptr);
    if (m_record.id.empty() || !captureTraits(m_file.get(), m_record)) {
        return giveErrno("Its owner, mode and attributes cannot be read");
    }
    struct stat status {};
    if (::fstat(m_file.get(), &status) == 0 && status.st_nlink > 1) {
        m_record.otherNames = static_cast<std::uint32_t>(status.st_nlink - 1);
    }
    return true;
}

bool TakeSteps::copy() {
    const UniqueFd copy(::openat(m_vault.folder, ".", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600));
    if (!copy) {
        return giveErrno("The vault takes no file");
    }
    const CopyResult result = encipherInto(m_file.get(), copy.get());
    if (result.error != 0) {
        errno = result.error;
        return giveErrno("It cannot be copied into the vault");
    }
    if (result.size != m_request.judged.size ||
        (!m_request.sha256.empty() && result.sha256 != m_request.sha256)) {
        return give(TakeOutcome::Changed, "The content is not the one that was judged.");
    }
    m_record.sha256 = result.sha256;
    m_vault.at(VaultStep::Copied);
    return record(copy);
}

bool TakeSteps::record(const UniqueFd& copy) {
    if (!m_store.addRecord(m_record)) {
        return give(TakeOutcome::NoRoom, "It cannot be noted: " + m_store.lastError());
    }
    m_recorded = true;
    m_vault.at(VaultStep::Recorded);
    if (!nameFile(copy.get(), m_vault.folder, VaultPlace::copyName(m_record.id)) ||
        ::fsync(m_vault.folder) != 0) {
        return giveErrno("The copy in the vault cannot be named");
    }
    m_vault.at(VaultStep::Named);
    return true;
}

bool TakeSteps::finish(const WriteLease& lease) {
    int error = 0;
    auto moved = MovedFile::move(m_vault, m_request.folder, m_request.name, m_record.id, error);
    if (!moved && error == EPERM && isHeldFast(m_record.inodeFlags)) {
        m_loosened = loosen(m_file.get(), m_record.inodeFlags);
        moved = MovedFile::move(m_vault, m_request.folder, m_request.name, m_record.id, error);
    }
    if (!moved) {
        errno = error;
        return giveErrno("It cannot be moved out of its folder");
    }
    m_vault.at(VaultStep::Moved);
    // While the lease stood undisturbed nobody could write; else only the content itself tells.
    if (!moved->is(m_record, !lease.undisturbed())) {
        putBack(*moved);
        return give(TakeOutcome::Changed, "The file was replaced or changed meanwhile.");
    }
    return settle(*moved);
}

void TakeSteps::putBack(MovedFile& moved) {
    const auto name = moved.putBack();
    logWarning("quarantine: " + printable(m_record.path) +
               (name ? " was put back as " + printable(*name)
                     : std::string(" waits in the vault's folder to be put back")));
    // With its record the next start finds it, or finds that only the copy is left.
    m_recorded = m_recorded && name.has_value();
}

bool TakeSteps::settle(MovedFile& moved) {
    if (m_record.otherNames > 0) {
        hideOtherNames();
    }
    if (!moved.destroy()) {
        giveErrno("It cannot be removed");
        putBack(moved);
        return false;
    }
    m_vault.at(VaultStep::Unlinked);
    m_result.outcome = TakeOutcome::Taken;
    m_result.id = m_record.id;
    m_result.otherNames = m_record.otherNames;
    m_result.noted =
        m_store.settleRecord(m_record.id, QuarantineState::Taken, FindingState::Quarantined);
    if (!m_result.noted) {
        m_result.reason += " It is taken, but that could not be noted yet: " + m_store.lastError();
    }
    return true;
}

void TakeSteps::hideOtherNames() {
    m_result.reason = std::to_string(m_record.otherNames) + " other name(s) of the file remain";
    // By descriptor, as nobody knows where they are. The content is never cut: it may be wanted.
    m_hidden = ::fchmod(m_file.get(), 0) == 0;
    m_result.reason += m_hidden
                           ? ", closed to all users (mode 0)."
                           : std::string(" and could not be closed: ") + std::strerror(errno) + ".";
}

void TakeSteps::undo() {
    if (m_loosened && !applyFlags(m_file.get(), m_record.inodeFlags)) {
        logWarning("quarantine: the flags of " + printable(m_record.path) + " are lost");
    }
    if (m_hidden && ::fchmod(m_file.get(), m_record.mode) != 0) {
        logWarning("quarantine: the mode of " + printable(m_record.path) + " is lost");
    }
    if (m_recorded && !forgetCopy(m_vault, m_store, m_record.id)) {
        logWarning("quarantine: an unneeded copy of " + printable(m_record.path) +
                   " could not be removed yet");
    }
}

} // namespace korvale::agent
