#pragma once

namespace korvale {

/// All threads take memory from one place: what one of them frees is there for the others, and
/// nothing stays behind in a place of its own when it ends. Before there are any.
void keepMemoryInOnePlace();

/// Gives memory that the program has freed back to the kernel. The C library keeps it for the
/// program's next wish: behind a service that lagged behind for a while that may be tens of MiB for
/// ever. Main thread.
class SpareMemory {
public:
    /// Once in a while; costs one short read of /proc and a look through the C library's lists
    /// unless there is much to give back.
    void giveBack();

private:
    long m_spare = 0; ///< bytes in memory that nobody used when all was given back
};

} // namespace korvale
