#include "model/ProtectionRules.h"

#include "model/StatusReport.h"
#include "model/StatusWatch.h"

#include <gtest/gtest.h>
#include <set>
#include <string>

// Without translators every key is its own text.

namespace korvale {
namespace {

/// Everything well, and known to be.
AppState goodState() {
    AppState state;
    state.agentIsAway = false;
    state.halyxConnected = true;
    state.header = state.fileThreats = state.processThreats = ListNews::Read;
    state.curIconDispColor = IconColor::Green;
    return state;
}

struct Case {
    const char* name;
    void (*change)(AppState& state);
    Verdict verdict;
    QString why;
};

class ProtectionCases : public testing::TestWithParam<Case> {};

TEST_P(ProtectionCases, HaveTheirStateVerdictAndText) {
    AppState state = goodState();
    GetParam().change(state);
    const ProtectionRule& rule = protectionRule(state);
    EXPECT_STREQ(rule.name, GetParam().name);
    EXPECT_EQ(rule.verdict, GetParam().verdict);
    EXPECT_EQ(protectionWhy(rule, state), GetParam().why);
    EXPECT_EQ(protectionAdvice(rule).isEmpty(), rule.verdict == Verdict::Good);
}

constexpr auto yellow = IconColor::Yellow;
constexpr auto red = IconColor::Red;

INSTANTIATE_TEST_SUITE_P(
    All, ProtectionCases,
    testing::Values(Case{"good", [](AppState&) {}, Verdict::Good, QStringLiteral("HPS_WhyGood")},
                    Case{"good",
                         [](AppState& s) {
                             s.halyxConnected = false;
                             s.quillmarConnected = true;
                         },
                         Verdict::Good, QStringLiteral("HPS_WhyGood")},
                    Case{"connection-unknown", [](AppState& s) { s.halyxConnected = false; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyConnectionUnknown")},
                    Case{"agent-away", [](AppState& s) { s.agentIsAway = true; }, Verdict::Away,
                         QStringLiteral("HPS_WhyAgentAway")},
                    Case{"agent-away",
                         [](AppState& s) {
                             s.agentIsAway = true;
                             s.driverConnected = false;
                             s.newThreatCount = 2;
                             s.curIconDispColor = red;
                         },
                         Verdict::Away, QStringLiteral("HPS_WhyAgentAway")},
                    Case{"driver-missing",
                         [](AppState& s) {
                             s.driverConnected = false;
                             s.newThreatCount = 2;
                             s.curIconDispColor = red;
                         },
                         Verdict::Danger, QStringLiteral("HPS_WhyDriverMissing")},
                    Case{"new-threats",
                         [](AppState& s) {
                             s.newThreatCount = 1;
                             s.curIconDispColor = red;
                         },
                         Verdict::Danger, QStringLiteral("HPS_WhyThreat")},
                    Case{"new-threats",
                         [](AppState& s) {
                             s.newThreatCount = 3;
                             s.fileThreats = ListNews::Unreadable;
                             s.curIconDispColor = red;
                         },
                         Verdict::Danger, QStringLiteral("HPS_WhyThreats")},
                    Case{"new-threats", [](AppState& s) { s.newThreatCount = 3; }, Verdict::Danger,
                         QStringLiteral("HPS_WhyThreats")},
                    Case{"new-threats-offline",
                         [](AppState& s) {
                             s.newThreatCount = 3;
                             s.curIconDispColor = yellow;
                         },
                         Verdict::Danger, QStringLiteral("HPS_WhyThreatsOffline")},
                    Case{"unconfirmed", [](AppState& s) { s.curIconDispColor = red; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyUnconfirmed")},
                    Case{"unreadable", [](AppState& s) { s.header = ListNews::Unreadable; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyUnreadable")},
                    Case{"unreadable", [](AppState& s) { s.fileThreats = ListNews::Unreadable; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyUnreadable")},
                    Case{"unreadable", [](AppState& s) { s.processThreats = ListNews::Unreadable; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyUnreadable")},
                    Case{"new-exploits", [](AppState& s) { s.newExploitCount = 1; },
                         Verdict::Danger, QStringLiteral("HPS_WhyExploit")},
                    Case{"offline", [](AppState& s) { s.curIconDispColor = yellow; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyOffline")},
                    Case{"not-reported", [](AppState& s) { s.header = ListNews::NotRead; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyNotReported")},
                    Case{"not-reported", [](AppState& s) { s.fileThreats = ListNews::NotRead; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyNotReported")},
                    Case{"not-reported", [](AppState& s) { s.processThreats = ListNews::NotRead; },
                         Verdict::Unknown, QStringLiteral("HPS_WhyNotReported")}));

TEST(ProtectionRules, HaveDistinctNamesAndTheLastAlwaysHolds) {
    std::set<std::string> names;
    for (const ProtectionRule& rule : protectionRules()) {
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
        EXPECT_EQ(rule.counts == nullptr, rule.whyOneKey == nullptr) << rule.name;
    }
    EXPECT_TRUE(protectionRules().back().holds(AppState()));
    EXPECT_STREQ(protectionRule(AppState()).name, "agent-away") << "before anything is known";
}

/// Calls `judge` with every combination of what the rules look at.
template <typename Judge>
void forEveryState(Judge judge) {
    constexpr ListNews news[] = {ListNews::NotRead, ListNews::Read, ListNews::Unreadable};
    for (unsigned bits = 0; bits < 64; ++bits) {
        for (const IconColor color : {IconColor::Red, IconColor::Yellow, IconColor::Green}) {
            for (unsigned lists = 0; lists < 27; ++lists) {
                AppState state;
                const auto bit = [bits](unsigned place) { return (bits >> place & 1U) != 0; };
                state.agentIsAway = bit(0);
                state.driverConnected = bit(1);
                state.halyxConnected = bit(2);
                state.quillmarConnected = bit(3);
                state.newThreatCount = bit(4) ? 2 : 0;
                state.newExploitCount = bit(5) ? 1 : 0;
                state.curIconDispColor = color;
                state.header = news[lists % 3];
                state.fileThreats = news[lists / 3 % 3];
                state.processThreats = news[lists / 9];
                judge(state, protectionRule(state));
            }
        }
    }
}

TEST(ProtectionRules, NeverSayThatAllIsWellUnlessEverythingIsKnownAndTheIconIsGreen) {
    int good = 0;
    forEveryState([&good](const AppState& s, const ProtectionRule& rule) {
        if (rule.verdict != Verdict::Good) {
            return;
        }
        ++good;
        EXPECT_EQ(s.curIconDispColor, IconColor::Green);
        EXPECT_TRUE(s.driverConnected && !s.agentIsAway);
        EXPECT_TRUE(s.halyxConnected || s.quillmarConnected);
        EXPECT_EQ(s.newThreatCount + s.newExploitCount, 0);
        EXPECT_TRUE(s.header == ListNews::Read && s.fileThreats == ListNews::Read &&
                    s.processThreats == ListNews::Read);
    });
    EXPECT_EQ(good, 3);
}

TEST(ProtectionRules, NameTheReasonOfARedOrYellowIcon) {
    const std::set<std::string> ofRed{"agent-away", "driver-missing", "new-threats", "unconfirmed"};
    const std::set<std::string> notOfYellow{"good", "connection-unknown", "not-reported",
                                            "unconfirmed", "new-threats"};
    forEveryState([&](const AppState& s, const ProtectionRule& rule) {
        if (s.curIconDispColor == IconColor::Red) {
            EXPECT_TRUE(ofRed.contains(rule.name)) << rule.name;
        } else if (s.curIconDispColor == IconColor::Yellow) {
            EXPECT_FALSE(notOfYellow.contains(rule.name)) << rule.name;
        }
    });
}

TEST(ProtectionRules, TellOfAScanOnlyOnceItHasEnded) {
    EXPECT_TRUE(lastScanText({}).isEmpty());
    EXPECT_EQ(lastScanText(QDateTime::currentDateTime()), u"HPS_LastScan");
}

TEST(StatusWatch, TellsOfAnotherReportAndOfNoOther) {
    AppState state = goodState();
    StatusWatch watch(state);
    int told = 0;
    QObject::connect(&watch, &StatusWatch::changed, &watch, [&told] { ++told; });
    watch.look();
    state.currentScanItem = QStringLiteral("/home/ada/secret");
    watch.look();
    EXPECT_EQ(told, 0) << "what is being analysed is no part of it";
    state.newThreatCount = 1;
    watch.look();
    watch.look();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(watch.report().newThreats, 1);
    EXPECT_STREQ(watch.report().rule->name, "new-threats");
}

TEST(StatusReport, NamesEveryColor) {
    EXPECT_STREQ(colorName(IconColor::Red), "red");
    EXPECT_STREQ(colorName(IconColor::Yellow), "yellow");
    EXPECT_STREQ(colorName(IconColor::Green), "green");
    EXPECT_STREQ(colorName(static_cast<IconColor>(17)), "green");
}

} // namespace
} // namespace korvale
