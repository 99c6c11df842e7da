#include "agent/engine/ClamdEngine.h"

#include "agent/base/Log.h"
#include "agent/base/Utf8.h"
#include "agent/engine/ClamdAnswer.h"
#include "agent/engine/ClamdCommand.h"
#include "agent/engine/ReadableFile.h"
#include "agent/engine/Signatures.h"
#include "agent/engine/TemporaryFolder.h"

#include <algorithm>

namespace korvale::agent {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr int kTries = 3; ///< for a file that changes under the scan, or whose session was dropped
constexpr std::chrono::milliseconds kIdle = 5s;

Judgement notScanned(std::string reason) {
    return {Verdict::NotScanned, {}, std::move(reason), {}};
}

Judgement noAnswer(std::string reason) {
    return {Verdict::NoAnswer, {}, std::move(reason), {}};
}

} // namespace

struct ClamdEngine::Question {
    int descriptor;
    FileIdentity identity;
    TimePoint deadline;
    const std::stop_token& stop;
};

ClamdEngine::ClamdEngine(Settings settings)
    : m_settings(std::move(settings)),
      m_configuration(readClamdConfiguration(m_settings.configurationFile)),
      m_socket(m_settings.socket.empty() ? m_configuration.localSocket : m_settings.socket),
      m_channels{ClamdChannel(m_socket, depth), ClamdChannel(m_socket, depth)} {
    m_state.maxFileSize = m_configuration.largestFile();
    m_state.trouble = "not asked yet";
}

Judgement ClamdEngine::judge(int descriptor, std::chrono::milliseconds deadline,
                             std::stop_token stop) {
    const TimePoint end = Clock::now() + deadline;
    ReadableFile file = ReadableFile::look(descriptor);
    Judgement judgement = noAnswer("the engine did not answer");
    for (int attempt = 0; attempt < kTries; ++attempt) {
        if (!file.trouble.empty()) {
            return notScanned(file.trouble);
        }
        if (file.identity.size == 0) {
            return {Verdict::Clean, {}, {}, {}};
        }
        if (file.identity.size > state().maxFileSize) {
            return notScanned("larger than the engine reads");
        }
        judgement = askOnce({descriptor, file.identity, end, stop});
        if (!isJudged(judgement.verdict) || stop.stop_requested()) {
            return judgement;
        }
        ReadableFile after = ReadableFile::look(descriptor);
        if (isBad(judgement.verdict)) {
            return judgement;
        }
        if (after.identity == file.identity) {
            return believed(std::move(judgement), end, stop);
        }
        file = std::move(after); // "OK" was about something that is not there any more
    }
    return notScanned("it changes all the time");
}

Judgement ClamdEngine::askOnce(const Question& question) {
    if (Clock::now() >= question.deadline) {
        return noAnswer("there is no time left");
    }
    const int deaths = m_suspects.deaths(question.identity);
    if (deaths >= SuspectFiles::fatal) {
        return notScanned("the engine died of it twice");
    }
    if (!mayAsk(question.deadline)) {
        return noAnswer("the engine does not answer");
    }
    return deaths > 0 ? askAlone(question) : askAmongOthers(question);
}

Judgement ClamdEngine::askAmongOthers(const Question& question) {
    for (int attempt = 0; attempt < kTries; ++attempt) {
        if (!m_gate.enter(question.deadline, question.stop)) {
            return noAnswer("others wait for the engine");
        }
        const ClamdChannel::Answer answer =
            freestChannel().ask(question.descriptor, question.deadline, question.stop);
        m_gate.leave();
        if (answer.outcome == ClamdChannel::Outcome::Lost) {
            m_suspects.died(question.identity);
            return askAlone(question);
        }
        if (answer.outcome != ClamdChannel::Outcome::Dropped) {
            return judgementFor(answer);
        }
        if (!mayAsk(question.deadline)) {
            break;
        }
    }
    return noAnswer("the engine does not answer");
}

Judgement ClamdEngine::askAlone(const Question& question) {
    // Only if nothing else is in clamd's hands its death says something about this file.
    if (!m_gate.enterAlone(question.deadline, question.stop)) {
        return noAnswer("others wait for the engine");
    }
    ClamdChannel channel(m_socket, 1);
    const ClamdChannel::Answer answer =
        channel.ask(question.descriptor, question.deadline, question.stop);
    m_gate.leaveAlone();
    if (answer.outcome == ClamdChannel::Outcome::Lost) {
        m_suspects.died(question.identity);
        logWarning("clamd died twice with the same file in hand; it is not asked for it again");
        return notScanned("the engine died of it twice");
    }
    if (answer.outcome == ClamdChannel::Outcome::Answered) {
        m_suspects.acquit(question.identity);
    }
    return judgementFor(answer);
}

