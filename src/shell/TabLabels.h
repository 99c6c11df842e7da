#pragma once

#include "core/base/AppState.h"

#include <QString>

#include <array>
#include <cstdint>

namespace korvale {

/// One tab of the details window: what it is called, what it counts, whether the label says so.
struct TabFacts {
    TabIdentifier identifier;
    const char* titleKey;
    std::int64_t AppState::*unseenCount;
    bool labelShowsCount;
};

/// The tabs from left to right. External devices are counted, but their label never says how many.
inline constexpr std::array<TabFacts, 4> tabFacts{{
    {TabIdentifier::Threats, "HPS_Threats", &AppState::newThreatCount, true},
    {TabIdentifier::Exploits, "HPS_Exploits", &AppState::newExploitCount, true},
    {TabIdentifier::Events, "HPS_Events", &AppState::eventCount, true},
    {TabIdentifier::ExternalDevices, "HPS_ExternalDevices", &AppState::externalDevicesCount, false},
}};

/// Title, a blank, and the unseen count in parentheses when it is 1 or more; the blank stays
/// without a count.
[[nodiscard]] QString tabLabel(const TabFacts& tab, const AppState& state);

/// Facts of the tab with this identifier; an identifier without a tab stands for Events.
[[nodiscard]] const TabFacts& factsOfTab(TabIdentifier identifier);

} // namespace korvale
