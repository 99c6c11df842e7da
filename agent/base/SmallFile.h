#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace korvale::agent {

/// The whole content of a regular file of at most `limit` bytes. Anything else of that name and any
/// failure is no value, with a sentence in `error`. Opening never waits; links are followed.
[[nodiscard]] std::optional<std::string> readSmallFile(const std::string& path, std::size_t limit,
                                                       std::string& error);

} // namespace korvale::agent
