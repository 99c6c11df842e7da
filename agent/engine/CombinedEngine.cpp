#include "agent/engine/CombinedEngine.h"

#include "agent/engine/Sha256.h"

#include <limits>

namespace korvale::agent {

using Clock = std::chrono::steady_clock;

CombinedEngine::CombinedEngine(Engine& builtIn, Engine* other)
    : m_builtIn(builtIn), m_other(other) {}

Judgement CombinedEngine::judge(int descriptor, std::chrono::milliseconds deadline,
                                std::stop_token stop) {
    const auto end = Clock::now() + deadline;
    Judgement judgement = m_builtIn.judge(descriptor, deadline, stop);
    // The built-in engine's "no answer" (a list, no time to read) is no reason to ask nobody else;
    // but what only one of two engines called clean is not clean.
    const bool undecided = judgement.verdict == Verdict::NoAnswer;
    if (m_other != nullptr && (judgement.verdict == Verdict::Clean || undecided)) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
        Judgement second = m_other->judge(descriptor, left, stop);
        if (!undecided || isBad(second.verdict)) {
            judgement = std::move(second);
        }
    }
    if (isBad(judgement.verdict) && judgement.sha256hex.empty()) {
        // A finding is worth more time than was given for the question.
        const auto digest = sha256Of(descriptor, std::numeric_limits<std::int64_t>::max(),
                                     Clock::now() + std::chrono::minutes(1), {});
        judgement.sha256hex = digest ? toHex(*digest) : std::string();
    }
    return judgement;
}

EngineState CombinedEngine::combined(const EngineState& builtIn, EngineState other) {
    if (!other.signatureKey.empty()) {
        other.signatureKey = builtIn.signatureKey + '|' + other.signatureKey;
    }
    return other;
}

EngineState CombinedEngine::state() const {
    const EngineState builtIn = m_builtIn.state();
    return m_other == nullptr ? builtIn : combined(builtIn, m_other->state());
}

EngineState CombinedEngine::refresh() {
    const EngineState builtIn = m_builtIn.state(); // its lists are read again on request only
    return m_other == nullptr ? builtIn : combined(builtIn, m_other->refresh());
}

} // namespace korvale::agent
