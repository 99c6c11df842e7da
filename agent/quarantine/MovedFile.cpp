#include "agent/quarantine/MovedFile.h"

#include "agent/quarantine/ContentDigest.h"
#include "agent/quarantine/SafeOpen.h"
#include "agent/quarantine/VaultPlace.h"
#include "agent/store/QuarantineRecord.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

constexpr const char* kHeldAside = "taken";
constexpr int kMostNames = 1000;

bool exists(int folder, const std::string& name) {
    struct stat status {};
    return ::fstatat(folder, name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

} // namespace

MovedFile::MovedFile(int origin, std::string name, UniqueFd aside, std::string asideName,
                     int holder, std::string held)
    : m_origin(origin),
      m_name(std::move(name)),
      m_aside(std::move(aside)),
      m_asideName(std::move(asideName)),
      m_holder(m_aside ? m_aside.get() : holder),
      m_held(std::move(held)) {}

UniqueFd MovedFile::openAside(int folder, const std::string& name) {
    UniqueFd aside(::openat(folder, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    // Whoever owns the folder may have put another one there: only ours, closed to all, will do.
    if (aside && (::fstat(aside.get(), &status) != 0 || status.st_uid != ::geteuid() ||
                  (status.st_mode & 0077U) != 0)) {
        errno = EACCES;
        return {};
    }
    return aside;
}

std::optional<MovedFile> MovedFile::move(const VaultPlace& vault, int folder,
                                         const std::string& name, const std::string& id,
                                         int& error) {
    const std::string taken = VaultPlace::takenName(id);
    if (moveName(folder, name, vault.folder, taken)) {
        return MovedFile(folder, name, {}, {}, vault.folder, taken);
    }
    error = errno;
    if (error != EXDEV) {
        return std::nullopt;
    }
    const std::string asideName = VaultPlace::asideName(id);
    const bool made = ::mkdirat(folder, asideName.c_str(), 0700) == 0;
    UniqueFd aside = made ? openAside(folder, asideName) : UniqueFd();
    if (aside && moveName(folder, name, aside.get(), kHeldAside)) {
        return MovedFile(folder, name, std::move(aside), asideName, -1, kHeldAside);
    }
    error = errno;
    if (made) {
        ::unlinkat(folder, asideName.c_str(), AT_REMOVEDIR);
    }
    return std::nullopt;
}

std::optional<MovedFile> MovedFile::find(const VaultPlace& vault, int folder,
                                         const std::string& name, const std::string& id) {
    const std::string taken = VaultPlace::takenName(id);
    if (exists(vault.folder, taken)) {
        return MovedFile(folder, name, {}, {}, vault.folder, taken);
    }
    const std::string asideName = VaultPlace::asideName(id);
    UniqueFd aside = folder >= 0 ? openAside(folder, asideName) : UniqueFd();
    if (aside && exists(aside.get(), kHeldAside)) {
        return MovedFile(folder, name, std::move(aside), asideName, -1, kHeldAside);
    }
    if (aside) { // ended between making and moving, or between unlinking and removing
        ::unlinkat(folder, asideName.c_str(), AT_REMOVEDIR);
    }
    return std::nullopt;
}

UniqueFd MovedFile::open() const {
    return openRegular(m_holder, m_held);
}

bool MovedFile::is(const QuarantineRecord& record, bool compareContent) const {
    struct stat status {};
    if (::fstatat(m_holder, m_held.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0 ||
        !S_ISREG(status.st_mode)) {
        return false;
    }
    const FileIdentity now = identityOf(status, record.judged.fileSystem);
    if (now.inode != record.judged.inode || now.size != record.judged.size ||
        now.mtimeNs != record.judged.mtimeNs) {
        return false;
    }
    if (!compareContent) {
        return true;
    }
    const UniqueFd file = open();
    return file && contentDigest(file.get()) == record.sha256;
}

std::optional<std::string> MovedFile::putBack() {
    for (int number = 0; m_origin >= 0 && number < kMostNames; ++number) {
        const std::string name =
            number == 0 ? m_name : m_name + " (kept " + std::to_string(number) + ")";
        if (moveName(m_holder, m_held, m_origin, name)) {
            removeAside();
            return name;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return std::nullopt;
}

bool MovedFile::destroy() {
    if (::unlinkat(m_holder, m_held.c_str(), 0) != 0 || ::fsync(m_holder) != 0) {
        return false;
    }
    removeAside();
    // Else a power loss could bring the name back.
    return m_origin < 0 || syncFolder(m_origin);
}

void MovedFile::removeAside() {
    if (m_aside) {
        ::unlinkat(m_origin, m_asideName.c_str(), AT_REMOVEDIR);
    }
}

} // namespace korvale::agent
