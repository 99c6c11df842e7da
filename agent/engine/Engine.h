#pragma once

#include "agent/engine/EngineState.h"
#include "agent/engine/Verdict.h"

#include <chrono>
#include <stop_token>

namespace korvale::agent {

/// Says whether a file is bad. Any thread may ask, several at once.
class Engine {
public:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    virtual ~Engine() = default;

    /// Judges the file behind `descriptor`: borrowed, opened O_RDONLY (anything else is
    /// NotScanned); its offset may be moved, so read it by pread only. Waits at most about
    /// `deadline`, less when `stop` is requested: NoAnswer then. Never from a thread that answers
    /// the kernel or the bus.
    virtual Judgement judge(int descriptor, std::chrono::milliseconds deadline,
                            std::stop_token stop = {}) = 0;

    /// As of the last refresh; never waits.
    [[nodiscard]] virtual EngineState state() const = 0;

    /// Asks the engine how it is (at most a few seconds) and returns the new state.
    virtual EngineState refresh() = 0;
};

} // namespace korvale::agent
