#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace korvale::agent {

/// Asks clamd one simple question ("VERSION") over a connection of its own and waits for the answer
/// at most `patience`. No value, and a sentence in `error`, when none comes that ends as it should.
/// `peer`, if wanted, is the process that listens: the service manager's where that does it.
[[nodiscard]] std::optional<std::string> askClamd(const std::string& socketPath,
                                                  std::string_view command,
                                                  std::chrono::milliseconds patience,
                                                  std::string& error, pid_t* peer = nullptr);

} // namespace korvale::agent
