#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <sys/types.h>

/// What the agent and its guard say to each other, over a pair of sockets that keep messages apart.
/// Both are the same program: the layout needs no care.
namespace korvale::agent {

/// The agent's orders.
struct GuardOrder {
    enum class Kind : std::uint32_t {
        Answer,  ///< to a question: see below
        Forget,  ///< every verdict; `generation` holds from now on
        Mark,    ///< ask for programs on the file system of the descriptor that comes along
        Release, ///< ask for none any more, and let all run that wait
        Exempt,  ///< these processes never wait
        Sleep,   ///< `flag`: let all run without a question; else ask again
        Ping,    ///< say in the shared page that all is well
    };
    static constexpr std::size_t exemptions = 8;

    Kind kind = Kind::Ping;
    std::uint32_t generation = 0; ///< of the signatures that an answer goes by
    std::uint64_t token = 0;      ///< of the question that is answered, or of the mark
    bool refuse = false;
    bool remember = false; ///< it may run until it changes
    bool flag = false;
    std::array<pid_t, exemptions> processes{}; ///< 0: none
};

/// The guard's side.
struct GuardNote {
    enum class Kind : std::uint32_t {
        Ready,    ///< first of all: `error` is an errno, 0 when it can do its work
        Question, ///< may the file that comes along run?
        Marked,   ///< the mark of that token; `error` as above
    };

    Kind kind = Kind::Ready;
    std::int32_t error = 0;
    std::uint64_t token = 0;
};

/// A page that both see. Counters since the start.
struct GuardPage {
    std::atomic<std::uint64_t> pinged = 0; ///< by the agent
    std::atomic<std::uint64_t> ponged = 0; ///< by the guard: the last ping that it saw
    std::atomic<std::uint64_t> known = 0;  ///< allowed, as known from before
    std::atomic<std::uint64_t> asked = 0;
    std::atomic<std::uint64_t> refused = 0;
    std::atomic<std::uint64_t> timedOut = 0; ///< allowed, as no answer came in time
    std::atomic<std::uint64_t> unasked = 0;  ///< allowed, as nobody could be asked
    std::atomic<bool> silent = false;        ///< the agent answers nothing: nobody waits for it
};

} // namespace korvale::agent
