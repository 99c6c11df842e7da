#pragma once

#include "core/CommandLine.h"

#include <QString>

namespace korvale {

/// Whether the menu offers its troubleshooting submenus: with the argument "-a" always; with a file
/// "Korvale/uiArgs" in `applicationSupport` that contains " -a" once, as the file is deleted by the
/// first look, readable or not.
[[nodiscard]] bool isAdvanceMode(const CommandLine& commandLine, const QString& applicationSupport);

} // namespace korvale