Judgement ClamdEngine::judgementFor(const ClamdChannel::Answer& answer) {
    switch (answer.outcome) {
    case ClamdChannel::Outcome::Answered:
        return judgementOf(answer.text);
    case ClamdChannel::Outcome::TimedOut:
    case ClamdChannel::Outcome::Unreachable:
        m_breaker.failed(Clock::now());
        lost(printable(answer.text));
        return noAnswer(printable(answer.text));
    case ClamdChannel::Outcome::BadFile:
        return notScanned(answer.text);
    case ClamdChannel::Outcome::Stopped:
        return noAnswer("stopped");
    case ClamdChannel::Outcome::Lost:
    case ClamdChannel::Outcome::Dropped:
        break;
    }
    return noAnswer("the engine does not answer");
}

bool ClamdEngine::mayAsk(TimePoint deadline) {
    const bool untested = !m_settings.testFolder.empty() && !m_tested;
    const bool closed = !m_breaker.isOpen();
    if (closed && !untested) {
        return true;
    }
    // A caller with little time must not spend it on finding out that there still is nobody.
    const bool hasTime = deadline - Clock::now() > m_settings.patience;
    return hasTime && (closed || m_breaker.takeTry(Clock::now())) && refresh().reachable;
}

ClamdChannel& ClamdEngine::freestChannel() {
    return *std::min_element(m_channels.begin(), m_channels.end(),
                             [](const ClamdChannel& one, const ClamdChannel& other) {
                                 return one.load() < other.load();
                             });
}

EngineState ClamdEngine::state() const {
    const std::lock_guard lock(m_stateMutex);
    EngineState state = m_state;
    state.believed = m_believed;
    return state;
}

ClamdConfiguration ClamdEngine::configuration() const {
    const std::lock_guard lock(m_stateMutex);
    return m_configuration;
}

EngineState ClamdEngine::refresh() {
    const ClamdConfiguration current = readClamdConfiguration(m_settings.configurationFile);
    const SignatureFiles files = lookAtSignatures(current.databaseFolder);
    EngineState now = state();
    now.maxFileSize = current.largestFile();
    {
        const std::lock_guard lock(m_stateMutex);
        m_configuration = current;
    }
    std::string error;
    // VERSION instead of PING: as short, and it says what is needed besides.
    const auto version = askClamd(m_socket, "VERSION", m_settings.patience, error, &now.listener);
    now.reachable = version && version->starts_with("ClamAV ");
    now.startable = files.complete;
    if (now.reachable) {
        now.version = validUtf8(*version);
        const auto official = signatureTimeOf(*version);
        now.signatureTime = official ? official : files.newest;
        now.signatureKey = files.key.empty() ? std::string() : now.version + '|' + files.key;
        now.trouble = testFileTrouble(now);
        now.reachable = now.trouble.empty();
    } else {
        now.trouble = version ? "something else than clamd answers" : printable(error);
        m_tested = false;
        m_believed = true; // there is nobody who could lie
    }
    if (now.reachable) {
        m_breaker.answered();
    } else {
        m_breaker.failed(Clock::now());
    }
    for (ClamdChannel& channel : m_channels) {
        channel.closeIfIdle(kIdle);
    }
    publish(now);
    return state();
}

std::string ClamdEngine::testFileTrouble(const EngineState& state) {
    const bool busy = std::any_of(m_channels.begin(), m_channels.end(),
                                  [](const ClamdChannel& channel) { return channel.load() > 0; });
    // It would wait behind files that take long; who gets an "OK" now asks for the sample himself.
    if (m_settings.testFolder.empty() || (m_tested && busy)) {
        return {};
    }
    const std::lock_guard lock(m_sampleMutex);
    std::string trouble = temporaryFolderTrouble(configuration().temporaryFolder);
    if (!trouble.empty()) {
        disbelieve();
        return trouble;
    }
    return sampleTrouble(state, Clock::now() + 2 * m_settings.patience, {});
}

