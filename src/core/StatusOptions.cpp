#include "core/StatusOptions.h"

#include "core/CommandLine.h"

#include <algorithm>
#include <array>

namespace korvale {
namespace {

std::optional<StatusForm> formOfBar(const QByteArray& bar) {
    if (bar == "waybar") {
        return StatusForm::Waybar;
    }
    if (bar == "i3status-rs") {
        return StatusForm::I3StatusRs;
    }
    return std::nullopt;
}

} // namespace

bool hasStatusOption(const CommandLine& commandLine) {
    constexpr std::array options{"--json", "--watch", "--bar"};
    return !commandLine.isAutomation() &&
           std::any_of(options.begin(), options.end(),
                       [&commandLine](const char* option) { return commandLine.asksFor(option); });
}

std::optional<StatusOptions> parseStatusOptions(const std::vector<QByteArray>& arguments) {
    StatusOptions options;
    std::optional<StatusForm> form;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const QByteArray& argument = arguments[i];
        if (argument == "--status") {
            continue;
        }
        if (argument == "--watch") {
            options.watches = true;
            continue;
        }
        std::optional<StatusForm> wanted;
        if (argument == "--json") {
            wanted = StatusForm::Json;
        } else if (argument.startsWith("--bar=")) {
            wanted = formOfBar(argument.sliced(6));
        } else if (argument == "--bar" && i + 1 < arguments.size()) {
            wanted = formOfBar(arguments[++i]);
        }
        if (!wanted || form) {
            return std::nullopt;
        }
        form = wanted;
    }
    options.form = form.value_or(StatusForm::Line);
    return options;
}

} // namespace korvale
