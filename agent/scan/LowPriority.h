#pragma once

namespace korvale::agent {

/// Lets everything else go before the calling thread, for the processor and for the disks. What the
/// service manager does not allow is left as it is.
void lowerOwnPriority();

} // namespace korvale::agent
