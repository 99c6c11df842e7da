#pragma once

#include "WatchScratch.h"
#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/Needs.h"
#include "agent/watch/Watch.h"
#include "fakes/WaitUntil.h"

namespace korvale::agent {

/// The watch with an engine that judges by the first word, on a file system of the test's own.
class WrittenTest : public testing::Test {
protected:
    void SetUp() override {
        KORVALE_NEEDS(watch());
        mountAt(m_folder.path());
        if (!m_mount || !m_mount->mounted()) {
            ASSERT_TRUE(IsSkipped()); // what lies below is this machine's: never to be watched
            return;
        }
        m_tick.start(10); // other threads count without an event: conditions are looked at anyway
        makeWatch();
    }
    void TearDown() override { m_watch.reset(); }

    virtual void mountAt(const std::string& place) {
        m_mount = std::make_unique<ScratchMount>(ScratchMount::tmpfs(place, "size=64m"));
        ASSERT_TRUE(m_mount->mounted());
    }
    /// Who asks for programs: nobody, unless the test wants it.
    virtual GuardProcess guard() { return {}; }
    virtual VerdictCache* cache() { return nullptr; }

    void makeWatch() {
        m_watch = std::make_unique<Watch>(guard(), m_engine, cache());
        QObject::connect(m_watch.get(), &Watch::found, m_watch.get(),
                         [this](const FoundFile& file) { m_found.push_back(file.path); });
        watch({m_folder.path()});
    }
    void watch(const std::vector<std::string>& folders, const std::string& excluded = {}) {
        WatchOptions options;
        std::string error;
        options.folders = folders;
        options.checkStarts = m_checkStarts;
        if (!excluded.empty()) {
            ASSERT_TRUE(options.excluded.add(excluded, error)) << error;
        }
        m_watch->configure(options);
        ASSERT_TRUE(waitUntil([this] { return !m_watch->systems().empty(); }));
    }
    /// In another process: nobody looks at what the watching one writes.
    static void byAnother(const std::function<void()>& act) {
        const pid_t child = ::fork();
        if (child == 0) {
            act();
            ::_exit(HasFailure() ? 1 : 0);
        }
        int status = 1;
        ::waitpid(child, &status, 0);
        ASSERT_EQ(status, 0);
    }
    [[nodiscard]] bool finds(const std::string& path) {
        return waitUntil(
            [&] { return std::find(m_found.begin(), m_found.end(), path) != m_found.end(); });
    }
    /// Whatever was written before this has been seen when it returns.
    void settle() {
        const std::string mark = m_folder / ("mark" + std::to_string(m_marks++));
        byAnother([&] { writeFile(mark, "bad mark"); });
        ASSERT_TRUE(finds(mark));
    }

    ScratchFolder m_folder;
    std::unique_ptr<ScratchMount> m_mount;
    FakeEngine m_engine;
    std::unique_ptr<Watch> m_watch;
    std::vector<std::string> m_found;
    QTimer m_tick;
    int m_marks = 0;
    bool m_checkStarts = false;
};

} // namespace korvale::agent
