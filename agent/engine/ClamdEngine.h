#pragma once

#include "agent/engine/CircuitBreaker.h"
#include "agent/engine/ClamdChannel.h"
#include "agent/engine/ClamdConfiguration.h"
#include "agent/engine/Engine.h"
#include "agent/engine/SoloGate.h"
#include "agent/engine/SuspectFiles.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>

namespace korvale::agent {

struct ReadableFile;

/// clamd behind its local socket: two sessions with four files each. An answer counts only for a
/// regular file that was readable, small enough for clamd's limits and the same before and after;
/// one that changed is asked for again. See Engine for the threads.
class ClamdEngine final : public Engine {
public:
    static constexpr std::size_t sessions = 2;
    static constexpr std::size_t depth = 4;

    struct Settings {
        std::string configurationFile = "/etc/clamav/clamd.conf";
        std::string socket; ///< empty: as the configuration file says
        /// How long a PING may take until the engine counts as not reachable.
        std::chrono::milliseconds patience{2000};
        /// A folder of the agent's own, from which a test file is passed whenever clamd has come
        /// back: clamd may be confined to some folders, and then judges nothing. Empty: no test.
        std::string testFolder = {};
    };

    explicit ClamdEngine(Settings settings);

    Judgement judge(int descriptor, std::chrono::milliseconds deadline,
                    std::stop_token stop = {}) override;
    [[nodiscard]] EngineState state() const override;
    EngineState refresh() override;

    /// Called whenever it turns out, between two refreshes, that clamd does not answer any more; on
    /// the thread that found out. Set it before the first use.
    void onLost(std::function<void()> lost) { m_lost = std::move(lost); }

private:
    using TimePoint = std::chrono::steady_clock::time_point;
    struct Question; ///< one file, its deadline and stop token

    Judgement askOnce(const Question& question);
    Judgement askAmongOthers(const Question& question);
    Judgement askAlone(const Question& question);
    Judgement judgementFor(const ClamdChannel::Answer& answer);
    bool mayAsk(TimePoint deadline);
    ClamdChannel& freestChannel();
    void publish(EngineState state);
    void lost(std::string why);
    [[nodiscard]] std::string testFileTrouble();

    const Settings m_settings;
    const ClamdConfiguration m_configuration; ///< for the socket; limits are read at each refresh
    const std::string m_socket;
    CircuitBreaker m_breaker;
    SoloGate m_gate;
    SuspectFiles m_suspects;
    std::array<ClamdChannel, sessions> m_channels;

    std::function<void()> m_lost;
    std::atomic<bool> m_tested = false; ///< clamd has read a test file since it came back

    mutable std::mutex m_stateMutex;
    EngineState m_state;
};

} // namespace korvale::agent
