#pragma once

#include "agent/engine/Verdict.h"

#include <string_view>

namespace korvale::agent {

/// What clamd's reply to one passed descriptor ("fd[11]: Win.Test FOUND") says. An error is never
/// clean, and an answer that clamd cannot have meant ("fd[11]: maybe") is no answer.
///
/// "Heuristics.Limits.Exceeded." is how clamd says that it did not look at all of a file; other
/// names that begin with "Heuristics." or "PUA." are Abnormal, all others Unsafe. Hash and size
/// that clamd appends with ExtendedDetectionInfo are taken off the name.
[[nodiscard]] Judgement judgementOf(std::string_view reply);

/// The verdict that a name stands for, as above.
[[nodiscard]] Verdict verdictOf(std::string_view virusName);

} // namespace korvale::agent
