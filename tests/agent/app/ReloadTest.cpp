#include "agent/app/Reload.h"

#include "agent/base/UniqueFd.h"
#include "agent/engine/BuiltInEngine.h"
#include "agent/fakes/ScratchFolder.h"
#include "fakes/WaitUntil.h"

#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <optional>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

// Of "abc".
constexpr const char* kDigest = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

class ReloadTest : public testing::Test {
protected:
    void configure(const std::string& list) const {
        writeFile(m_folder / "agent.toml", "[engine]\nconfiguration = \"" +
                                               (m_folder / "clamd.conf") + "\"\nhash_lists = [\"" +
                                               list + "\"]\n");
    }
    /// What a reading brings that is asked for now.
    Reload::Read read() {
        std::optional<Reload::Read> got;
        m_reload.ask([&got](const Reload::Read& read) { got = read; });
        EXPECT_FALSE(got) << "it was read at once, by the thread that serves the bus";
        EXPECT_TRUE(waitUntil([&got] { return got.has_value(); }));
        return got.value_or(Reload::Read{std::string("nothing"), {}});
    }
    static bool isGood(const Reload::Read& read) {
        return std::holds_alternative<Configuration>(read.configuration);
    }
    Verdict judged(const std::string& content) {
        writeFile(m_folder / "file", content);
        const UniqueFd file(::open((m_folder / "file").c_str(), O_RDONLY));
        return m_builtIn.judge(file.get(), std::chrono::seconds(20)).verdict;
    }

    ScratchFolder m_folder;
    BuiltInEngine m_builtIn;
    Reload m_reload{m_folder / "agent.toml", m_builtIn};
};

TEST_F(ReloadTest, ReadsTheListsOfDigestsAgain) {
    EXPECT_EQ(judged("abc"), Verdict::Clean);
    writeFile(m_folder / "clamd.conf", "DatabaseDirectory /srv/signatures\n");
    configure(m_folder / "list");
    writeFile(m_folder / "list", kDigest);
    const Reload::Read first = read();
    EXPECT_TRUE(isGood(first));
    EXPECT_EQ(first.signatures, "/srv/signatures");
    EXPECT_EQ(judged("abc"), Verdict::Unsafe);
    const std::string key = m_builtIn.state().signatureKey;
    writeFile(m_folder / "list", "# none any more\n");
    EXPECT_TRUE(isGood(read())) << "the same configuration, and another list";
    EXPECT_EQ(judged("abc"), Verdict::Clean);
    EXPECT_NE(m_builtIn.state().signatureKey, key) << "what was remembered must not count";
}

TEST_F(ReloadTest, KeepsTheListsOfTheLastGoodConfiguration) {
    configure(m_folder / "list");
    writeFile(m_folder / "list", kDigest);
    EXPECT_TRUE(isGood(read()));
    writeFile(m_folder / "agent.toml", "[engine]\nhash_lists = 5\n");
    EXPECT_FALSE(isGood(read()));
    EXPECT_EQ(judged("abc"), Verdict::Unsafe);
}

TEST_F(ReloadTest, WaitsForNoWriterOfAPipe) {
    ASSERT_EQ(::mkfifo((m_folder / "agent.toml").c_str(), 0600), 0);
    EXPECT_FALSE(isGood(read()));
    std::filesystem::remove(m_folder / "agent.toml");
    ASSERT_EQ(::mkfifo((m_folder / "list").c_str(), 0600), 0);
    configure(m_folder / "list");
    EXPECT_TRUE(isGood(read()));
    EXPECT_EQ(judged("abc"), Verdict::Clean);
}

TEST_F(ReloadTest, TellsEverybodyWhatTheFileHeldAfterTheyAsked) {
    constexpr int kAskers = 20;
    int told = 0;
    for (int asker = 0; asker < kAskers; ++asker) {
        const std::string name = "policy " + std::to_string(asker);
        writeFile(m_folder / "next", "[policy]\nname = \"" + name + "\"\n");
        std::filesystem::rename(m_folder / "next", m_folder / "agent.toml");
        m_reload.ask([&told, asker](const Reload::Read& read) {
            const auto* good = std::get_if<Configuration>(&read.configuration);
            ASSERT_NE(good, nullptr);
            EXPECT_GE(std::stoi(good->policyName.substr(7)), asker);
            ++told;
        });
    }
    EXPECT_TRUE(waitUntil([&told] { return told == kAskers; }));
}

} // namespace
} // namespace korvale::agent
