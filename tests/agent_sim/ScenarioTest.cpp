#include "agent_sim/Scenario.h"

#include <gtest/gtest.h>

namespace korvale::sim {
namespace {

QProcessEnvironment environment() {
    QProcessEnvironment variables;
    variables.insert(QStringLiteral("FOLDER"), QStringLiteral("/a \"b\" $"));
    return variables;
}

TEST(Scenario, KeepsItsCommandsInOrder) {
    const Scenario scenario =
        readScenario(QStringLiteral("# comment\n\nstart\n  wait 2\nquit"), environment());
    EXPECT_EQ(scenario.problem, QString());
    ASSERT_EQ(scenario.lines.size(), 3U);
    EXPECT_EQ(scenario.lines[0].command->name, QLatin1String("start"));
    EXPECT_EQ(scenario.lines[1].arguments, QStringList{QStringLiteral("2")});
}

TEST(Scenario, AVariableIsTakenAsItIs) {
    const Scenario scenario =
        readScenario(QStringLiteral("threat ${FOLDER}/x${FOLDER} 1 id${"), environment());
    ASSERT_EQ(scenario.lines.size(), 1U);
    EXPECT_EQ(scenario.lines[0].arguments,
              QStringList({QStringLiteral("/a \"b\" $/x/a \"b\" $"), QStringLiteral("1"),
                           QStringLiteral("id${")}));
}

TEST(Scenario, AMissingVariableAndAnUnknownCommandAreNamedWithTheirLine) {
    EXPECT_TRUE(readScenario(QStringLiteral("start\nscan ${NONE}"), environment())
                    .problem.startsWith(QStringLiteral("line 2: the environment variable NONE")));
    EXPECT_TRUE(readScenario(QStringLiteral("start\n\nnonsense"), environment())
                    .problem.startsWith(QStringLiteral("line 3: ")));
}

TEST(Scenario, AFileThatIsNotThereIsAProblem) {
    EXPECT_FALSE(loadScenario(QStringLiteral("/nowhere/x.scenario")).problem.isEmpty());
}

} // namespace
} // namespace korvale::sim
