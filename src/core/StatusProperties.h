#pragma once

#include "model/StatusReport.h"

#include <QVariantMap>

namespace korvale {

/// The interface by which other programs of the user learn how the machine is.
inline constexpr const char* statusInterface = "com.korvale.ui.Status1";
/// The name that owns it on the session bus, and its object.
inline constexpr const char* statusService = "com.korvale.ui";
inline constexpr const char* statusPath = "/com/korvale/ui";

/// "good", "unknown", "danger" or "away": the word for a verdict in scripts.
[[nodiscard]] const char* verdictName(Verdict verdict);

/// The properties of that interface, by name, as they travel. No file names are in it.
[[nodiscard]] QVariantMap statusProperties(const StatusReport& report);

} // namespace korvale
