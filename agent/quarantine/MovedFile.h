#pragma once

#include "agent/base/UniqueFd.h"

#include <optional>
#include <string>

namespace korvale::agent {

struct QuarantineRecord;
struct VaultPlace;

/// A name that was moved out of its folder to where nobody else can reach it: into the vault or,
/// across file systems, into a folder of ours beside it. There it is looked at again, for between
/// the look and the move anybody may have put another file under that name.
class MovedFile {
public:
    /// Moves `name`; nothing and errno in `error` when that fails. `folder` is borrowed for as long
    /// as the result lives.
    static std::optional<MovedFile> move(const VaultPlace& vault, int folder,
                                         const std::string& name, const std::string& id,
                                         int& error);
    /// One that an earlier process moved. `folder` may be -1: not there any more.
    static std::optional<MovedFile> find(const VaultPlace& vault, int folder,
                                         const std::string& name, const std::string& id);

    /// Whether it is the file that was judged: inode, size and time of change of its content and,
    /// where asked for, the content itself. (Moving has changed its ctime.)
    [[nodiscard]] bool is(const QuarantineRecord& record, bool compareContent) const;
    /// For reading; none when it is no regular file.
    [[nodiscard]] UniqueFd open() const;

    /// Puts it back under its name or, when that is in use again, beside it. The name it has now;
    /// nothing when it had to stay.
    std::optional<std::string> putBack();
    /// Ends it, for certain when this returns. False with errno.
    bool destroy();

private:
    MovedFile(int origin, std::string name, UniqueFd aside, std::string asideName, int holder,
              std::string held);
    static UniqueFd openAside(int folder, const std::string& name);
    void removeAside();

    int m_origin;
    std::string m_name;
    UniqueFd m_aside; ///< our folder beside it, when that is where it is
    std::string m_asideName;
    int m_holder; ///< the vault or m_aside
    std::string m_held;
};

} // namespace korvale::agent
