#include "agent/scan/ScanJob.h"

#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/scan/RecordingScan.h"

#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace korvale::agent;
using namespace std::chrono_literals;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;

namespace {

class ScanJobTest : public testing::Test {
protected:
    void make(const std::string& name, const std::string& content) const {
        fs::create_directories(fs::path(m_folder / name).parent_path());
        writeFile(m_folder / name, content);
    }
    ScanRequest request() const {
        ScanRequest request = RecordingScan::of(m_folder.path());
        request.caller = {::geteuid(), {::getegid()}};
        request.options.patience = 300ms;
        return request;
    }
    static std::vector<std::string> namesOf(const std::vector<FoundFile>& files) {
        std::vector<std::string> names;
        std::transform(files.begin(), files.end(), std::back_inserter(names),
                       [](const FoundFile& file) { return file.name; });
        return names;
    }

    ScratchFolder m_folder;
    FakeEngine m_engine;
};

TEST_F(ScanJobTest, TellsWhatItFoundAndCountsTheRest) {
    make("a/good", "good");
    make("a/bad one", "bad 1");
    make("a/b/bad two", "bad 2");
    make("odd", "odd");
    make("hard", "hard");
    make("empty", "");
    make("large", std::string(1001, 'x'));
    fs::create_hard_link(m_folder / "odd", m_folder / "odd again");
    ScanRequest scanned = request();
    scanned.options.maxFileSize = 1000;
    RecordingScan scan(scanned, m_engine);
    const ScanSummary summary = scan.run();
    EXPECT_EQ(scan.beganWith, m_folder.path());
    std::vector<std::string> names = namesOf(scan.files);
    for (std::string& name : names) {
        name = name.substr(0, 3);
    }
    EXPECT_THAT(names, UnorderedElementsAre("bad", "bad", "odd"));
    EXPECT_EQ(summary.analysed, 4U);
    EXPECT_EQ(summary.found, 3U);
    EXPECT_EQ(summary.notScanned, 2U) << "the hard one and the large one";
    EXPECT_EQ(summary.unanswered, 0U);
    EXPECT_TRUE(summary.withEngine);
    EXPECT_FALSE(summary.stopped);
    EXPECT_EQ(m_engine.timesSeen("odd"), 1) << "judged by one of its names";
}

TEST_F(ScanJobTest, NamesTheFileByItsOpenFolder) {
    make("folder\xff\n/bad", "bad");
    RecordingScan scan(request(), m_engine);
    scan.run();
    ASSERT_EQ(scan.files.size(), 1U);
    const FoundFile& file = scan.files.front();
    EXPECT_EQ(file.path, m_folder / "folder\xff\n/bad");
    EXPECT_EQ(file.owner, ::geteuid());
    EXPECT_EQ(file.judgement.name, "Test.Bad");
    struct stat status {};
    ASSERT_EQ(::fstatat(file.folder->descriptor.get(), file.name.c_str(), &status, 0), 0);
    EXPECT_EQ(identityOf(status, file.folder->facts.id), file.identity);
}

TEST_F(ScanJobTest, TellsProgressAtMostFiveTimesASecond) {
    for (int file = 0; file < 400; ++file) {
        make("f" + std::to_string(file), "good");
    }
    m_engine.onJudge([](const std::string& content, const std::stop_token&) {
        std::this_thread::sleep_for(10ms);
        return FakeEngine::byContent(content);
    });
    RecordingScan scan(request(), m_engine);
    const ScanSummary summary = scan.run();
    ASSERT_GE(scan.steps.size(), 2U) << "the first one comes at once";
    EXPECT_TRUE(scan.steps.front().first.starts_with(m_folder.path()));
    for (std::size_t step = 1; step < scan.times.size(); ++step) {
        EXPECT_GT(scan.steps[step].second, scan.steps[step - 1].second);
    }
    const auto most = summary.duration / ProgressPace::step + 1;
    EXPECT_LE(static_cast<long>(scan.steps.size()), most);
}

TEST(ProgressPace, IsFiveStepsASecond) {
    ProgressPace pace;
    const auto start = std::chrono::steady_clock::now();
    int due = 0;
    for (auto time = start; time < start + 10s; time += 1ms) {
        due += pace.isDue(time) ? 1 : 0;
    }
    EXPECT_EQ(due, 50);
}

TEST_F(ScanJobTest, StopsWithinASecondWhateverTheEngineDoes) {
    for (int file = 0; file < 100; ++file) {
        make("f" + std::to_string(file), "good");
    }
    std::atomic<int> asked = 0;
    m_engine.onJudge([&](const std::string&, const std::stop_token& stop) -> Judgement {
        ++asked;
        while (!stop.stop_requested()) {
            std::this_thread::yield();
        }
        return {Verdict::NoAnswer, {}, "stopped", {}};
    });
    RecordingScan scan(request(), m_engine);
    scan.job().start();
    while (asked < 8) {
        std::this_thread::yield();
    }
    const auto start = std::chrono::steady_clock::now();
    scan.job().stop();
    const ScanSummary summary = scan.waitForEnd();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
    EXPECT_TRUE(summary.stopped);
    EXPECT_EQ(summary.unanswered, 0U) << "nobody's fault";
    EXPECT_EQ(asked, 8);
}

TEST_F(ScanJobTest, StopsWhileNobodyTakesItsFindings) {
    for (std::size_t file = 0; file < 3 * ScanJob::foundOnTheirWay; ++file) {
        make("f" + std::to_string(file), "bad");
    }
    RecordingScan scan(request(), m_engine);
    scan.letGo = false;
    scan.job().start();
    scan.waitForFindings(ScanJob::foundOnTheirWay);
    EXPECT_EQ(scan.files.size(), ScanJob::foundOnTheirWay) << "the scan waits meanwhile";
    scan.job().stop();
    EXPECT_TRUE(scan.waitForEnd().stopped);
    EXPECT_EQ(scan.waitForEnd().found, scan.files.size()) << "what was found is told";
    scan.files.clear();
}

TEST_F(ScanJobTest, WaitsForAnEngineThatIsStartedAgain) {
    for (int file = 0; file < 50; ++file) {
        make("f" + std::to_string(file), "bad " + std::to_string(file));
    }
    std::atomic<int> asked = 0;
    m_engine.onJudge([&](const std::string& content, const std::stop_token&) -> Judgement {
        if (++asked == 20) {
            m_engine.setReachable(false);
            m_engine.refreshes = 0;
        }
        if (!m_engine.state().reachable) {
            return {Verdict::NoAnswer, {}, "dead", {}};
        }
        return FakeEngine::byContent(content);
    });
    ScanRequest scanned = request();
    scanned.options.patience = 20s;
    RecordingScan scan(scanned, m_engine);
    scan.job().start();
    while (asked < 20 || m_engine.refreshes < 2) {
        std::this_thread::yield();
    }
    m_engine.setReachable(true);
    EXPECT_EQ(scan.waitForEnd().found, 50U);
    EXPECT_EQ(scan.waitForEnd().unanswered, 0U);
}

TEST_F(ScanJobTest, AsksAtTheEndForFilesThatGotNoAnswer) {
    make("bad", "bad");
    make("sub/bad too", "bad too");
    std::atomic<int> asked = 0;
    m_engine.onJudge([&](const std::string& content, const std::stop_token&) -> Judgement {
        if (++asked <= 4) { // each of the two twice
            return {Verdict::NoAnswer, {}, "busy", {}};
        }
        return FakeEngine::byContent(content);
    });
    RecordingScan scan(request(), m_engine);
    const ScanSummary summary = scan.run();
    EXPECT_THAT(namesOf(scan.files), UnorderedElementsAre("bad", "bad too"));
    EXPECT_EQ(summary.unanswered, 0U);
}

TEST_F(ScanJobTest, CountsWhatAnEngineThatStaysAwayDidNotAnswer) {
    for (int file = 0; file < 20; ++file) {
        make("f" + std::to_string(file), "bad");
    }
    m_engine.onJudge([&](const std::string&, const std::stop_token&) -> Judgement {
        m_engine.setReachable(false);
        return {Verdict::NoAnswer, {}, "dead", {}};
    });
    RecordingScan scan(request(), m_engine);
    const ScanSummary summary = scan.run();
    EXPECT_EQ(summary.unanswered, 20U);
    EXPECT_EQ(summary.analysed, 0U);
    EXPECT_TRUE(scan.files.empty()) << "no answer is no finding";
}

TEST_F(ScanJobTest, DoesNotWaitForAnEngineThatNeverWasThere) {
    make("bad", "bad");
    make("good", "good");
    m_engine.setReachable(false);
    m_engine.onJudge([](const std::string& content, const std::stop_token&) -> Judgement {
        const bool known = content == "bad"; // what is built in
        return known ? FakeEngine::byContent(content) : Judgement{Verdict::NoAnswer, {}, "-", {}};
    });
    ScanRequest scanned = request();
    scanned.options.patience = 1h;
    RecordingScan scan(scanned, m_engine);
    const ScanSummary summary = scan.run();
    EXPECT_FALSE(summary.withEngine);
    EXPECT_EQ(summary.found, 1U);
    EXPECT_EQ(summary.unanswered, 1U);
}

TEST_F(ScanJobTest, EndsWithTroubleWhenThereIsNoFolder) {
    ScanRequest scanned = request();
    scanned.path = m_folder / "none";
    RecordingScan scan(scanned, m_engine);
    const ScanSummary summary = scan.run();
    EXPECT_FALSE(summary.trouble.empty());
    EXPECT_EQ(summary.analysed, 0U);
}

TEST_F(ScanJobTest, IsStoppedByItsEnd) {
    make("bad", "bad");
    m_engine.onJudge([&](const std::string&, const std::stop_token& stop) -> Judgement {
        while (!stop.stop_requested()) {
            std::this_thread::yield();
        }
        return {Verdict::NoAnswer, {}, "stopped", {}};
    });
    RecordingScan scan(request(), m_engine);
    scan.job().start();
}

} // namespace
