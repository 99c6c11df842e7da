#include "core/TerminalOptions.h"

#include "core/CommandLine.h"

#include <algorithm>
#include <array>
#include <utility>

namespace korvale {
namespace {

enum class Kind { CheckUpdates, Scan, BackgroundScan };

struct Option {
    const char* text;
    Kind kind;
};
constexpr std::array terminalOptions{Option{"--check-updates", Kind::CheckUpdates},
                                     Option{"--scan", Kind::Scan},
                                     Option{"--background-scan", Kind::BackgroundScan}};

/// One walk along the arguments.
class Parser {
public:
    void take(const QByteArray& argument) {
        const qsizetype sign = argument.indexOf('=');
        if (m_onlyWords || !argument.startsWith('-')) {
            m_words.push_back(argument);
        } else if (argument == "--") {
            m_onlyWords = true;
        } else if (argument == "--wait") {
            m_waits = true;
        } else if (argument == "--notify") {
            m_notifies = true;
        } else if (sign > 0) {
            takeOption(argument.first(sign));
            m_words.push_back(argument.sliced(sign + 1));
        } else {
            takeOption(argument);
        }
    }

    [[nodiscard]] std::optional<TerminalOptions> result() {
        if (m_isWrong || !m_kind) {
            return std::nullopt;
        }
        TerminalOptions options;
        options.waits = m_waits;
        options.notifies = m_notifies;
        switch (*m_kind) {
        case Kind::CheckUpdates:
            return m_words.empty() ? std::optional(options) : std::nullopt;
        case Kind::Scan:
            options.verb = TerminalVerb::Scan;
            options.folders = std::exchange(m_words, {});
            return options.folders.empty() ? std::nullopt : std::optional(options);
        case Kind::BackgroundScan:
            break;
        }
        const bool starts = m_words == std::vector<QByteArray>{"start"};
        options.verb = starts ? TerminalVerb::StartBackgroundScan : TerminalVerb::StopScans;
        const bool isKnown = starts || m_words == std::vector<QByteArray>{"stop"};
        return isKnown ? std::optional(options) : std::nullopt;
    }

private:
    void takeOption(const QByteArray& argument) {
        const auto* const found =
            std::find_if(terminalOptions.begin(), terminalOptions.end(),
                         [&](const Option& option) { return argument == option.text; });
        // "--scan A --scan B" means both.
        if (found == terminalOptions.end() ||
            (m_kind && (*m_kind != found->kind || found->kind != Kind::Scan))) {
            m_isWrong = true;
        } else {
            m_kind = found->kind;
        }
    }

    std::optional<Kind> m_kind;
    std::vector<QByteArray> m_words;
    bool m_onlyWords = false;
    bool m_waits = false;
    bool m_notifies = false;
    bool m_isWrong = false;
};

} // namespace

bool isTerminalCommand(const CommandLine& commandLine) {
    return std::any_of(terminalOptions.begin(), terminalOptions.end(),
                       [&](const Option& option) { return commandLine.asksFor(option.text); }) ||
           (!commandLine.isAutomation() &&
            (commandLine.asksFor("--wait") || commandLine.asksFor("--notify")));
}

std::optional<TerminalOptions> parseTerminalOptions(const std::vector<QByteArray>& arguments) {
    Parser parser;
    for (const QByteArray& argument : arguments) {
        parser.take(argument);
    }
    return parser.result();
}

} // namespace korvale
