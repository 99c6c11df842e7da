#pragma once

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <unistd.h>

namespace korvale::agent {

/// File systems of the test's own, seen by its own process and what it starts only. Root is needed.
class ScratchMount {
public:
    /// Whether this process may mount; the first question gives it a mount namespace of its own.
    static bool possible() {
        static const bool allowed =
            ::geteuid() == 0 && ::unshare(CLONE_NEWNS) == 0 &&
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        return allowed;
    }

    /// `folder` must exist.
    static ScratchMount tmpfs(const std::string& folder, const std::string& options) {
        const int mounted = ::mount("scratch", folder.c_str(), "tmpfs", 0, options.c_str());
        return ScratchMount(folder, mounted == 0);
    }
    /// A file system of `megabytes` in a file beside `folder`.
    static ScratchMount ext4(const std::string& folder, int megabytes) {
        const std::string image = folder + ".image";
        const std::string quiet = " >/dev/null 2>&1";
        const bool made =
            run("truncate -s " + std::to_string(megabytes) + "M '" + image + "'" + quiet) &&
            run("/usr/sbin/mkfs.ext4 -q -F '" + image + "'" + quiet) &&
            run("mount -o loop '" + image + "' '" + folder + "'" + quiet);
        return ScratchMount(folder, made);
    }

    /// `below` is an empty folder on a file system that can carry one.
    static ScratchMount overlay(const std::string& folder, const std::string& below) {
        for (const char* const part : {"/lower", "/upper", "/work"}) {
            std::filesystem::create_directory(below + part);
        }
        const std::string options =
            "lowerdir=" + below + "/lower,upperdir=" + below + "/upper,workdir=" + below + "/work";
        const int mounted = ::mount("scratch", folder.c_str(), "overlay", 0, options.c_str());
        return ScratchMount(folder, mounted == 0);
    }
    /// A program serves it, out of the folder `below`.
    static ScratchMount fuse(const std::string& folder, const std::string& below) {
        return ScratchMount(folder, run("bindfs '" + below + "' '" + folder + "' >/dev/null 2>&1"));
    }

    ScratchMount(ScratchMount&& other) noexcept
        : m_folder(std::move(other.m_folder)), m_mounted(std::exchange(other.m_mounted, false)) {}
    ScratchMount& operator=(ScratchMount&&) = delete;
    ~ScratchMount() {
        if (m_mounted) {
            ::umount2(m_folder.c_str(), MNT_DETACH);
        }
    }

    [[nodiscard]] bool mounted() const { return m_mounted; }

private:
    ScratchMount(std::string folder, bool mounted)
        : m_folder(std::move(folder)), m_mounted(mounted) {}
    static bool run(const std::string& command) { return std::system(command.c_str()) == 0; }

    std::string m_folder;
    bool m_mounted;
};

} // namespace korvale::agent
