#pragma once

#include "core/TerminalWait.h"
#include "model/UpdaterStatusFolder.h"

namespace korvale {

class TerminalOutput;

/// Prints what the updater says until it has said nothing more for a while: it does not tell when
/// it is done.
class UpdaterWait final : public TerminalWait {
    Q_OBJECT
public:
    /// The reference agent looks for three minutes what its updater brings.
    static constexpr Moment longestSilence = std::chrono::seconds(200);

    /// Made before the update is asked for.
    explicit UpdaterWait(TerminalOutput& output, Moment silence = longestSilence,
                         UpdaterStatusFolder folder = UpdaterStatusFolder());

    void told(AgentNotification what) override;

protected:
    void accepted() override { m_lastWord = now(); }
    void look() override;

private:
    TerminalOutput& m_output;
    Moment m_silence;
    UpdaterStatusFolder m_folder;
    Moment m_lastWord{0};
    bool m_hasSpoken = false;
};

} // namespace korvale
