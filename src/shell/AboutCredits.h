#pragma once

#include "core/base/AppState.h"

#include <QString>

namespace korvale {

/// The lines under the version in the About panel: the companion product's version where it is
/// known, the policy with its mode, and when the policy was last updated. Plain text; what the
/// agent sent stands in it as it is.
[[nodiscard]] QString aboutCredits(const AppState& state);

} // namespace korvale