Judgement ClamdEngine::believed(Judgement judgement, TimePoint deadline,
                                const std::stop_token& stop) {
    if (m_settings.testFolder.empty()) {
        return judgement;
    }
    const std::unique_lock lock(m_sampleMutex, std::try_to_lock);
    const EngineState now = state();
    std::string trouble = temporaryFolderTrouble(configuration().temporaryFolder);
    if (!trouble.empty()) {
        if (!lock.owns_lock()) {
            return noAnswer(std::move(trouble)); // the next one tells
        }
        disbelieve();
    } else if (!m_tested) {
        return noAnswer(now.trouble);
    } else if (!lock.owns_lock() || !m_sample.isDue(Clock::now())) {
        judgement.provisional = m_proven;
        return judgement;
    } else {
        // It may wait behind other files like this one, and must not be cut short for its sake.
        const TimePoint end = std::max(deadline, Clock::now() + 2 * m_settings.patience);
        trouble = sampleTrouble(now, end, stop);
        if (trouble.empty()) {
            return judgement;
        }
    }
    if (!stop.stop_requested()) {
        m_breaker.failed(Clock::now());
        lost(trouble);
    }
    return noAnswer(std::move(trouble));
}

ClamdChannel::Answer ClamdEngine::askForSample(TimePoint deadline, const std::stop_token& stop) {
    ClamdChannel::Answer answer;
    for (int attempt = 0; attempt < kTries && m_gate.enter(deadline, stop); ++attempt) {
        answer = freestChannel().ask(m_sample.descriptor(), deadline, stop);
        m_gate.leave();
        if (answer.outcome != ClamdChannel::Outcome::Dropped) {
            break;
        }
    }
    return answer;
}

std::string ClamdEngine::sampleTrouble(const EngineState& state, TimePoint deadline,
                                       const std::stop_token& stop) {
    if (!m_tested) {
        m_sample.forget(); // a fresh one has a name
    }
    if (!m_sample.make(m_settings.testFolder, configuration().scanArchives)) {
        m_tested = true;
        return {}; // our own trouble, which others tell
    }
    const TimePoint began = Clock::now();
    const Judgement judgement = judgementFor(askForSample(deadline, stop));
    m_sample.hideName();
    if (stop.stop_requested()) {
        return "stopped";
    }
    if (!isJudged(judgement.verdict)) {
        m_tested = false;
        return "it judges no files: " + judgement.reason;
    }
    return troubleOf(judgement.verdict, state, began);
}

std::string ClamdEngine::troubleOf(Verdict verdict, const EngineState& state, TimePoint began) {
    const std::string& known = state.signatureKey.empty() ? state.version : state.signatureKey;
    // Official signatures have a number, and know the sample.
    const bool official = signatureTimeOf(state.version).has_value();
    const ControlSample::Meaning meaning = m_sample.meaningOf(verdict, known, official);
    if (meaning == ControlSample::Meaning::Blind) {
        disbelieve();
    }
    std::string trouble = cureTrouble(meaning);
    m_believed = m_tested = trouble.empty();
    if (!trouble.empty()) {
        return trouble;
    }
    m_proven = meaning == ControlSample::Meaning::Scans;
    if (m_proven) {
        m_sample.tookFrom(began, Clock::now());
    }
    const std::lock_guard lock(m_stateMutex);
    m_state.proofs += m_proven ? 1 : 0;
    return {};
}

std::string ClamdEngine::cureTrouble(ControlSample::Meaning meaning) {
    const ControlSample::Cure cure = m_sample.cure(meaning, Clock::now(), m_settings.reloadTime);
    if (cure == ControlSample::Cure::Reload) {
        std::string error;
        (void)askClamd(m_socket, "RELOAD", m_settings.patience, error);
    }
    if (meaning == ControlSample::Meaning::Blind) {
        return "The engine calls a known test file clean: it does not scan. Is its temporary "
               "folder " +
               printable(configuration().temporaryFolder) + " full?";
    }
    return cure == ControlSample::Cure::None
               ? std::string()
               : "The engine scans again, and loads its signatures anew to forget what it called "
                 "clean meanwhile.";
}

void ClamdEngine::disbelieve() {
    m_tested = false;
    m_sample.caught();
    if (m_believed.exchange(false)) {
        const std::lock_guard lock(m_stateMutex);
        ++m_state.doubts;
    }
}

void ClamdEngine::lost(std::string why) {
    bool was = false;
    {
        const std::lock_guard lock(m_stateMutex);
        was = std::exchange(m_state.reachable, false);
        m_state.trouble = std::move(why);
    }
    m_tested = false;
    if (was && m_lost) {
        m_lost();
    }
}

void ClamdEngine::publish(EngineState state) {
    const std::lock_guard lock(m_stateMutex);
    if (!m_state.signatureKey.empty() && state.signatureKey != m_state.signatureKey) {
        m_suspects.forgetAll(); // other signatures may fare better
    }
    state.proofs = m_state.proofs;
    state.doubts = m_state.doubts;
    m_state = std::move(state);
}

} // namespace korvale::agent
