#include "agent/bus/CallerLookup.h"

#include "BusTest.h"

#include <algorithm>
#include <unistd.h>

namespace korvale::agent {
namespace {

class CallerLookupTest : public BusTest {
protected:
    std::optional<Caller> ask(const QString& name) {
        int answers = 0;
        std::optional<Caller> caller;
        m_lookup.ask(*m_agent, name, [&](const std::optional<Caller>& answer) {
            ++answers;
            caller = answer;
        });
        EXPECT_TRUE(waitUntil([&] { return answers > 0; }));
        EXPECT_EQ(answers, 1);
        return caller;
    }

    CallerLookup m_lookup;
};

TEST_F(CallerLookupTest, TheBusNamesUserAndGroups) {
    const QString name = m_caller->baseService();
    const std::optional<Caller> caller = ask(name);
    ASSERT_TRUE(caller.has_value());
    EXPECT_EQ(caller->busName, name);
    EXPECT_EQ(caller->uid, ::getuid());
    EXPECT_NE(std::find(caller->gids.begin(), caller->gids.end(), ::getgid()), caller->gids.end());
}

TEST_F(CallerLookupTest, ACallerWhoLeftIsNobody) {
    const QString name = m_caller->baseService();
    callerLeaves();
    EXPECT_FALSE(ask(name).has_value());
    EXPECT_FALSE(ask(QStringLiteral("not a name")).has_value());
}

TEST_F(CallerLookupTest, AKnownCallerIsNotAskedForAgain) {
    const QString name = m_caller->baseService();
    ASSERT_TRUE(ask(name).has_value());
    bool atOnce = false;
    m_lookup.ask(*m_agent, name,
                 [&](const std::optional<Caller>& answer) { atOnce = answer.has_value(); });
    EXPECT_TRUE(atOnce);
    m_lookup.forget();
    callerLeaves();
    EXPECT_FALSE(ask(name).has_value());
}

} // namespace
} // namespace korvale::agent
