#include "agent/engine/BuiltInEngine.h"
#include "agent/engine/ClamdEngine.h"
#include "agent/engine/CombinedEngine.h"
#include "agent/fakes/EicarText.h"
#include "agent/fakes/Needs.h"
#include "agent/fakes/RealClamd.h"
#include "agent/scan/RecordingScan.h"

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>

using namespace korvale::agent;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

constexpr int kFiles = 400;
constexpr int kEveryBad = 10;

class RealScan : public testing::Test {
protected:
    void makeTree() {
        for (int file = 0; file < kFiles; ++file) {
            const bool bad = file % kEveryBad == 0;
            const std::string folder = m_folder / ("d" + std::to_string(file % 7));
            fs::create_directory(folder);
            writeFile(folder + "/f" + std::to_string(file),
                      (bad ? RealClamd::badMarker : "harmless") + std::string(20'000, ' ') +
                          std::to_string(file));
        }
    }
    ScanRequest request() const {
        ScanRequest request = RecordingScan::of(m_folder.path());
        request.options.patience = 60s;
        request.options.fileDeadline = 60s;
        return request;
    }

    ScratchFolder m_folder;
    BuiltInEngine m_builtIn;
};

TEST_F(RealScan, LosesNoFindingWhenClamdIsKilledInItAndStartedAgain) {
    KORVALE_NEEDS(clamd());
    RealClamd clamd;
    ClamdEngine engine({clamd.configuration(), {}, 1s, {}});
    CombinedEngine both(m_builtIn, &engine);
    makeTree();
    RecordingScan scan(request(), both);
    scan.job().start();
    for (const std::size_t findings : {3U, 15U}) {
        scan.waitForFindings(findings);
        clamd.kill();
        clamd.start();
    }
    const ScanSummary summary = scan.waitForEnd();
    std::set<std::string> found;
    for (const FoundFile& file : scan.files) {
        found.insert(file.path);
    }
    // A file that was in clamd's hands both times may have been given up; it is counted, not clean.
    EXPECT_EQ(found.size(), scan.files.size()) << "nothing is told twice";
    EXPECT_EQ(summary.analysed + summary.notScanned, static_cast<std::uint64_t>(kFiles));
    EXPECT_GE(found.size() + summary.notScanned, static_cast<std::size_t>(kFiles / kEveryBad));
    EXPECT_EQ(summary.unanswered, 0U);
}

TEST_F(RealScan, FindsEverythingWhenClamdIsStoppedForAWhile) {
    KORVALE_NEEDS(clamd());
    const RealClamd clamd;
    ClamdEngine engine({clamd.configuration(), {}, 300ms, {}});
    CombinedEngine both(m_builtIn, &engine);
    makeTree();
    ScanRequest hasty = request();
    hasty.options.fileDeadline = 700ms;
    RecordingScan scan(hasty, both);
    scan.job().start();
    scan.waitForFindings(3);
    clamd.signal(SIGSTOP);
    std::this_thread::sleep_for(1500ms); // longer than a file may take: that is the point
    clamd.signal(SIGCONT);
    const ScanSummary summary = scan.waitForEnd();
    EXPECT_EQ(summary.analysed + summary.unanswered, static_cast<std::uint64_t>(kFiles));
    EXPECT_LE(summary.unanswered, ScanJob::workers) << "those it had when it was stopped";
    EXPECT_GE(scan.files.size() + summary.unanswered, static_cast<std::size_t>(kFiles / kEveryBad));
}

TEST_F(RealScan, FindsTheTestFileWithoutClamd) {
    ClamdEngine engine({m_folder / "none.conf", m_folder / "none.ctl", 300ms, {}});
    CombinedEngine both(m_builtIn, &engine);
    fs::create_directory(m_folder / "Downloads");
    writeFile(m_folder / "Downloads/test.com", eicarText());
    writeFile(m_folder / "Downloads/other", "harmless");
    ScanRequest scanned = request();
    scanned.caller = {::geteuid(), {::getegid()}};
    RecordingScan scan(scanned, both);
    const ScanSummary summary = scan.run();
    ASSERT_EQ(scan.files.size(), 1U);
    EXPECT_EQ(scan.files.front().judgement.name, "EICAR-Test-File");
    EXPECT_FALSE(summary.withEngine);
    EXPECT_EQ(summary.unanswered, 1U);
}

} // namespace
