#pragma once

namespace korvale {

/// From now on the toolkit's own messages are lines of the log, as everything on standard error is.
void logToolkitMessages();

} // namespace korvale
