#pragma once

#include <chrono>
#include <optional>

namespace korvale {

/// What the agent's list says of its analyser.
enum class ScannerState { NotKnown, Idle, Busy };

/// Tells when a scan has ended. The agent says only that its analyser is idle, which it was before,
/// and what a scan found may be told a moment later. Knows no clock: moments are counted from
/// anywhere.
class ScanWatch {
public:
    using Moment = std::chrono::milliseconds;

    /// What is there at the end has been told after so much quiet.
    static constexpr Moment settleTime = std::chrono::seconds(2);
    /// A scan that was never seen to run has been and gone, or never comes.
    static constexpr Moment startTime = std::chrono::seconds(4);
    /// The same for an agent that does not tell what its analyser does.
    static constexpr Moment unknownTime = std::chrono::seconds(30);
    /// Whatever else the agent tells, an idle analyser has ended its scan after so long.
    static constexpr Moment longestSettling = std::chrono::seconds(30);
    /// As long as for the icon.
    static constexpr Moment longestSilence = std::chrono::seconds(300);

    enum class End { None, Over, Silent };

    /// The agent has accepted the scan at `now`. What was seen before counts.
    void accepted(Moment now);
    void saw(ScannerState state, Moment now);
    /// The agent gives a sign of life.
    void heard(Moment now) { m_lastLife = now; }
    /// It tells that a file is analysed, or that a list has changed.
    void progressed(Moment now);

    [[nodiscard]] End end(Moment now) const;

private:
    ScannerState m_state = ScannerState::NotKnown;
    bool m_wasBusy = false;
    std::optional<Moment> m_accepted;
    Moment m_stateSince{0};
    Moment m_lastProgress{0};
    Moment m_lastLife{0};
};

} // namespace korvale
