#pragma once

#include "agent/fakes/ScratchFolder.h"
#include "agent/fakes/ScratchMount.h"

#include <chrono>
#include <functional>
#include <memory>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

namespace korvale::agent {

/// Runs a program and waits for it: its exit status, or -errno when it could not be started.
inline int runProgram(const std::string& path) {
    pid_t pid = -1;
    std::string name = path;
    char* const arguments[] = {name.data(), nullptr};
    const int error = ::posix_spawn(&pid, path.c_str(), nullptr, nullptr, arguments, environ);
    if (error != 0) {
        return -error;
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000;
}

/// A small program: the machine's own /bin/true by another name, with `mark` behind it.
inline void makeProgram(const std::string& path, const std::string& mark = {}) {
    std::string content = readFile("/bin/true");
    ASSERT_FALSE(content.empty());
    writeFile(path, content + mark);
    ASSERT_EQ(::chmod(path.c_str(), 0755), 0);
}

inline std::chrono::milliseconds timeOf(const std::function<void()>& act) {
    const auto start = std::chrono::steady_clock::now();
    act();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                                 start);
}

} // namespace korvale::agent
