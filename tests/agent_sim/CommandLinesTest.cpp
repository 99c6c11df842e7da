#include "agent/publish/NotificationNames.h"
#include "agent_sim/AgentRooms.h"
#include "agent_sim/CommandInterpreter.h"
#include "agent_sim/CommandWords.h"

#include <QSet>

#include <gtest/gtest.h>

namespace korvale::sim {
namespace {

struct WordsCase {
    const char* line;
    int restFrom;
    QStringList words;
};

class CommandWords : public testing::TestWithParam<WordsCase> {};

TEST_P(CommandWords, AreCut) {
    const WordsCase& test = GetParam();
    EXPECT_EQ(splitWords(QString::fromUtf8(test.line), test.restFrom), test.words) << test.line;
}

INSTANTIATE_TEST_SUITE_P(
    Lines, CommandWords,
    testing::Values(
        WordsCase{"a  b\tc", 99, {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}},
        WordsCase{"a \"b c\" \"\"", 99, {QStringLiteral("a"), QStringLiteral("b c"), QString()}},
        WordsCase{R"(a "x\"y\\z\n")", 99, {QStringLiteral("a"), QStringLiteral("x\"y\\z\n")}},
        WordsCase{R"(a /win\path)", 99, {QStringLiteral("a"), QStringLiteral("/win\\path")}},
        WordsCase{
            "a b  c d ", 2, {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c d")}},
        WordsCase{R"(a {"x": 1} y)", 1, {QStringLiteral("a"), QStringLiteral("{\"x\": 1} y")}},
        WordsCase{R"(a "b c")", 1, {QStringLiteral("a"), QStringLiteral("b c")}},
        WordsCase{R"(a "b" and "c")", 1, {QStringLiteral("a"), QStringLiteral("\"b\" and \"c\"")}},
        WordsCase{"   ", 99, {}}));

TEST(CommandWordsFault, AnOpenQuoteIsNoLine) {
    EXPECT_FALSE(splitWords(u"a \"b", 99).has_value());
}

TEST(CommandInterpreter, BlankLinesAndCommentsAreNothing) {
    EXPECT_TRUE(parseLine(QString()).isEmpty());
    EXPECT_TRUE(parseLine(QStringLiteral("  # start")).isEmpty());
}

TEST(CommandInterpreter, FindsTheCommandAndItsArguments) {
    const ParsedLine line = parseLine(QStringLiteral("exe-blocked /opt/My Program/x"));
    ASSERT_NE(line.command, nullptr);
    EXPECT_EQ(line.command->name, QLatin1String("exe-blocked"));
    EXPECT_EQ(line.arguments, QStringList{QStringLiteral("/opt/My Program/x")});
}

TEST(CommandInterpreter, SaysWhatIsWrong) {
    for (const char* wrong : {"nonsense", "start now", "scan", "threat /a 1",
                              "consumer-notification two words x", "post \"agent.started"}) {
        const ParsedLine line = parseLine(QLatin1String(wrong));
        EXPECT_EQ(line.command, nullptr) << wrong;
        EXPECT_FALSE(line.problem.isEmpty()) << wrong;
    }
}

TEST(CommandTable, EveryCommandIsNamedOnceAndExplained) {
    QSet<QString> names;
    const QString help = commandHelp();
    for (const Command& command : commands()) {
        EXPECT_FALSE(names.contains(command.name)) << command.name.data();
        names.insert(command.name);
        EXPECT_FALSE(command.help.isEmpty()) << command.name.data();
        EXPECT_TRUE(help.contains(QStringLiteral("\n  %1 ").arg(command.name)));
        EXPECT_LE(command.least, command.most) << command.name.data();
    }
}

TEST(NotificationNames, AreTwentyDifferentSignals) {
    QSet<QString> names;
    for (const QStringView name : notificationNames()) {
        names.insert(name.toString());
        const SignalName cut = signalName(name.toString());
        EXPECT_EQ(cut.interface + u'.' + cut.member, name.toString());
        EXPECT_EQ(fullNotificationName(name.toString()), name.toString());
    }
    EXPECT_EQ(names.size(), 20);
}

TEST(NotificationNames, AreCutAtTheLastDot) {
    EXPECT_EQ(signalName(QStringLiteral("com.korvale.timer.aggregated_messages")).interface,
              QStringLiteral("com.korvale.timer"));
    EXPECT_EQ(signalName(QStringLiteral("com.korvale.consumer_notification")).interface,
              QStringLiteral("com.korvale"));
    EXPECT_EQ(fullNotificationName(QStringLiteral("exe.blocked")),
              QStringLiteral("com.korvale.exe.blocked"));
    EXPECT_EQ(fullNotificationName(QStringLiteral("exe.unblocked")), QString());
}

} // namespace
} // namespace korvale::sim
