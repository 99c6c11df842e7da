#include "agent/quarantine/ThreatActions.h"

#include "agent/quarantine/ContentDigest.h"
#include "agent/quarantine/SafeOpen.h"
#include "agent/quarantine/Vault.h"
#include "agent/store/Store.h"

#include <cerrno>

namespace korvale::agent {
namespace {

ThreatResult failed(const std::string& outcome, const std::string& reason) {
    return {false, outcome, reason};
}

std::string wordOf(TakeOutcome outcome) {
    switch (outcome) {
    case TakeOutcome::Taken:
        return "taken";
    case TakeOutcome::Changed:
        return "changed";
    case TakeOutcome::Busy:
        return "busy";
    case TakeOutcome::Gone:
        return "gone";
    case TakeOutcome::NoRoom:
        return "no-room";
    case TakeOutcome::Failed:
        break;
    }
    return "failed";
}

std::string wordOf(RestoreOutcome outcome) {
    switch (outcome) {
    case RestoreOutcome::Restored:
        return "restored";
    case RestoreOutcome::NoRecord:
        return "not-in-quarantine";
    case RestoreOutcome::NameTaken:
        return "name-taken";
    case RestoreOutcome::NoFolder:
        return "no-folder";
    case RestoreOutcome::NoRoom:
        return "no-room";
    case RestoreOutcome::Damaged:
        return "damaged";
    case RestoreOutcome::Failed:
        break;
    }
    return "failed";
}

} // namespace

std::optional<std::string> ThreatActions::inVault(const Finding& finding) const {
    std::optional<std::string> newest;
    for (const QuarantineRecord& record : m_vault.list()) {
        if (record.finding == finding.number) {
            newest = record.id;
        }
    }
    return newest;
}

ThreatResult ThreatActions::quarantine(const Finding& finding) {
    if (finding.state == FindingState::Quarantined) {
        return {true, "taken", "It is in quarantine already."};
    }
    std::string record;
    return take(finding, record);
}

ThreatResult ThreatActions::take(const Finding& finding, std::string& record) {
    if (finding.number <= 0) {
        return failed("no-room", "The store has no room for the finding yet.");
    }
    const UniqueFd folder = openFolder(folderOf(finding.path));
    const UniqueFd file = folder ? openRegular(folder.get(), nameOf(finding.path)) : UniqueFd();
    if (!file) {
        const bool gone = errno == ENOENT || errno == ENOTDIR;
        return gone ? failed("gone", "There is no such file any more.")
                    : failed("failed", "It cannot be opened, or a link is in its path.");
    }
    const auto identity = identify(file.get());
    if (!identity || contentDigest(file.get()) != finding.id) {
        return failed("changed", "The file has another content than was found in it.");
    }
    TakeRequest request;
    request.finding = finding.number;
    request.folder = folder.get();
    request.name = nameOf(finding.path);
    request.path = finding.path;
    request.judged = *identity;
    request.sha256 = finding.id;
    request.evenIfOpen = true; // a person said so
    const TakeResult result = m_vault.take(request);
    record = result.id;
    return {result.outcome == TakeOutcome::Taken, wordOf(result.outcome), result.reason};
}

ThreatResult ThreatActions::restore(const Finding& finding, const RestoreWish& wish) {
    const auto record = inVault(finding);
    if (!record) {
        return failed("not-in-quarantine", "It is not in quarantine.");
    }
    // Before the file is there again: whoever looks at new files must know already.
    const bool waives = wish.waive && !m_store.isWaived(finding.id);
    if (waives && !m_store.waive({finding.id, wish.now, wish.by, "restored"})) {
        return failed("no-room", "It cannot be noted: " + m_store.lastError());
    }
    RestoreOptions options;
    options.path = wish.path;
    options.beside = wish.beside;
    options.finding = !wish.path.empty() && wish.path != finding.path ? FindingState::Deleted
                      : wish.waive                                    ? FindingState::Waived
                                                                      : FindingState::Detected;
    const RestoreResult result = m_vault.restore(*record, options);
    const bool done = result.outcome == RestoreOutcome::Restored;
    if (!done && waives) {
        m_store.endWaive(finding.id);
    }
    const std::string where =
        done && result.path != finding.path ? "It is " + result.path + " now." : "";
    return {done, wordOf(result.outcome), where.empty() ? result.reason : where + result.reason};
}

ThreatResult ThreatActions::waive(const Finding& finding, std::uint32_t by, std::int64_t now,
                                  const std::string& reason) {
    return m_store.waive({finding.id, now, by, reason})
               ? ThreatResult{true, "waived", {}}
               : failed("no-room", "It cannot be noted: " + m_store.lastError());
}

ThreatResult ThreatActions::endWaive(const Finding& finding) {
    return m_store.endWaive(finding.id)
               ? ThreatResult{true, "unwaived", {}}
               : failed("no-room", "It cannot be noted: " + m_store.lastError());
}

ThreatResult ThreatActions::remove(const Finding& finding) {
    if (finding.state == FindingState::Deleted) {
        return {true, "deleted", "It was deleted already."};
    }
    std::string record = inVault(finding).value_or(std::string());
    if (record.empty()) {
        // By way of the vault, which makes sure that no other file is deleted.
        ThreatResult taken = take(finding, record);
        if (taken.outcome == "gone" && m_store.setState(finding.number, FindingState::Deleted)) {
            return {true, "deleted", "There was no such file any more."};
        }
        if (!taken.done) {
            return taken;
        }
    }
    std::string error;
    return m_vault.remove(record, error) ? ThreatResult{true, "deleted", {}}
                                         : failed("failed", error);
}

} // namespace korvale::agent
