#include "core/TerminalOptions.h"

#include "core/CommandLine.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using Words = std::vector<QByteArray>;
using Verb = TerminalVerb;

CommandLine given(Words arguments) {
    arguments.insert(arguments.begin(), "/usr/bin/korvale-ui");
    return CommandLine(std::move(arguments));
}

TEST(TerminalOptions, NameWhatIsAskedFor) {
    struct Case {
        Words arguments;
        TerminalOptions options;
    };
    const std::vector<Case> cases{
        {{"--check-updates"}, {Verb::CheckUpdates, {}, false}},
        {{"--scan", "/a"}, {Verb::Scan, {"/a"}, false}},
        {{"--scan", "/a", "b c", "/d"}, {Verb::Scan, {"/a", "b c", "/d"}, false}},
        {{"--scan", "a", "--scan", "b"}, {Verb::Scan, {"a", "b"}, false}},
        {{"--scan=/a", "b"}, {Verb::Scan, {"/a", "b"}, false}},
        {{"a", "--scan"}, {Verb::Scan, {"a"}, false}},
        {{"--scan", "--", "--help", "-a"}, {Verb::Scan, {"--help", "-a"}, false}},
        {{"--scan", "a=b"}, {Verb::Scan, {"a=b"}, false}},
        {{"--scan", ""}, {Verb::Scan, {""}, false}},
        {{"--background-scan", "start"}, {Verb::StartBackgroundScan, {}, false}},
        {{"--background-scan=stop"}, {Verb::StopScans, {}, false}},
        {{"--wait", "--scan", "/a"}, {Verb::Scan, {"/a"}, true}},
        {{"--scan", "/a", "--wait", "/b"}, {Verb::Scan, {"/a", "/b"}, true}},
        {{"--check-updates", "--wait"}, {Verb::CheckUpdates, {}, true}},
        {{"--background-scan", "stop", "--wait"}, {Verb::StopScans, {}, true}},
        {{"--scan", "--", "--wait"}, {Verb::Scan, {"--wait"}, false}},
        {{"--scan", "--notify", "--", "/a"}, {Verb::Scan, {"/a"}, false, true}},
        {{"--check-updates", "--wait", "--notify"}, {Verb::CheckUpdates, {}, true, true}},
        {{"--scan", "--", "--notify"}, {Verb::Scan, {"--notify"}, false, false}},
    };
    for (const Case& one : cases) {
        EXPECT_TRUE(isTerminalCommand(given(one.arguments)));
        EXPECT_EQ(parseTerminalOptions(one.arguments), one.options)
            << one.arguments.front().toStdString();
    }
}

TEST(TerminalOptions, WrongUseIsNoCommand) {
    const std::vector<Words> wrong{
        {"--scan"},
        {"--scan", "--"},
        {"--scan", "/a", "--check-updates"},
        {"--scan", "/a", "--json"},
        {"--scan", "--wait"},
        {"--scan", "--notify"},
        {"--wait"},
        {"--notify", "/a"},
        {"--scan", "/a", "-a"},
        {"--scan", "/a", "-update"},
        {"--check-updates", "now"},
        {"--check-updates", "--check-updates"},
        {"--check-updates=now"},
        {"--background-scan"},
        {"--background-scan", "pause"},
        {"--background-scan", "start", "stop"},
        {"--background-scan", "start", "--background-scan", "start"},
    };
    for (const Words& arguments : wrong) {
        EXPECT_TRUE(isTerminalCommand(given(arguments)));
        EXPECT_FALSE(parseTerminalOptions(arguments)) << arguments.back().toStdString();
    }
}

TEST(TerminalOptions, ThoseWithOneDashMeanWhatTheyDid) {
    for (const Words& arguments :
         {Words{"-update"}, Words{"-background-scan"}, Words{"-background-scan-stop"},
          Words{"-update", "--wait"}, Words{"-folder-scan", "--scan"},
          Words{"-folder-scan", "--check-updates"}, Words{"-scan"}, Words{"--scanner"},
          Words{"--", "--scan"}}) {
        EXPECT_FALSE(isTerminalCommand(given(arguments))) << arguments.back().toStdString();
    }
}

} // namespace
} // namespace korvale
