#pragma once

#include "core/base/AppState.h"

#include <QString>

#include <span>

namespace korvale {

/// How good it is, from calm to loud.
enum class Verdict {
    Good,    ///< known to be well
    Unknown, ///< not known to be well
    Danger,  ///< something has to be looked at or mended
    Away,    ///< nobody protects this machine, or nobody knows
};

/// One state of protection: when it holds, and what it is called. Its texts say why it is so and
/// what a person can do; the latter is missing only where all is well.
struct ProtectionRule {
    const char* name; ///< stable and English, for scripts
    bool (*holds)(const AppState& state);
    Verdict verdict;
    const char* whyKey;              ///< the text may hold the number of `counts`
    const char* whyOneKey = nullptr; ///< the same where that number is 1
    const char* adviceKey = nullptr; ///< what to do
    std::int64_t AppState::*counts = nullptr;
};

/// All of them, the most urgent first; the first that holds is the state, and the last always
/// holds. None is calmer than the status item's colour: only under a green one all is well, and a
/// red or yellow one has its reason named. Louder than the colour they may be, for that keeps
/// what was known last while the agent is away, and never tells of exploits.
[[nodiscard]] std::span<const ProtectionRule> protectionRules();

/// The state that holds.
[[nodiscard]] const ProtectionRule& protectionRule(const AppState& state);

/// Why it is so, in one line.
[[nodiscard]] QString protectionWhy(const ProtectionRule& rule, const AppState& state);

/// What it means and what to do, in a sentence or two; empty where all is well.
[[nodiscard]] QString protectionAdvice(const ProtectionRule& rule);

/// When the agent's last background scan ended (wall clock); empty for an invalid moment: it has
/// told of none.
[[nodiscard]] QString lastScanText(const QDateTime& end);

} // namespace korvale
