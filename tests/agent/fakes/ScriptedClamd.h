#pragma once

#include "agent/base/UniqueFd.h"
#include "agent/engine/BuiltInEngine.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace korvale::agent {

/// A clamd that answers what a test tells it to, and as wrongly.
class ScriptedClamd {
public:
    struct Asked {
        std::uint32_t number; ///< in its session, from 1
        std::string content;  ///< of the passed file, its first kilobyte

        /// The known bad file by which the agent sees whether clamd scans.
        [[nodiscard]] bool isSample() const { return content == packedEicarTestContent(); }
    };
    struct Reaction {
        std::string bytes;  ///< sent as they are, NULs and all; none: nothing is sent
        bool close = false; ///< the connection, after that
        bool die = false;   ///< all connections and the socket, like a process that crashed
    };
    using Behaviour = std::function<Reaction(const Asked&)>;

    explicit ScriptedClamd(std::string socketPath);
    ~ScriptedClamd();
    ScriptedClamd(const ScriptedClamd&) = delete;
    ScriptedClamd& operator=(const ScriptedClamd&) = delete;

    /// The right form of a reply: "NUMBER: fd[9]: WHAT" and NUL.
    static Reaction says(const Asked& asked, const std::string& what);

    void onFile(Behaviour behaviour);
    void setVersion(const std::string& version);
    /// While muted it accepts connections and commands and says nothing at all.
    void setMuted(bool muted) { m_muted = muted; }

    void listen();
    void stop(); ///< closes everything; listen() starts it again

    [[nodiscard]] int connections() const { return m_connections; } ///< ever accepted
    [[nodiscard]] int files() const { return m_files; }             ///< ever asked for
    [[nodiscard]] int reloads() const { return m_reloads; }

private:
    struct Connection;
    void acceptAll();
    void serve(Connection& connection);
    bool command(Connection& connection, const std::string& name);
    bool file(Connection& connection, UniqueFd passed);
    bool react(Connection& connection, const Reaction& reaction);
    void hangUpAll();

    const std::string m_socketPath;
    UniqueFd m_listener;
    std::thread m_acceptor;
    std::mutex m_mutex;
    std::list<std::unique_ptr<Connection>> m_open;
    Behaviour m_behaviour;
    std::string m_version = "ClamAV 1.4.6";
    std::atomic<bool> m_muted = false;
    std::atomic<bool> m_ending = false;
    std::atomic<int> m_connections = 0;
    std::atomic<int> m_files = 0;
    std::atomic<int> m_reloads = 0;
};

} // namespace korvale::agent
