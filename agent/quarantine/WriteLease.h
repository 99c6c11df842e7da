#pragma once

namespace korvale::agent {

/// Keeps others from opening a file for writing: they wait in open() while it is held (the kernel
/// takes it away after /proc/sys/fs/lease-break-time, 45 seconds). Ends with the descriptor.
class WriteLease {
public:
    enum class State {
        Held,
        OpenForWriting, ///< somebody can write already
        Impossible,     ///< the file system knows no leases, or this is not our file
    };

    /// `descriptor`: opened O_RDONLY, borrowed, outlives this object.
    explicit WriteLease(int descriptor);
    ~WriteLease();
    WriteLease(const WriteLease&) = delete;
    WriteLease& operator=(const WriteLease&) = delete;

    [[nodiscard]] State state() const { return m_state; }
    /// False when somebody has asked to write since: he waits, or waited so long that he can.
    [[nodiscard]] bool undisturbed() const;

private:
    int m_descriptor;
    State m_state;
};

} // namespace korvale::agent
