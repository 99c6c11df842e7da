#pragma once

#include "../watch/WatchScratch.h"
#include "AgentRun.h"
#include "agent/fakes/Needs.h"
#include "agent/fakes/RealClamd.h"

#include <atomic>
#include <thread>

namespace korvale::agent {

/// The whole agent watches a file system of the test's own, and nothing else.
class WatchedRun : public AgentRun {
protected:
    void SetUp() override {
        KORVALE_NEEDS(watch());
        AgentRun::SetUp();
        if (IsSkipped()) {
            return;
        }
        m_mount =
            std::make_unique<ScratchMount>(ScratchMount::tmpfs(files().toStdString(), "size=64m"));
        ASSERT_TRUE(m_mount->mounted());
    }
    void TearDown() override {
        AgentRun::TearDown();
        m_mount.reset();
    }

    [[nodiscard]] QString files() const { return m_folder.path(QStringLiteral("files")); }
    [[nodiscard]] std::string file(const std::string& name) const {
        return files().toStdString() + '/' + name;
    }
    /// With the real engine, if there is one.
    void watch(const QByteArray& further = {}, const RealClamd* clamd = nullptr) {
        const QByteArray engine =
            clamd == nullptr
                ? QByteArray()
                : "configuration = \"" + QByteArray::fromStdString(clamd->configuration()) +
                      "\"\nsocket = \"" + QByteArray::fromStdString(clamd->socket()) + "\"\n";
        configure("[watch]\nfolders = [\"" + QFile::encodeName(files()) + "\"]\n" + further,
                  engine);
        start();
    }
    /// How the file system is watched, once it is.
    [[nodiscard]] bool watchedBy(const char* mode) {
        return waitUntil([&] {
            const QJsonArray list = control("Status").value(QStringLiteral("watch")).toArray();
            return list.size() == 1 &&
                   list[0].toObject().value(QStringLiteral("mode")) == QLatin1String(mode);
        });
    }
    [[nodiscard]] qint64 counted(const char* what) {
        return control("Status")
            .value(QStringLiteral("watch_counts"))
            .toObject()
            .value(QLatin1String(what))
            .toInteger(-1);
    }
    [[nodiscard]] pid_t agent() const { return static_cast<pid_t>(m_process.processId()); }
    /// The agent's child; 0: none.
    [[nodiscard]] pid_t guard() const {
        const std::string number = std::to_string(agent());
        const std::string children = readFile("/proc/" + number + "/task/" + number + "/children");
        return children.empty() ? 0 : std::stoi(children);
    }

    std::unique_ptr<ScratchMount> m_mount;
};

/// Starts a program every ten milliseconds, and knows how long one took at most. The file system
/// remembers nothing of it, so that each start is asked for anew.
class Canary {
public:
    explicit Canary(std::string program) : m_program(std::move(program)) {
        m_thread = std::thread([this] { sing(); });
    }
    ~Canary() { end(); }
    Canary(const Canary&) = delete;
    Canary& operator=(const Canary&) = delete;

    [[nodiscard]] int songs() const { return m_songs; }
    [[nodiscard]] int failures() const { return m_failures; }
    [[nodiscard]] std::chrono::milliseconds longest() const {
        return std::chrono::milliseconds(m_longest);
    }
    void end() {
        m_end = true;
        if (m_thread.joinable()) {
            m_thread.join();
        }
    }

private:
    void sing() {
        while (!m_end) {
            const std::chrono::milliseconds took =
                timeOf([this] { m_failures += runProgram(m_program) == 0 ? 0 : 1; });
            m_longest = std::max<std::int64_t>(m_longest, took.count());
            ++m_songs;
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }

    const std::string m_program;
    std::atomic<bool> m_end = false;
    std::atomic<int> m_songs = 0;
    std::atomic<int> m_failures = 0;
    std::atomic<std::int64_t> m_longest = 0;
    std::thread m_thread;
};

} // namespace korvale::agent
