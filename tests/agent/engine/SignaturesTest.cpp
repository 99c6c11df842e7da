#include "agent/engine/Signatures.h"

#include "agent/engine/EngineState.h"
#include "agent/fakes/ScratchFolder.h"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>

using namespace korvale::agent;
using namespace std::chrono_literals;

namespace {

TEST(SignatureTime, IsReadFromTheVersionInLocalTime) {
    std::tm parts{};
    parts.tm_year = 126;
    parts.tm_mon = 10;
    parts.tm_mday = 14;
    parts.tm_hour = 9;
    parts.tm_isdst = -1;
    const std::time_t local = std::mktime(&parts);
    const auto time = signatureTimeOf("ClamAV 1.4.6/27900/Sat Nov 14 09:00:00 2026");
    ASSERT_TRUE(time);
    EXPECT_EQ(time->time_since_epoch().count(), local);
}

TEST(SignatureTime, IsNotMadeUp) {
    for (const char* text :
         {"", "ClamAV 1.4.6", "ClamAV 1.4.6/27900", "ClamAV 1.4.6/27900/",
          "ClamAV 1.4.6/27900/yesterday", "ClamAV 1.4.6/27900/Sat Nov 14 09:00:00 2026 or so",
          "ClamAV 1.4.6/27900/Sat Nov 99 09:00:00 2026"}) {
        EXPECT_FALSE(signatureTimeOf(text)) << text;
    }
}

TEST(SignatureFiles, KeyChangesWithEachOfThemAndNotWithTheUpdatersNotes) {
    const ScratchFolder folder;
    EXPECT_TRUE(lookAtSignatures(folder.path()).key.empty());
    EXPECT_TRUE(lookAtSignatures(folder / "none").key.empty());
    writeFile(folder / "main.cvd", "m");
    const SignatureFiles one = lookAtSignatures(folder.path());
    EXPECT_FALSE(one.key.empty());
    EXPECT_TRUE(one.newest);
    EXPECT_FALSE(one.complete);

    writeFile(folder / "freshclam.dat", "notes");
    EXPECT_EQ(lookAtSignatures(folder.path()).key, one.key);
    writeFile(folder / "daily.cld", "d");
    const SignatureFiles two = lookAtSignatures(folder.path());
    EXPECT_NE(two.key, one.key);
    EXPECT_TRUE(two.complete);
    std::filesystem::last_write_time(folder / "main.cvd",
                                     std::filesystem::file_time_type::clock::now() + 1h);
    EXPECT_NE(lookAtSignatures(folder.path()).key, two.key);
}

TEST(Freshness, EndsAfterSevenDays) {
    EngineState state;
    state.reachable = true;
    const auto now = std::chrono::sys_days(std::chrono::year(2026) / 11 / 21) + 12h;
    EXPECT_FALSE(isFresh(state, now)) << "signatures of no age";
    state.signatureTime = now - std::chrono::days(7);
    EXPECT_TRUE(isFresh(state, now));
    state.signatureTime = now - std::chrono::days(7) - 1s;
    EXPECT_FALSE(isFresh(state, now));
    state.signatureTime = now + std::chrono::days(400); // the clock was set back
    EXPECT_TRUE(isFresh(state, now));
    state.reachable = false;
    EXPECT_FALSE(isFresh(state, now));
}

} // namespace
