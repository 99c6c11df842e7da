#include "agent/ctl/Invocation.h"

#include "agent/base/FileUri.h"
#include "agent/ctl/CommandTable.h"
#include "agent/fakes/ScratchFolder.h"

#include <QJsonArray>

#include <unistd.h>

namespace korvale::agent {
namespace {

Invocation read(const std::vector<std::string>& words) {
    std::string error;
    const auto invocation = readCommandLine(words, error);
    EXPECT_TRUE(invocation) << error;
    return invocation.value_or(Invocation());
}

QJsonArray threatsOf(const Invocation& invocation) {
    return invocation.arguments.value(QStringLiteral("threats")).toArray();
}

TEST(InvocationTest, ReadsEveryCommand) {
    for (const Command& command : commandTable()) {
        std::vector<std::string> words{std::string(command.word), "--json"};
        if (command.words == WordsAre::Threats || command.words == WordsAre::Path) {
            words.emplace_back("/a");
        }
        const Invocation invocation = read(words);
        EXPECT_EQ(invocation.method.toStdString(), command.method);
        EXPECT_TRUE(invocation.json);
        EXPECT_EQ(invocation.confirm, command.word == "delete");
        EXPECT_NE(commandHelp().find(std::string(command.help)), std::string::npos);
    }
}

TEST(InvocationTest, TellsNumbersIdentifiersAndPathsApart) {
    const std::string identifier(64, 'a');
    const QJsonArray threats = threatsOf(
        read({"quarantine", "7", "12345678", "0a1b2c3d", identifier, "/b\xff c", "file:///a%20b"}));
    ASSERT_EQ(threats.size(), 6);
    EXPECT_EQ(threats[0].toInt(), 7);
    EXPECT_EQ(threats[1].toString(), QStringLiteral("12345678"));
    EXPECT_EQ(threats[2].toString(), QStringLiteral("0a1b2c3d"));
    EXPECT_EQ(threats[3].toString().toStdString(), identifier);
    EXPECT_EQ(threats[4].toString(), QStringLiteral("file:///b%FF%20c"));
    EXPECT_EQ(threats[5].toString(), QStringLiteral("file:///a%20b"));
}

TEST(InvocationTest, MakesPathsAbsoluteByTheirRealFolderButNotTheirLastLink) {
    const ScratchFolder folder;
    std::filesystem::create_directory(folder / "real");
    std::filesystem::create_directory_symlink("real", folder / "link");
    std::filesystem::create_symlink("elsewhere", folder / "real/bad");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    const QString expected = QString::fromStdString(
        fileUri(std::filesystem::canonical(folder.path()).string() + "/real/bad"));
    for (const char* const word : {"link/bad", "./link/../real/bad", "real//bad"}) {
        EXPECT_EQ(threatsOf(read({"waive", word})).at(0).toString(), expected) << word;
    }
    EXPECT_EQ(read({"scan", "real/"}).arguments.value(QStringLiteral("uri")).toString(),
              QString::fromStdString(
                  fileUri(std::filesystem::canonical(folder.path()).string() + "/real")));
    std::filesystem::current_path(before);
    EXPECT_EQ(read({"scan", "/"}).arguments.value(QStringLiteral("uri")).toString(),
              QStringLiteral("file:///"));
}

TEST(InvocationTest, ReadsOptionsInAnyPlaceUntilTheDashes) {
    const Invocation restore =
        read({"restore", "--no-waive", "7", "--to", "/evidence", "--beside"});
    EXPECT_EQ(restore.arguments.value(QStringLiteral("waive")), QJsonValue(false));
    EXPECT_EQ(restore.arguments.value(QStringLiteral("beside")), QJsonValue(true));
    EXPECT_EQ(restore.arguments.value(QStringLiteral("uri")),
              QJsonValue(QStringLiteral("file:///evidence")));
    EXPECT_EQ(threatsOf(restore).size(), 1);
    const Invocation waive = read({"waive", "--reason", "\xff ours", "--", "--end"});
    EXPECT_EQ(waive.arguments.value(QStringLiteral("reason")),
              QJsonValue(QStringLiteral("\uFFFD ours")));
    EXPECT_FALSE(waive.arguments.contains(QStringLiteral("end")));
    EXPECT_EQ(threatsOf(waive).size(), 1);
    EXPECT_FALSE(read({"delete", "--yes", "7"}).confirm);
    EXPECT_TRUE(read({"scan", "--wait"}).wait);
    EXPECT_EQ(read({"stop", "3"}).arguments.value(QStringLiteral("scan")).toInt(), 3);
}

TEST(InvocationTest, RefusesWhatMakesNoSense) {
    const std::vector<std::vector<std::string>> lines{
        {"no-such"},        {"--json"},         {"status", "more"},  {"status", "--all"},
        {"quarantine"},     {"waive", "--end"}, {"restore", "--to"}, {"why"},
        {"why", "a", "b"},  {"scan", "a", "b"}, {"stop", "all"},     {"stop", "1", "2"},
        {"threats", "-all"}};
    for (const auto& words : lines) {
        std::string error;
        EXPECT_FALSE(readCommandLine(words, error)) << words.front();
        EXPECT_FALSE(error.empty());
    }
}

TEST(InvocationTest, HelpsWhenAsked) {
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{}, {"--help"}, {"help"}, {"delete", "--help"}}) {
        EXPECT_EQ(read(words).kind, Invocation::Kind::Help);
    }
    EXPECT_EQ(read({"--version"}).kind, Invocation::Kind::Version);
    EXPECT_EQ(read({"why", "--", "--help"}).kind, Invocation::Kind::Call);
}

} // namespace
} // namespace korvale::agent
