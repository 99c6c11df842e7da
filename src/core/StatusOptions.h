#pragma once

#include <QByteArray>

#include <optional>
#include <vector>

namespace korvale {

class CommandLine;

/// In which words the state is printed.
enum class StatusForm { Line, Json, Waybar, I3StatusRs };

/// What comes behind "--status".
struct StatusOptions {
    StatusForm form = StatusForm::Line;
    bool watches = false; ///< prints again with each change, until it is ended

    friend bool operator==(const StatusOptions&, const StatusOptions&) = default;
};

/// One of "--json", "--watch" and "--bar" is there, and no one-shot option: "--status" goes without
/// saying.
[[nodiscard]] bool hasStatusOption(const CommandLine& commandLine);

/// `arguments` without the program's path. No value when "--status" is used wrongly: with an
/// option that does not go with it, an unknown bar, or two forms.
[[nodiscard]] std::optional<StatusOptions>
parseStatusOptions(const std::vector<QByteArray>& arguments);

/// A bar hides a module whose command fails.
[[nodiscard]] constexpr bool isForBar(StatusForm form) {
    return form == StatusForm::Waybar || form == StatusForm::I3StatusRs;
}

} // namespace korvale
