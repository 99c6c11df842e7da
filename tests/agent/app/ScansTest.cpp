#include "agent/app/Scans.h"

#include "agent/fakes/FakeEngine.h"
#include "agent/fakes/ScratchFolder.h"
#include "agent/scan/Scanner.h"
#include "fakes/WaitUntil.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <optional>

using namespace korvale;
using namespace korvale::agent;

namespace {

TEST(Scans, LookIntoEverythingButTheAgentsOwnFoldersAndWhatIsExcluded) {
    const ScratchFolder folder;
    for (const std::string name : {"state", "vault", "left out", "data"}) {
        std::filesystem::create_directory(folder / name);
        writeFile((folder / name) + "/file", "bad in " + name);
    }
    FakeEngine engine;
    Scanner scanner(engine, nullptr);
    Scans scans(scanner);
    Configuration configuration;
    configuration.state = folder / "state";
    configuration.quarantine = folder / "vault";
    configuration.exclude = {folder / "left*"};
    scans.configure(configuration);
    std::optional<ScanSummary> end;
    QObject::connect(&scanner, &Scanner::ended, &scanner,
                     [&](const ScanSummary& summary) { end = summary; });
    Caller caller;
    caller.uid = ::geteuid();
    caller.gids = {::getegid()};
    scans.startFolder(caller, folder.path(), [](std::uint64_t id, const QString& refusal) {
        EXPECT_NE(id, 0U) << refusal.toStdString();
    });
    ASSERT_TRUE(waitUntil([&] { return end.has_value(); }));
    EXPECT_EQ(end->excluded, 3U);
    EXPECT_EQ(end->found, 1U);
    EXPECT_EQ(engine.timesSeen("bad in data"), 1);
}

} // namespace
