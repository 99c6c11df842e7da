#include "core/ScanWait.h"

#include "core/TerminalOutput.h"
#include "core/TerminalStatus.h"
#include "core/base/TextFormat.h"
#include "model/HostCacheFiles.h"
#include "model/StateVocabulary.h"
#include "model/Values.h"
#include "platform/CountText.h"
#include "platform/Texts.h"

#include <utility>
#include <vector>

namespace korvale {
namespace {

constexpr std::int64_t scannerIdle = 1;
constexpr std::int64_t scannerBusy = 2;
/// Nobody reads more in a terminal; the window has them all.
constexpr std::size_t mostShown = 100;

} // namespace

ScanWait::ScanWait(For what, QString folder, TerminalOutput& output)
    : m_for(what), m_folder(std::move(folder)), m_output(output), m_analysedBefore(analysed()) {
    if (m_for == For::Findings) {
        m_threats.emplace(m_hostCache);
    }
}

void ScanWait::accepted() {
    m_watch.accepted(now());
    if (m_isProgressUnsaid) {
        showProgress();
    }
    look();
}

void ScanWait::told(AgentNotification what) {
    if (what == AgentNotification::AgentStopped) {
        agentLeft();
        return;
    }
    if (what == AgentNotification::AnalyzerStatus) {
        m_watch.progressed(now());
        if (hasBegun()) {
            showProgress();
        } else {
            m_isProgressUnsaid = true;
        }
    } else if (what == AgentNotification::TimerAggregatedMessage) {
        m_watch.progressed(now());
        m_watch.saw(scannerState(), now());
    } else {
        m_watch.heard(now());
        if (what == AgentNotification::ConsumerNotification) {
            sayMessage();
        }
    }
}

void ScanWait::look() {
    m_watch.saw(scannerState(), now());
    switch (m_watch.end(now())) {
    case ScanWatch::End::None:
        break;
    case ScanWatch::End::Silent:
        end(TerminalStatus::noAnswer, "HPS_TermSilent");
        break;
    case ScanWatch::End::Over:
        if (m_for == For::Findings) {
            sayFindings();
        } else {
            m_output.say(localizedText("HPS_TermStopped"));
            end(TerminalStatus::good);
        }
        break;
    }
}

void ScanWait::showProgress() {
    const auto status = m_hostCache.readFile(QLatin1String(HostCacheFile::analyzerStatus));
    const auto path = status ? textOnly((*status)["CurrentFile"]) : std::nullopt;
    if (path && m_for == For::Findings) {
        const std::int64_t count = analysed().value_or(0) - m_analysedBefore.value_or(0);
        m_output.progress(localizedText("Analyzed") + u' ' + countText(count), *path);
    }
}

/// It may say what no list does: that files could not be scanned, or the engine was not there.
void ScanWait::sayMessage() {
    const auto message = m_hostCache.readFile(QLatin1String(HostCacheFile::consumerNotification));
    const auto text = message ? textOnly((*message)["ConsumerNotificationMessage"]) : std::nullopt;
    if (text && m_for == For::Findings) {
        m_output.say(formatText(localizedText("HPS_TermSays"), {*text}));
    }
}

void ScanWait::sayFindings() {
    const std::int64_t count = analysed().value_or(0) - m_analysedBefore.value_or(0);
    if (count > 0) {
        m_output.say(localizedText("Analyzed") + u' ' + countText(count));
    }
    const std::vector<FoundThreat> found = m_threats->below(m_folder);
    if (found.empty()) {
        m_output.say(localizedText("HPS_TermNothing"));
        end(TerminalStatus::good);
        return;
    }
    m_output.say(formatText(localizedText("HPS_TermFound"),
                            {countText(static_cast<std::int64_t>(found.size()))}));
    for (std::size_t i = 0; i < found.size() && i < mostShown; ++i) {
        m_output.say(stateStringFromValue(found[i].state) + u' ' + found[i].path);
    }
    if (found.size() > mostShown) {
        m_output.say(formatText(localizedText("HPS_TermMore"),
                                {countText(static_cast<std::int64_t>(found.size() - mostShown))}));
    }
    end(TerminalStatus::found);
}

std::optional<std::int64_t> ScanWait::analysed() {
    const auto count = m_hostCache.readFile(QLatin1String(HostCacheFile::analysisCount));
    return count ? std::optional(integerValue((*count)["AnalyzedCount"])) : std::nullopt;
}

ScannerState ScanWait::scannerState() {
    const auto scanner = m_hostCache.readFile(QLatin1String(HostCacheFile::scannerState));
    const std::int64_t state = scanner ? integerValue((*scanner)["ScannerState"]) : 0;
    if (state == scannerBusy) {
        return ScannerState::Busy;
    }
    return state == scannerIdle ? ScannerState::Idle : ScannerState::NotKnown;
}

} // namespace korvale
