#pragma once

#include "agent/audit/KilledProcess.h"
#include "agent/base/FileSystemFacts.h"
#include "agent/base/UniqueFd.h"
#include "agent/fakes/RealClamd.h"
#include "agent/fakes/ScratchMount.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/fanotify.h>
#include <sys/wait.h>
#include <unistd.h>

/// What tests need of the machine they run on: each says in one sentence what is missing, and
/// nothing where all is there.
namespace korvale::agent::needs {

inline std::string unless(bool isThere, const std::string& sentence) {
    return isThere ? std::string() : sentence;
}

inline bool succeeds(const char* command) {
    return std::system(command) == 0;
}

inline std::string root() {
    return unless(::geteuid() == 0, "Only root can do what this needs.");
}

/// File systems of the test's own.
inline std::string mounts() {
    return unless(ScratchMount::possible(),
                  "Only root can mount the file systems that this needs.");
}

/// One of a kind that the machine may lack.
inline std::string mounted(const ScratchMount& mount, const char* kind) {
    return unless(mount.mounted(), std::string("This machine cannot mount ") + kind + '.');
}

inline std::string bindfs() {
    return unless(succeeds("command -v bindfs >/dev/null && test -w /dev/fuse"),
                  "There is no bindfs, or no /dev/fuse.");
}

/// The kernel lets this process watch file systems of its own.
inline std::string watch() {
    if (std::string missing = mounts(); !missing.empty()) {
        return missing;
    }
    const UniqueFd group(::fanotify_init(FAN_CLASS_CONTENT | FAN_CLOEXEC, O_RDONLY));
    const int error = errno;
    return unless(static_cast<bool>(group),
                  std::string("The kernel lets nobody here watch files: ") + std::strerror(error) +
                      '.');
}

inline std::string clamd() {
    if (std::string missing = root(); !missing.empty()) {
        return missing;
    }
    return unless(::access(RealClamd::program, X_OK) == 0,
                  "The package clamav-daemon is not installed.");
}

/// Looked at without the code that is tested.
inline std::string auditStream() {
    const std::string why = auditStreamTrouble();
    return unless(why.empty(), "The kernel's audit stream tells nobody here: " + why + '.');
}

inline std::string umockdev() {
    const char* const preloaded = std::getenv("LD_PRELOAD");
    return unless(std::string_view(preloaded == nullptr ? "" : preloaded).find("umockdev") !=
                      std::string_view::npos,
                  "LD_PRELOAD=libumockdev-preload.so.0 is not set, as ctest does.");
}

/// To run the agent as its unit has it.
inline std::string unitSandbox() {
    return unless(
        succeeds("/usr/bin/python3 -c 'import seccomp' 2>/dev/null && "
                 "command -v setpriv >/dev/null && command -v systemd-analyze >/dev/null"),
        "There is no python3-seccomp, setpriv or systemd-analyze.");
}

/// The file system of `folder` is one whose verdicts are remembered.
inline std::string verdictsKept(const std::string& folder) {
    const UniqueFd opened(::open(folder.c_str(), O_PATH | O_CLOEXEC));
    const auto facts = fileSystemFacts(opened.get());
    return unless(facts && facts->keepsVerdicts,
                  "The file system of " + folder + " keeps no verdicts.");
}

/// A file system whose verdicts are not.
inline std::string sharedMemoryFolder() {
    const UniqueFd folder(::open("/dev/shm", O_PATH | O_CLOEXEC));
    const auto facts = fileSystemFacts(folder.get());
    return unless(facts && !facts->keepsVerdicts && ::access("/dev/shm", W_OK) == 0,
                  "There is no tmpfs on /dev/shm.");
}

} // namespace korvale::agent::needs

/// Ends the test, or the preparation of one, visibly: KORVALE_NEEDS(root()).
#define KORVALE_NEEDS(need)                                                                        \
    if (const std::string missingHere = korvale::agent::needs::need; !missingHere.empty()) {       \
        GTEST_SKIP() << missingHere;                                                               \
    }
