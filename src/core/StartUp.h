#pragma once

#include "core/CommandLine.h"
#include "core/InfoDictionary.h"
#include "platform/RunningApplications.h"

namespace korvale {

/// The first log lines: entering, versions, log level and bundle identifier; then warnings about
/// what makes this start unusual.
void logStartUp(const InfoDictionary& info);

/// Warns of each option that nobody knows. `rest` is what the toolkit has left of the arguments.
void logUnknownOptions(const CommandLine& rest);

/// Walks the running applications, logging each; true at the first that is named "KorvaleBASTION".
[[nodiscard]] bool otherInstanceRuns(const RunningApplications& running);

/// Logs that another instance is running.
void logOtherInstance();

/// Sets automation mode.
void setAutomationMode(const CommandLine& commandLine);

/// Sets no-UI mode.
void setNoUIMode(const InfoDictionary& info);

} // namespace korvale
