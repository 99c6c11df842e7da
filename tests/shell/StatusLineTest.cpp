#include "shell/StatusLine.h"

#include "fakes/FakeClock.h"
#include "fakes/FakeTexts.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

class StatusLineTest : public testing::Test {
protected:
    void SetUp() override {
        QObject::connect(&line, &StatusLine::changed, &line, [this] { ++changes; });
    }
    void expectLine(const QString& text, const QString& toolTip) const {
        EXPECT_EQ(line.text(), text);
        EXPECT_EQ(line.toolTip(), toolTip);
    }

    FakeTexts texts{{"NotRunning", QStringLiteral("not running")},
                    {"NoNetwork", QStringLiteral("no network")},
                    {"NoDriver", QStringLiteral("no driver")},
                    {"Inspecting", QStringLiteral("inspecting")},
                    {"EventThreatStringFromValueRunning", QStringLiteral("running")}};
    fakes::FakeClock clock;
    AppState state;
    StatusLine line{state, clock};
    int changes = 0;
};

struct PlainState {
    StatusState state;
    const char* text;
};
class StatesWithAText : public StatusLineTest, public testing::WithParamInterface<PlainState> {};

TEST_P(StatesWithAText, AreShownAndExplainedByIt) {
    line.updateStatusMessage(GetParam().state);
    expectLine(QString::fromUtf8(GetParam().text), QString::fromUtf8(GetParam().text));
    EXPECT_EQ(state.statusState, GetParam().state);
    EXPECT_EQ(state.lastStatusReportTime, clock.seconds);
}
INSTANTIATE_TEST_SUITE_P(All, StatesWithAText,
                         testing::Values(PlainState{StatusState::NotRunning, "not running"},
                                         PlainState{StatusState::NoNetwork, "no network"},
                                         PlainState{StatusState::NoDriver, "no driver"}));

TEST_F(StatusLineTest, AMissingDriverSticksUntilItIsConnected) {
    state.driverConnected = false;
    line.updateStatusMessage(StatusState::NoDriver);
    const auto moment = state.lastStatusReportTime;
    clock.seconds += 3;
    line.updateStatusMessage(StatusState::Inspecting);
    expectLine(QStringLiteral("no driver"), QStringLiteral("no driver"));
    EXPECT_EQ(state.statusState, StatusState::NoDriver);
    EXPECT_EQ(state.lastStatusReportTime, moment);

    state.driverConnected = true;
    line.updateStatusMessage(StatusState::Inspecting);
    EXPECT_EQ(state.statusState, StatusState::Inspecting);
    EXPECT_EQ(state.lastStatusReportTime, clock.seconds);
}

TEST_F(StatusLineTest, AMissingDriverDoesNotStickBeforeItWasShown) {
    state.driverConnected = false;
    line.updateStatusMessage(StatusState::NoNetwork);
    expectLine(QStringLiteral("no network"), QStringLiteral("no network"));
}

TEST_F(StatusLineTest, ProgressReportsCloseTogetherNameTheFile) {
    state.currentScanItem = QStringLiteral("/home/a/%@.txt");
    line.updateStatusMessage(StatusState::Inspecting);
    expectLine(QStringLiteral("running"), QStringLiteral("running"));
    clock.seconds += 4.99;
    line.updateStatusMessage(StatusState::Inspecting);
    expectLine(QStringLiteral("inspecting /home/a/%@.txt"),
               QStringLiteral("inspecting /home/a/%@.txt"));
    clock.seconds += 5.0;
    line.updateStatusMessage(StatusState::Inspecting);
    expectLine(QStringLiteral("running"), QStringLiteral("running"));
}

TEST_F(StatusLineTest, AnyStatesMomentCountsForTheFile) {
    state.currentScanItem = QStringLiteral("/a");
    line.updateStatusMessage(StatusState::Running);
    line.updateStatusMessage(StatusState::Inspecting);
    EXPECT_EQ(line.text(), QStringLiteral("inspecting /a"));
}

TEST_F(StatusLineTest, AFileThatIsNotNamedIsNull) {
    state.currentScanItem = QString();
    line.updateStatusMessage(StatusState::Running);
    line.updateStatusMessage(StatusState::Inspecting);
    EXPECT_EQ(line.text(), QStringLiteral("inspecting (null)"));
}

TEST_F(StatusLineTest, ARunningAgentEmptiesTheLineAndKeepsTheToolTip) {
    line.updateStatusMessage(StatusState::NotRunning);
    line.updateStatusMessage(StatusState::Running);
    expectLine(QString(), QStringLiteral("not running"));
}

TEST_F(StatusLineTest, TheUpdatersMessageIsShownAsItIs) {
    state.updateStatus = QStringLiteral("<b>50 %@</b>");
    line.updateStatusMessage(StatusState::UpdaterMessage);
    expectLine(state.updateStatus, state.updateStatus);
}

TEST_F(StatusLineTest, NoUpdaterMessageEmptiesLineAndToolTip) {
    line.updateStatusMessage(StatusState::NotRunning);
    state.updateStatus = QString();
    line.updateStatusMessage(StatusState::UpdaterMessage);
    expectLine(QString(), QString());
}

TEST_F(StatusLineTest, AnUnknownStateEmptiesTheLineAndIsStored) {
    line.updateStatusMessage(StatusState::NotRunning);
    line.updateStatusMessage(static_cast<StatusState>(9));
    expectLine(QString(), QStringLiteral("not running"));
    EXPECT_EQ(state.statusState, static_cast<StatusState>(9));
}

TEST_F(StatusLineTest, OnlyAnotherLineIsAnnounced) {
    line.updateStatusMessage(StatusState::NotRunning);
    line.updateStatusMessage(StatusState::NotRunning);
    EXPECT_EQ(changes, 1);
    line.updateStatusMessage(StatusState::NoNetwork);
    EXPECT_EQ(changes, 2);
}

} // namespace
} // namespace korvale
