#pragma once

#include "agent/engine/Engine.h"
#include "agent/scan/ScanTypes.h"
#include "agent/scan/VerdictMemory.h"
#include "agent/watch/FilePlaces.h"
#include "agent/watch/GuardMessages.h"
#include "agent/watch/WatchOptions.h"

#include <array>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <stop_token>
#include <string>
#include <thread>
#include <vector>

namespace korvale::agent {

/// What comes of programs that somebody wanted to run. Called on any thread.
class StartListener {
public:
    StartListener() = default;
    StartListener(const StartListener&) = delete;
    StartListener& operator=(const StartListener&) = delete;
    virtual ~StartListener() = default;

    /// It was not run.
    virtual void refused(const std::string& path) = 0;
    virtual void found(FoundFile file) = 0;
    /// The engine did not say in time: it runs, and is to be judged later.
    virtual void unjudged(const std::string& path) = 0;
    /// The kernel asks for the programs of that file system, or not (`error` is an errno).
    virtual void marked(std::uint64_t fileSystem, int error) = 0;
    /// Another guard can do its work, or not (`error` is an errno).
    virtual void ready(int error) = 0;
};

/// The agent's side of the guard: judges the programs that it asks for. Any thread may give orders;
/// none waits for the guard.
class StartJudge {
public:
    static constexpr std::size_t workers = 4;
    /// Shorter than the guard's own, so that an answer is never late by a hair.
    static constexpr std::chrono::milliseconds deadline{1800};

    /// `guard` is the socket that leads to it. All else is borrowed and outlives it.
    StartJudge(std::shared_ptr<const UniqueFd> guard, Engine& engine, VerdictMemory& memory,
               const FilePlaces& places, StartListener& listener);
    ~StartJudge(); ///< lets go of the guard and waits for its threads
    StartJudge(const StartJudge&) = delete;
    StartJudge& operator=(const StartJudge&) = delete;

    /// Another guard took the place of the one before, and knows nothing: it is told all but the
    /// marks. ready() follows.
    void use(std::shared_ptr<const UniqueFd> guard);
    void configure(std::shared_ptr<const WatchOptions> options);
    /// Whether a person allowed a content, by its SHA-256: then it may run.
    void setAllowed(const std::string& digest, bool allowed);
    /// `folder` is any of that file system; marked() follows.
    void mark(std::uint64_t fileSystem, const UniqueFd& folder);
    void release(); ///< no program is asked for any more
    void forget();  ///< other signatures: every verdict was given by the old ones
    void exempt(const std::vector<pid_t>& processes);
    void sleep(bool asleep);
    void ping(std::uint64_t number);

private:
    struct Question {
        std::uint64_t token;
        UniqueFd file;
        std::shared_ptr<const UniqueFd> guard; ///< who asked: others have the same tokens
    };

    void listen();
    [[nodiscard]] bool isEnding() const;
    void take(const GuardNote& note, UniqueFd passed, const std::shared_ptr<const UniqueFd>& guard);
    void work();
    void judge(Question question);
    [[nodiscard]] WalkedFile fileOf(UniqueFd descriptor, const std::string& path) const;
    [[nodiscard]] GuardOrder orderFor(WalkedFile& file, const std::string& path, GuardOrder answer,
                                      const UniqueFd& guard);
    void tellFound(const WalkedFile& file, Judgement judgement);
    [[nodiscard]] bool isAllowed(const std::string& digest) const;
    void send(const GuardOrder& order, int descriptor = -1) const;
    [[nodiscard]] std::shared_ptr<const UniqueFd> guard() const;

    Engine& m_engine;
    VerdictMemory& m_memory;
    const FilePlaces& m_places;
    StartListener& m_listener;
    std::stop_source m_stop;
    UniqueFd m_wake;
    mutable std::mutex m_guardMutex;
    std::shared_ptr<const UniqueFd> m_guard;
    mutable std::mutex m_mutex; ///< for what follows
    std::condition_variable m_asked;
    std::deque<Question> m_questions;
    std::shared_ptr<const WatchOptions> m_options;
    std::set<std::string> m_allowed;
    std::uint32_t m_generation = 0;
    GuardOrder m_exemptions; ///< as they were sent last
    bool m_asleep = false;
    bool m_ending = false;
    std::thread m_listenThread;
    std::array<std::thread, workers> m_threads;
};

} // namespace korvale::agent
