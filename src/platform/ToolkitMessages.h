#pragma once

namespace korvale {

/// From now on the toolkit's own messages are lines of the log, as everything on standard error is.
/// The message that a Wayland compositor is gone ends the process by exit(), so that a
/// ToolkitExitGuard (platform/Termination.h) sees to the end.
void logToolkitMessages();

} // namespace korvale
