#include "shell/AboutCredits.h"
#include "shell/CounterLine.h"
#include "shell/TabLabels.h"

#include <gtest/gtest.h>

// Without translators every key is its own text.

namespace korvale {
namespace {

QString label(TabIdentifier tab, const AppState& state) {
    return tabLabel(factsOfTab(tab), state);
}

TEST(TabLabels, StandInTheirOrderOnScreen) {
    EXPECT_EQ(tabFacts[0].identifier, TabIdentifier::Threats);
    EXPECT_EQ(tabFacts[1].identifier, TabIdentifier::Exploits);
    EXPECT_EQ(tabFacts[2].identifier, TabIdentifier::Events);
    EXPECT_EQ(tabFacts[3].identifier, TabIdentifier::ExternalDevices);
}

TEST(TabLabels, WithoutCountKeepTheTrailingBlank) {
    const AppState state;
    EXPECT_EQ(label(TabIdentifier::Threats, state), u"HPS_Threats ");
    EXPECT_EQ(label(TabIdentifier::Exploits, state), u"HPS_Exploits ");
    EXPECT_EQ(label(TabIdentifier::Events, state), u"HPS_Events ");
    EXPECT_EQ(label(TabIdentifier::ExternalDevices, state), u"HPS_ExternalDevices ");
}

TEST(TabLabels, NameTheUnseenCountInParentheses) {
    AppState state;
    state.newThreatCount = 3;
    state.newExploitCount = 1;
    state.eventCount = 1234567890123;
    EXPECT_EQ(label(TabIdentifier::Threats, state), u"HPS_Threats (3)");
    EXPECT_EQ(label(TabIdentifier::Exploits, state), u"HPS_Exploits (1)");
    EXPECT_EQ(label(TabIdentifier::Events, state), u"HPS_Events (1234567890123)");
}

TEST(TabLabels, NegativeCountsAreNotShown) {
    AppState state;
    state.newThreatCount = -1;
    EXPECT_EQ(label(TabIdentifier::Threats, state), u"HPS_Threats ");
}

TEST(TabLabels, ExternalDevicesAreNeverCounted) {
    AppState state;
    state.externalDevicesCount = 7;
    EXPECT_EQ(label(TabIdentifier::ExternalDevices, state), u"HPS_ExternalDevices ");
}

TEST(TabLabels, AnIdentifierWithoutTabStandsForEvents) {
    EXPECT_EQ(factsOfTab(static_cast<TabIdentifier>(17)).identifier, TabIdentifier::Events);
}

TEST(CounterLine, WithoutQuarantinedFilesShowsTheAnalysedOnes) {
    AppState state;
    state.analyzedCount = 12480;
    EXPECT_EQ(counterLine(TabIdentifier::Threats, state),
              (CounterLine{QStringLiteral("12480"), std::nullopt}));
    state.quarantineCount = -2;
    EXPECT_EQ(counterLine(TabIdentifier::Threats, state).quarantined, std::nullopt);
}

TEST(CounterLine, NamesQuarantinedFilesFromOneOn) {
    AppState state;
    state.quarantineCount = 1;
    EXPECT_EQ(counterLine(TabIdentifier::Threats, state),
              (CounterLine{QStringLiteral("0"), QStringLiteral("1")}));
}

TEST(CounterLine, IsEmptyOnEveryOtherTab) {
    AppState state;
    state.analyzedCount = 5;
    state.quarantineCount = 5;
    for (const TabIdentifier tab : {TabIdentifier::Exploits, TabIdentifier::Events,
                                    TabIdentifier::ExternalDevices, TabIdentifier{17}}) {
        EXPECT_EQ(counterLine(tab, state), CounterLine{});
    }
}

AppState stateWithPolicy() {
    AppState state;
    state.policyName = QStringLiteral("Office %@");
    state.policyMode = QStringLiteral("<b>Cloud</b>");
    state.policyLastUpdateTime = QStringLiteral("today");
    return state;
}

TEST(AboutCredits, StartWithThePolicyWhenNoCompanionVersionIsKnown) {
    EXPECT_EQ(aboutCredits(stateWithPolicy()),
              u"AboutPolicy Office %@  (<b>Cloud</b>)\nAboutPolicyLastUpdated today");
}

TEST(AboutCredits, StartWithTheCompanionVersionWhenItIsKnown) {
    AppState state = stateWithPolicy();
    state.sondarVersionNumberString = QStringLiteral("3.1");
    EXPECT_EQ(aboutCredits(state), u"SONDAR Version : 3.1\n"
                                   u"AboutPolicy Office %@  (<b>Cloud</b>)\n"
                                   u"AboutPolicyLastUpdated today");
}

TEST(AboutCredits, KeepTheirBlanksWhenNothingIsKnown) {
    EXPECT_EQ(aboutCredits(AppState{}), u"AboutPolicy   ()\nAboutPolicyLastUpdated ");
}

} // namespace
} // namespace korvale
