#pragma once

#include "core/base/AppState.h"

#include <QString>

#include <optional>

namespace korvale {

/// What stands in the counter line; no value hides the number and its label together.
struct CounterLine {
    std::optional<QString> analyzed;
    std::optional<QString> quarantined;

    friend bool operator==(const CounterLine&, const CounterLine&) = default;
};

/// The counter line of a tab: only Threats has one, and it names quarantined files only when there
/// are any.
[[nodiscard]] CounterLine counterLine(TabIdentifier tab, const AppState& state);

} // namespace korvale
