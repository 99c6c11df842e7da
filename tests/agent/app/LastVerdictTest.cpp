#include "agent/app/LastVerdict.h"

#include "agent/app/FindingsKeeper.h"
#include "agent/base/UniqueFd.h"
#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/Needs.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/store/VerdictCache.h"
#include "fakes/WaitUntil.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

class LastVerdictTest : public testing::Test {
protected:
    void SetUp() override {
        std::string error;
        m_cache = VerdictCache::open(m_folder / "verdicts.sqlite", error);
        ASSERT_NE(m_cache, nullptr) << error;
        m_keeper = FindingsKeeper::open({m_folder / "state", m_folder / "vault"}, error);
        ASSERT_NE(m_keeper, nullptr) << error;
        m_verdicts.emplace(*m_keeper, m_cache.get(), m_engine);
        m_cache->setSignatureKey("key");
        writeFile(m_folder / "file", "content");
    }
    /// The keeper's thread uses the others.
    void TearDown() override { m_keeper.reset(); }

    [[nodiscard]] std::string verdict(const std::string& name = "file") {
        std::optional<QJsonObject> told;
        m_verdicts->ask(m_folder / name, [&told](const QJsonObject& members) { told = members; });
        EXPECT_FALSE(told) << "a file was looked at by the thread that serves the bus";
        EXPECT_TRUE(waitUntil([&told] { return told.has_value(); }));
        m_time = told->value(QStringLiteral("verdict_time")).toInteger();
        return told->value(QStringLiteral("verdict")).toString().toStdString();
    }
    void rememberClean() {
        const UniqueFd file(::open((m_folder / "file").c_str(), O_RDONLY | O_CLOEXEC));
        m_cache->remember(*identify(file.get()), KnownVerdict::Clean);
    }
    void find(Verdict kind) {
        FoundFile file;
        file.path = m_folder / "file";
        file.name = "file";
        file.judgement = {kind, "Test", {}, std::string(64, 'a')};
        bool shown = false;
        const auto watching = QObject::connect(m_keeper.get(), &FindingsKeeper::shown,
                                               m_keeper.get(), [&shown] { shown = true; });
        m_keeper->found(file, false);
        ASSERT_TRUE(waitUntil([&shown] { return shown; }));
        QObject::disconnect(watching);
    }

    ScratchFolder m_folder;
    FakeEngine m_engine;
    std::unique_ptr<VerdictCache> m_cache;
    std::unique_ptr<FindingsKeeper> m_keeper;
    std::optional<LastVerdict> m_verdicts;
    qint64 m_time = -1;
};

TEST_F(LastVerdictTest, IsUnknownOfWhatNobodyJudged) {
    EXPECT_EQ(verdict(), "unknown");
    EXPECT_EQ(verdict("missing"), "unknown");
    EXPECT_EQ(m_time, 0);
}

TEST_F(LastVerdictTest, IsCleanWhileTheFileAndTheSignaturesAreTheSame) {
    KORVALE_NEEDS(verdictsKept(m_folder.path()));
    rememberClean();
    EXPECT_EQ(verdict(), "clean");
    m_engine.setKey("newer");
    EXPECT_EQ(verdict(), "unknown");
    m_engine.setKey("key");
    EXPECT_EQ(verdict(), "clean");
    writeFile(m_folder / "file", "other content");
    EXPECT_EQ(verdict(), "unknown");
}

TEST_F(LastVerdictTest, IsThatOfTheFindingWhoseFileStillLiesThere) {
    find(Verdict::Abnormal);
    EXPECT_EQ(verdict(), "abnormal");
    EXPECT_GT(m_time, 1'700'000'000);
    std::filesystem::remove(m_folder / "file");
    EXPECT_EQ(verdict(), "unknown");
}

} // namespace
} // namespace korvale::agent
