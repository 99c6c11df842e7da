#pragma once

namespace korvale {

/// Gives memory that the program has freed back to the kernel. The C library keeps it for the
/// program's next wish: behind a service that lagged behind for a while that may be tens of MiB for
/// ever. Main thread.
class SpareMemory {
public:
    /// Once in a while, at rest; costs one short read of /proc unless the process has grown
    /// meanwhile.
    void giveBack();

private:
    long m_settled = 0; ///< pages of its own that the process had when it was last looked through
};

} // namespace korvale
