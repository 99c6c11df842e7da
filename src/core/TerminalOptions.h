#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace korvale {

class CommandLine;

/// What somebody at a terminal, or a timer, may ask of the agent.
enum class TerminalVerb { CheckUpdates, Scan, StartBackgroundScan, StopScans };

struct TerminalOptions {
    TerminalVerb verb = TerminalVerb::CheckUpdates;
    std::vector<QByteArray> folders; ///< Scan: at least one, as given
    bool waits = false;              ///< for the end, and says what it came to
    bool notifies = false;           ///< shows complaints on the desktop, too

    friend bool operator==(const TerminalOptions&, const TerminalOptions&) = default;
};

/// One of "--check-updates", "--scan" and "--background-scan" is there; or, without a one-shot
/// option, what goes with them alone.
[[nodiscard]] bool isTerminalCommand(const CommandLine& commandLine);

/// `arguments` without the program's path. No value when one of the three is used wrongly: with
/// another one, with an option that does not go with it, or without what it needs. What follows
/// "--" is a folder, whatever it begins with.
[[nodiscard]] std::optional<TerminalOptions>
parseTerminalOptions(const std::vector<QByteArray>& arguments);

} // namespace korvale
