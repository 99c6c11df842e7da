#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace korvale::agent {

/// Whose rights count, as the bus tells it. The process is of no interest: its number may belong to
/// somebody else by now.
struct CallerCredentials {
    uid_t user = 0;
    std::vector<gid_t> groups; ///< all of them, the primary one among them, in any order

    [[nodiscard]] bool isRoot() const { return user == 0; }
};

/// Takes the rights of a caller on for this thread alone, until it ends: from now on the kernel
/// answers its file operations as it would answer the caller. Nothing changes for root.
///
/// Only the effective ids are changed, so that the caller can neither signal nor trace the thread,
/// and it can be root again for a moment. The price: a FUSE file system that a user mounted for
/// himself lets nobody in.
///
/// False, and a sentence in `error`, when that does not work (this process is not root): the thread
/// must not go on then.
[[nodiscard]] bool assumeRightsOf(const CallerCredentials& caller, std::string& error);

/// While it lives a thread that assumed another one's rights has those of root again. Does nothing
/// in other threads. Ends the process if the rights cannot be laid down again.
class OwnRights {
public:
    OwnRights();
    ~OwnRights();
    OwnRights(const OwnRights&) = delete;
    OwnRights& operator=(const OwnRights&) = delete;

private:
    uid_t m_assumed;
};

} // namespace korvale::agent
