#pragma once

#include <QByteArray>
#include <QLatin1String>
#include <QString>

#include <optional>
#include <vector>

namespace korvale {

/// The program's own copy of its arguments, the program path included, as given: taken before the
/// toolkit removes any. Options without a meaning here are ignored, as they may be the toolkit's.
class CommandLine {
public:
    CommandLine(int argc, const char* const* argv);
    explicit CommandLine(std::vector<QByteArray> arguments) : m_arguments(std::move(arguments)) {}

    [[nodiscard]] bool contains(const char* argument) const;
    /// What stands right after the first `argument`.
    [[nodiscard]] std::optional<QByteArray> after(const char* argument) const;

    /// One of the four one-shot options is there.
    [[nodiscard]] bool isAutomation() const;
    /// The action of the desktop entry that this start is for; empty for none, and with a one-shot
    /// option.
    [[nodiscard]] QString action() const;
    /// `option`, or the option with "=" and a value; as the path of a folder scan, or behind "--",
    /// it means a folder.
    [[nodiscard]] bool asksFor(const char* option) const;
    /// What begins with "-" and has no meaning here, the path of a folder scan aside.
    [[nodiscard]] std::vector<QByteArray> unknownOptions() const;

private:
    std::vector<QByteArray> m_arguments;
};

// Actions of the desktop entry, as it calls them. Whoever asks for another one, or for none, gets
// to see the window.
inline constexpr QLatin1String scanFolderAction{"scan-folder"};
inline constexpr QLatin1String checkUpdatesAction{"check-updates"};

/// What a one-shot start sends.
enum class OneShotCommand { CheckUpdates, ScanBackground, StopScan, FolderScan };

struct OneShot {
    OneShotCommand command;
    QString folder; ///< FolderScan only: the path as given
};

/// The command to send after launch: of several options the first in the order of OneShotCommand
/// acts. None without an option, and none for a folder scan whose path is missing, is no folder or
/// is not valid UTF-8: the program then stays, as a normal tray program.
[[nodiscard]] std::optional<OneShot> oneShotCommand(const CommandLine& commandLine);

/// What "--help" prints.
[[nodiscard]] QByteArray helpText();

} // namespace korvale
