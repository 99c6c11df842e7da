#include "agent_link/LinkFixture.h"
#include "agent_link/ServiceCommands.h"

#include <gmock/gmock.h>

namespace korvale {
namespace {

using testing::Contains;

class OpenQueriesTest : public LinkFixture {
protected:
    void askEverything() {
        for (const ServiceCommand query : {ServiceCommand::GetCustomName, ServiceCommand::GetPolicy,
                                           ServiceCommand::GetPolicyUpdateTime}) {
            commands.request(query, [this](const ServiceReply* /*reply*/) { ++answers; });
        }
        commands.getSondarVersion();
    }

    int answers = 0;
    ServiceCommands commands{state, channel, displays, displays};
};

TEST_F(OpenQueriesTest, AUserCommandGetsThroughAnAgentThatHasAnsweredNoQueryForHours) {
    joinBus();
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.answer = never;
    constexpr int minutes = 60; // the bus allows 128 open calls
    for (int minute = 0; minute < minutes; ++minute) {
        askEverything();
        commands.checkDriverConnection();
    }
    ASSERT_TRUE(waitUntil([&] { return agent.requests.size() == 5; }));
    agent.answer = answerWith(R"({"RESP":"OK"})");
    commands.checkUpdates();
    EXPECT_TRUE(waitUntil([&] { return !log.lines().empty(); }));
    EXPECT_THAT(log.lines(), Contains("INFO \"Service returned 'OK' for checkUpdates.\""));
    EXPECT_EQ(agent.requests.size(), 6U);
}

TEST_F(OpenQueriesTest, TheNextServiceIsAskedThoughTheLastOneNeverAnswered) {
    joinBus();
    BusAgent hanging(daemon.address());
    ASSERT_TRUE(hanging.takeName());
    hanging.answer = never;
    askEverything();
    ASSERT_TRUE(waitUntil([&] { return hanging.requests.size() == 4; }));
    ASSERT_TRUE(hanging.releaseName()); // it lives on, and so do its open calls
    ASSERT_TRUE(waitUntil([this] { return interruptions() == 1; }));
    BusAgent agent(daemon.address());
    ASSERT_TRUE(agent.takeName());
    agent.answer = answerWith(R"({"RESP":"OK"})");
    askEverything();
    EXPECT_TRUE(waitUntil([&] { return agent.requests.size() == 4 && answers == 3; }));
}

} // namespace
} // namespace korvale
