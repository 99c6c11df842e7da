#pragma once

#include "agent/engine/CircuitBreaker.h"
#include "agent/engine/ClamdChannel.h"
#include "agent/engine/ClamdConfiguration.h"
#include "agent/engine/ControlSample.h"
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
/// one that changed is asked for again. "OK" counts only while clamd finds a known bad file, too.
/// See Engine for the threads.
class ClamdEngine final : public Engine {
public:
    static constexpr std::size_t sessions = 2;
    static constexpr std::size_t depth = 4;

    struct Settings {
        std::string configurationFile = "/etc/clamav/clamd.conf";
        std::string socket; ///< empty: as the configuration file says
        /// How long a PING may take until the engine counts as not reachable.
        std::chrono::milliseconds patience{2000};
        /// A folder of the agent's own, from which a known bad file is passed: at first and at each
        /// refresh, and between two of them when files are judged. clamd may be confined to some
        /// folders, and then judges nothing; or it may not scan at all, and says "OK". Empty: its
        /// "OK" is believed untested.
        std::string testFolder = {};
        /// How long clamd may take to load its signatures again.
        std::chrono::milliseconds reloadTime{30'000};
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
    Judgement believed(Judgement judgement, TimePoint deadline, const std::stop_token& stop);
    ClamdChannel::Answer askForSample(TimePoint deadline, const std::stop_token& stop);
    [[nodiscard]] std::string sampleTrouble(const EngineState& state, TimePoint deadline,
                                            const std::stop_token& stop);
    [[nodiscard]] std::string troubleOf(Verdict verdict, const EngineState& state, TimePoint began);
    [[nodiscard]] std::string cureTrouble(ControlSample::Meaning meaning);
    [[nodiscard]] std::string testFileTrouble(const EngineState& state);
    void disbelieve();
    bool mayAsk(TimePoint deadline);
    ClamdChannel& freestChannel();
    [[nodiscard]] ClamdConfiguration configuration() const;
    void publish(EngineState state);
    void lost(std::string why);

    const Settings m_settings;
    ClamdConfiguration m_configuration; ///< read at each refresh, but for the socket
    const std::string m_socket;
    CircuitBreaker m_breaker;
    SoloGate m_gate;
    SuspectFiles m_suspects;
    std::array<ClamdChannel, sessions> m_channels;

    std::function<void()> m_lost;
    std::atomic<bool> m_tested = false; ///< clamd has judged the sample since it came back
    std::atomic<bool> m_proven = false; ///< and found it; else it knows nothing of it
    std::atomic<bool> m_believed = true;
    std::mutex m_sampleMutex; ///< before m_stateMutex
    ControlSample m_sample;

    mutable std::mutex m_stateMutex; ///< and for m_configuration
    EngineState m_state;
};

} // namespace korvale::agent
