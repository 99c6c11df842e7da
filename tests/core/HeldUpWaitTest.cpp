#include "core/TerminalWait.h"
#include "fakes/WaitUntil.h"

#include <QThread>

#include <gtest/gtest.h>
#include <vector>

namespace korvale {
namespace {

/// Writes down at each look how much it had been told by then.
class Wait final : public TerminalWait {
public:
    void told(AgentNotification /*what*/) override { ++m_told; }

    std::vector<int> looks;

protected:
    void accepted() override {}
    void look() override { looks.push_back(m_told); }

private:
    int m_told = 0;
};

TEST(HeldUpWait, HearsWhatWasToldWhileItWasStoppedBeforeItLooks) {
    Wait wait;
    wait.begin();
    ASSERT_TRUE(waitUntil([&wait] { return !wait.looks.empty(); }));
    QThread::sleep(3);
    // It takes the bus a moment to bring what was sent meanwhile.
    QTimer::singleShot(50, &wait, [&wait] { wait.told(AgentNotification::AnalyzerStatus); });
    ASSERT_TRUE(waitUntil([&wait] { return wait.looks.size() == 2; }));
    EXPECT_EQ(wait.looks.back(), 1);
}

} // namespace
} // namespace korvale
