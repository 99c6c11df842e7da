#pragma once

namespace korvale::agent {

/// Keeps in memory what the calling process may need at any moment: the code of this program and of
/// the C library at once, everything else from its first use on. (All at once would be every
/// library that the agent uses and its guard does not.) What the limit on locked memory does not
/// allow is left out.
void lockOwnPages();

} // namespace korvale::agent
