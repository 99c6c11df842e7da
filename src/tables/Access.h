#pragma once

namespace korvale {

/// Lets the toolkit know what screen readers see of this room's own controls. Any number of times.
void installAccess();

} // namespace korvale
