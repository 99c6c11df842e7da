#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvale::agent {

/// "file://" and the path, every byte that is not a plain letter, digit or one of "-._~/" as %XX:
/// exact for every name that a file system can hold. `path` is absolute.
[[nodiscard]] std::string fileUri(std::string_view path);
/// The way back; nothing for what is no such address of a local, absolute path without NUL bytes.
[[nodiscard]] std::optional<std::string> pathOfUri(std::string_view uri);

} // namespace korvale::agent
