#include "agent/scan/Scanner.h"

#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/ScratchFolder.h"
#include "fakes/WaitUntil.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <optional>

using namespace korvale;
using namespace korvale::agent;
namespace fs = std::filesystem;

namespace {

class ScannerTest : public testing::Test {
protected:
    ScannerTest() : m_scanner(std::in_place, m_engine, nullptr) {
        QObject::connect(&*m_scanner, &Scanner::ended, &*m_scanner,
                         [this](const ScanSummary& summary) { m_ended.push_back(summary); });
        QObject::connect(&*m_scanner, &Scanner::found, &*m_scanner,
                         [this](const FoundFile& file) { m_found.push_back(file.name); });
        QObject::connect(&*m_scanner, &Scanner::runningChanged, &*m_scanner,
                         [this](bool running) { m_running.push_back(running); });
        QObject::connect(&*m_scanner, &Scanner::progress, &*m_scanner,
                         [this](const ScanInfo& info, const std::string&) {
                             m_progress.push_back(info.analysed);
                         });
        writeFile(m_folder / "bad", "bad");
    }

    ScanRequest request(const std::string& path, ScanKind kind = ScanKind::Folder) const {
        ScanRequest request;
        request.kind = kind;
        request.path = path;
        request.caller = {::geteuid(), {::getegid()}};
        return request;
    }
    /// The answer's number, or 0.
    std::uint64_t start(const ScanRequest& request) {
        std::optional<std::uint64_t> answer;
        m_scanner->start(request, [&](std::uint64_t id, const std::string& error) {
            answer = id;
            m_error = error;
        });
        EXPECT_FALSE(answer) << "it never answers while it is asked";
        EXPECT_TRUE(waitUntil([&] { return answer.has_value(); }));
        return answer.value_or(0);
    }
    void blockEngine() {
        m_engine.onJudge([this](const std::string& content, const std::stop_token& stop) {
            while (!m_open && !stop.stop_requested()) {
                std::this_thread::yield();
            }
            return stop.stop_requested() ? Judgement{} : FakeEngine::byContent(content);
        });
    }

    ScratchFolder m_folder;
    FakeEngine m_engine;
    std::atomic<bool> m_open = false;
    std::optional<Scanner> m_scanner;
    std::vector<ScanSummary> m_ended;
    std::vector<std::string> m_found;
    std::vector<bool> m_running;
    std::vector<std::uint64_t> m_progress;
    std::string m_error;
};

TEST_F(ScannerTest, TellsAScanFromItsBeginningToItsEnd) {
    const std::uint64_t id = start(request(m_folder.path()));
    ASSERT_NE(id, 0U) << m_error;
    ASSERT_TRUE(waitUntil([&] { return !m_ended.empty(); }));
    EXPECT_EQ(m_ended.front().id, id);
    EXPECT_EQ(m_ended.front().found, 1U);
    EXPECT_EQ(m_found, std::vector<std::string>{"bad"}) << "told before the end";
    EXPECT_EQ(m_progress, std::vector<std::uint64_t>{1});
    EXPECT_EQ(m_running, (std::vector<bool>{true, false}));
    EXPECT_TRUE(m_scanner->scans().empty());
}

TEST_F(ScannerTest, RefusesWhatTheCallerCannotRead) {
    EXPECT_EQ(start(request(m_folder / "none")), 0U);
    EXPECT_NE(m_error.find("none"), std::string::npos);
    EXPECT_EQ(start(request("relative")), 0U);
    EXPECT_TRUE(m_running.empty());
}

TEST_F(ScannerTest, LetsFurtherScansOfAKindWait) {
    blockEngine();
    const auto first = start(request(m_folder.path()));
    const auto second = start(request(m_folder.path()));
    const auto background = start(request(m_folder.path(), ScanKind::Background));
    const auto scans = m_scanner->scans();
    ASSERT_EQ(scans.size(), 3U);
    EXPECT_EQ(scans[0].id, first);
    EXPECT_TRUE(scans[0].running);
    EXPECT_EQ(scans[1].id, background);
    EXPECT_TRUE(scans[1].running) << "it does not wait for those of folders";
    EXPECT_EQ(scans[2].id, second);
    EXPECT_FALSE(scans[2].running);
    m_open = true;
    ASSERT_TRUE(waitUntil([&] { return m_ended.size() == 3; }));
    EXPECT_EQ(m_found.size(), 3U);
    EXPECT_EQ(m_running, (std::vector<bool>{true, false}));
}

TEST_F(ScannerTest, StopsOneThatRunsAndOneThatWaits) {
    blockEngine();
    const auto first = start(request(m_folder.path()));
    const auto second = start(request(m_folder.path()));
    EXPECT_TRUE(m_scanner->stop(second));
    EXPECT_TRUE(m_scanner->stop(first));
    EXPECT_FALSE(m_scanner->stop(4711));
    ASSERT_TRUE(waitUntil([&] { return m_ended.size() == 2; }));
    EXPECT_TRUE(m_ended[0].stopped);
    EXPECT_TRUE(m_ended[1].stopped);
    EXPECT_FALSE(m_scanner->isRunning());
}

TEST_F(ScannerTest, RefusesMoreThanItCanKeep) {
    blockEngine();
    std::size_t accepted = 0;
    while (start(request(m_folder.path())) != 0) {
        ASSERT_LE(++accepted, Scanner::longestQueue + 1);
    }
    EXPECT_EQ(accepted, Scanner::longestQueue + 1);
    m_scanner->stopAll();
    ASSERT_TRUE(waitUntil([&] { return m_ended.size() == accepted; }));
}

TEST_F(ScannerTest, MayGoWhileItScansAndChecks) {
    blockEngine();
    start(request(m_folder.path()));
    m_scanner->start(request(m_folder.path()),
                     [](std::uint64_t, const std::string&) { FAIL() << "nobody is there"; });
    m_scanner.reset();
    QCoreApplication::processEvents();
}

} // namespace
