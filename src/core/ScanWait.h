#pragma once

#include "core/ScanWatch.h"
#include "core/TerminalWait.h"
#include "model/FoundThreats.h"
#include "model/HostCache.h"
#include "platform/IniUserDefaults.h"

#include <QString>

#include <cstdint>
#include <optional>

namespace korvale {

class TerminalOutput;

/// Waits for the end of a scan, shows how far it is, and says what it found.
class ScanWait final : public TerminalWait {
    Q_OBJECT
public:
    enum class For {
        Findings, ///< the end of a scan, and what it found
        Quiet,    ///< that no scan is running any more
    };

    /// Made before the scan is asked for. `folder`: empty for a scan of everything.
    ScanWait(For what, QString folder, TerminalOutput& output);

    void told(AgentNotification what) override;

protected:
    void accepted() override;
    void look() override;

private:
    void showProgress();
    void sayMessage();
    void sayFindings();
    [[nodiscard]] std::optional<std::int64_t> analysed();
    [[nodiscard]] ScannerState scannerState();

    For m_for;
    QString m_folder;
    TerminalOutput& m_output;
    IniUserDefaults m_defaults;
    HostCache m_hostCache{m_defaults};
    std::optional<FoundThreats> m_threats; ///< where they are wanted: the lists may be long
    std::optional<std::int64_t> m_analysedBefore;
    ScanWatch m_watch;
    bool m_isProgressUnsaid = false; ///< told before the agent's answer, which is said first
};

} // namespace korvale
