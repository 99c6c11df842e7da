#include "core/CommandLine.h"

#include "model/Utf8Text.h"

#include <algorithm>
#include <array>
#include <sys/stat.h>

namespace korvale {
namespace {

constexpr const char* folderScanOption = "-folder-scan";
constexpr const char* chooseFolderOption = "--choose-folder";

struct Option {
    const char* text;
    OneShotCommand command;
};
/// In the order of precedence.
constexpr std::array oneShotOptions{
    Option{"-update", OneShotCommand::CheckUpdates},
    Option{"-background-scan", OneShotCommand::ScanBackground},
    Option{"-background-scan-stop", OneShotCommand::StopScan},
    Option{folderScanOption, OneShotCommand::FolderScan},
};

bool isKnown(const QByteArray& option) {
    return option == "-a" || option == "--help" || option == "--version" || option == "--status" ||
           option == chooseFolderOption ||
           std::any_of(oneShotOptions.begin(), oneShotOptions.end(),
                       [&option](const Option& one) { return option == one.text; });
}

bool isFolder(const QByteArray& path) {
    struct stat status {};
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

CommandLine::CommandLine(int argc, const char* const* argv) : m_arguments(argv, argv + argc) {}

bool CommandLine::contains(const char* argument) const {
    return std::find(m_arguments.begin(), m_arguments.end(), argument) != m_arguments.end();
}

std::optional<QByteArray> CommandLine::after(const char* argument) const {
    const auto found = std::find(m_arguments.begin(), m_arguments.end(), argument);
    if (found == m_arguments.end() || std::next(found) == m_arguments.end()) {
        return std::nullopt;
    }
    return *std::next(found);
}

bool CommandLine::isAutomation() const {
    return std::any_of(oneShotOptions.begin(), oneShotOptions.end(),
                       [this](const Option& option) { return contains(option.text); });
}

QString CommandLine::action() const {
    return !isAutomation() && contains(chooseFolderOption) ? QString(scanFolderAction) : QString();
}

bool CommandLine::asksFor(const char* option) const {
    for (std::size_t i = 1; i < m_arguments.size(); ++i) {
        const QByteArray& argument = m_arguments[i];
        if (m_arguments[i - 1] == folderScanOption) {
            continue;
        }
        if (argument == "--") {
            return false; // what follows are names
        }
        if (argument == option || argument.startsWith(QByteArray(option) + '=')) {
            return true;
        }
    }
    return false;
}

std::vector<QByteArray> CommandLine::unknownOptions() const {
    std::vector<QByteArray> unknown;
    for (std::size_t i = 1; i < m_arguments.size(); ++i) {
        const QByteArray& argument = m_arguments[i];
        const bool isPath = m_arguments[i - 1] == folderScanOption;
        if (argument.startsWith('-') && !isPath && !isKnown(argument)) {
            unknown.push_back(argument);
        }
    }
    return unknown;
}

std::optional<OneShot> oneShotCommand(const CommandLine& commandLine) {
    const auto option =
        std::find_if(oneShotOptions.begin(), oneShotOptions.end(),
                     [&](const Option& one) { return commandLine.contains(one.text); });
    if (option == oneShotOptions.end()) {
        return std::nullopt;
    }
    if (option->command != OneShotCommand::FolderScan) {
        return OneShot{option->command, {}};
    }
    const std::optional<QByteArray> path = commandLine.after(folderScanOption);
    const std::optional<QString> text = path ? textFromUtf8(*path) : std::nullopt;
    if (!text || !isFolder(*path)) {
        return std::nullopt;
    }
    return OneShot{OneShotCommand::FolderScan, *text};
}

QByteArray helpText() {
    return "Usage: korvale-ui [OPTION...]\n"
           "Shows the protection state of this machine in the system tray.\n"
           "\n"
           "The tray program:\n"
           "  -a                      offer the log level and scan menus\n"
           "  --choose-folder         let a folder be chosen to be scanned\n"
           "\n"
           "Ask the running program how the machine is:\n"
           "  --status                print it in one line; exit status 0 good, 1 not known,\n"
           "                          2 danger, 3 not running, 4 no answer, 64 wrong use\n"
           "  --json                  as one JSON object\n"
           "  --bar waybar|i3status-rs\n"
           "                          as that bar reads it\n"
           "  --watch                 again with each change\n"
           "\n"
           "Have the agent do something, and print what becomes of it; exit status 0 good,\n"
           "1 something was found, 2 wrong use or refused, 3 no agent, 4 no answer:\n"
           "  --check-updates         look for updates\n"
           "  --scan FOLDER...        scan folders\n"
           "  --background-scan start|stop\n"
           "                          start the background scan, or stop scans\n"
           "  --wait                  with these: until it is done, and say what was found\n"
           "  --notify                with these: show complaints on the desktop, too\n"
           "\n"
           "The same without a word: one request, 15 seconds at most for the reply; the log\n"
           "tells what became of it:\n"
           "  -update                 check for updates\n"
           "  -background-scan        start a background scan\n"
           "  -background-scan-stop   stop a running scan\n"
           "  -folder-scan FOLDER     scan a folder\n"
           "\n"
           "About the program:\n"
           "  --help                  print this and exit\n"
           "  --version               print the version and exit\n"
           "\n"
           "Only the tray program needs a display.\n";
}

} // namespace korvale
