#pragma once

#include <string>

namespace korvale::agent {

/// What is known of a file after it was asked for. Only the first three are judgements.
enum class Verdict {
    Clean,
    Abnormal,   ///< heuristics, potentially unwanted: a person decides
    Unsafe,     ///< a known bad content
    NotScanned, ///< it cannot be judged (too large, unreadable, changes all the time): never clean,
                ///< never a finding, never remembered; counted and shown
    NoAnswer,   ///< nobody judged it, the engine did not answer: as above, and worth another try
};

[[nodiscard]] constexpr bool isBad(Verdict verdict) {
    return verdict == Verdict::Abnormal || verdict == Verdict::Unsafe;
}

[[nodiscard]] constexpr bool isJudged(Verdict verdict) {
    return verdict == Verdict::Clean || isBad(verdict);
}

struct Judgement {
    Verdict verdict = Verdict::NoAnswer;
    std::string name;      ///< of what was found, valid UTF-8; empty unless isBad(verdict)
    std::string reason;    ///< why it was not judged, for people; empty when isJudged(verdict)
    std::string sha256hex; ///< of the content, 64 lower-case digits; empty when nobody needed it
    /// Clean, but the engine has not shown since then that it scans at all: it may turn out (see
    /// EngineState::doubts) that it did not.
    bool provisional = false;

    friend bool operator==(const Judgement&, const Judgement&) = default;
};

} // namespace korvale::agent
