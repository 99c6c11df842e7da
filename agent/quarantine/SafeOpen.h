#pragma once

#include "agent/base/UniqueFd.h"

#include <string>
#include <string_view>

namespace korvale::agent {

/// The folder at an absolute path, through no link at all, neither symbolic nor magic: whoever
/// controls a folder on the way cannot lead us elsewhere. None with errno.
[[nodiscard]] UniqueFd openFolder(const std::string& path);
/// The regular file of that name in the folder, for reading, without waiting (a FIFO, a device)
/// and without touching its access time where that is possible. None with errno; EINVAL when it is
/// no regular file.
[[nodiscard]] UniqueFd openRegular(int folder, const std::string& name);
/// Descriptor for fsync of a folder that is only known by O_PATH.
[[nodiscard]] bool syncFolder(int folder);
/// Moves a name without ever replacing another. False with errno.
[[nodiscard]] bool moveName(int fromFolder, const std::string& from, int toFolder,
                            const std::string& to);
/// Gives an unnamed file (O_TMPFILE) a name. False with errno; EEXIST when there is one.
[[nodiscard]] bool nameFile(int file, int folder, const std::string& name);

/// What stands before the last '/', "/" for a file in the root; and what stands behind it.
[[nodiscard]] std::string folderOf(std::string_view path);
[[nodiscard]] std::string nameOf(std::string_view path);

} // namespace korvale::agent
