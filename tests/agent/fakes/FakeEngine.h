#pragma once

#include "agent/engine/Engine.h"

#include <array>
#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <unistd.h>

namespace korvale::agent {

/// Judges by the first word of a file: "bad", "odd" (Abnormal), "hard" (not scanned); all else is
/// clean. Counts how often it saw each content.
class FakeEngine final : public Engine {
public:
    using Behaviour = std::function<Judgement(const std::string& content, std::stop_token stop)>;

    FakeEngine() {
        m_state.reachable = true;
        m_state.signatureKey = "key";
    }

    Judgement judge(int descriptor, std::chrono::milliseconds /*deadline*/,
                    std::stop_token stop = {}) override {
        std::array<char, 256> buffer{};
        const ssize_t count = ::pread(descriptor, buffer.data(), buffer.size(), 0);
        const std::string content(buffer.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
        Behaviour behaviour;
        {
            const std::lock_guard lock(m_mutex);
            ++m_seen[content];
            behaviour = m_behaviour;
        }
        return behaviour ? behaviour(content, stop) : byContent(content);
    }
    [[nodiscard]] EngineState state() const override {
        const std::lock_guard lock(m_mutex);
        return m_state;
    }
    EngineState refresh() override {
        ++refreshes;
        if (onRefresh) {
            onRefresh();
        }
        return state();
    }
    void prove() {
        const std::lock_guard lock(m_mutex);
        ++m_state.proofs;
    }
    void doubt() {
        const std::lock_guard lock(m_mutex);
        ++m_state.doubts;
    }
    /// Clean, as long as the engine has not proved itself again.
    static Judgement provisional() { return {Verdict::Clean, {}, {}, {}, true}; }

    static Judgement byContent(const std::string& content) {
        if (content.starts_with("bad")) {
            return {Verdict::Unsafe, "Test.Bad", {}, std::string(64, 'b')};
        }
        if (content.starts_with("odd")) {
            return {Verdict::Abnormal, "PUA.Odd", {}, std::string(64, 'a')};
        }
        if (content.starts_with("hard")) {
            return {Verdict::NotScanned, {}, "too hard", {}};
        }
        return {Verdict::Clean, {}, {}, {}};
    }

    void onJudge(Behaviour behaviour) {
        const std::lock_guard lock(m_mutex);
        m_behaviour = std::move(behaviour);
    }
    void setReachable(bool reachable) {
        const std::lock_guard lock(m_mutex);
        m_state.reachable = reachable;
    }
    void setKey(const std::string& key) {
        const std::lock_guard lock(m_mutex);
        m_state.signatureKey = key;
    }
    [[nodiscard]] std::map<std::string, int> seen() const {
        const std::lock_guard lock(m_mutex);
        return m_seen;
    }
    [[nodiscard]] int timesSeen(const std::string& content) const {
        const auto all = seen();
        const auto found = all.find(content);
        return found == all.end() ? 0 : found->second;
    }
    void forget() {
        const std::lock_guard lock(m_mutex);
        m_seen.clear();
    }

    std::atomic<int> refreshes = 0;
    std::function<void()> onRefresh; ///< set before it is used

private:
    mutable std::mutex m_mutex;
    EngineState m_state;
    Behaviour m_behaviour;
    std::map<std::string, int> m_seen;
};

} // namespace korvale::agent
