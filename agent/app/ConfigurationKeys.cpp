#include "agent/app/ConfigurationKeys.h"

#include "agent/base/PathRules.h"

#include <algorithm>
#include <array>
#include <optional>

namespace korvale::agent {
namespace {

using std::string_view;

constexpr string_view kTaken; // empty: nothing is wrong with the value

/// Control characters in a name or path would only be there by mistake.
bool isLine(const std::string& text) {
    return std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; });
}

bool isPath(const std::string& text) {
    return text.starts_with('/') && isLine(text);
}

template <std::string Configuration::*Member>
string_view line(Configuration& configuration, const toml::node& value) {
    const std::optional<std::string> text = value.value_exact<std::string>();
    if (!text || !isLine(*text) || text->size() > 200) {
        return "one line of text, at most 200 bytes";
    }
    configuration.*Member = *text;
    return kTaken;
}

template <std::string Configuration::*Member>
string_view path(Configuration& configuration, const toml::node& value) {
    const std::optional<std::string> text = value.value_exact<std::string>();
    if (!text || !isPath(*text)) {
        return "a path that begins with /";
    }
    configuration.*Member = *text;
    return kTaken;
}

template <std::string Configuration::*Member>
string_view optionalPath(Configuration& configuration, const toml::node& value) {
    const std::optional<std::string> text = value.value_exact<std::string>();
    if (!text || !(text->empty() || isPath(*text))) {
        return "a path that begins with /, or empty";
    }
    configuration.*Member = *text;
    return kTaken;
}

std::optional<std::vector<std::string>> textsOf(const toml::node& value) {
    const toml::array* list = value.as_array();
    if (list == nullptr) {
        return std::nullopt;
    }
    std::vector<std::string> texts;
    for (const toml::node& entry : *list) {
        const std::optional<std::string> text = entry.value_exact<std::string>();
        if (!text) {
            return std::nullopt;
        }
        texts.push_back(*text);
    }
    return texts;
}

template <std::vector<std::string> Configuration::*Member>
string_view paths(Configuration& configuration, const toml::node& value) {
    std::optional<std::vector<std::string>> texts = textsOf(value);
    if (!texts || !std::all_of(texts->begin(), texts->end(), isPath)) {
        return "a list of paths that begin with /";
    }
    configuration.*Member = std::move(*texts);
    return kTaken;
}

string_view excluded(Configuration& configuration, const toml::node& value) {
    std::optional<std::vector<std::string>> texts = textsOf(value);
    PathRules rules;
    std::string error;
    if (!texts || !std::all_of(texts->begin(), texts->end(), [&](const std::string& text) {
            return isLine(text) && rules.add(text, error);
        })) {
        return "a list of paths that begin with / and have no . or .. in them";
    }
    configuration.exclude = std::move(*texts);
    return kTaken;
}

string_view watched(Configuration& configuration, const toml::node& value) {
    std::optional<std::vector<std::string>> texts = textsOf(value);
    PathRules rules; // the same form, but without wildcards
    std::string error;
    if (!texts || !std::all_of(texts->begin(), texts->end(), [&](const std::string& text) {
            return isLine(text) && text.find_first_of("*?") == std::string::npos &&
                   (text == "/" || !text.ends_with('/')) && rules.add(text, error);
        })) {
        return "a list of folders that begin with / and have no *, ?, . or .. in them";
    }
    configuration.watchFolders = std::move(*texts);
    return kTaken;
}

string_view block(Configuration& configuration, const toml::node& value) {
    const std::optional<std::string> word = value.value_exact<std::string>();
    if (word != "nothing" && word != "execute") {
        return "\"nothing\" or \"execute\"";
    }
    configuration.blockExecute = word == "execute";
    return kTaken;
}

bool isUnit(const std::string& text) {
    return isLine(text) && text.find('/') == std::string::npos &&
           (text.ends_with(".service") || text.ends_with(".socket"));
}

template <std::string Configuration::*Member>
string_view unit(Configuration& configuration, const toml::node& value) {
    const std::optional<std::string> text = value.value_exact<std::string>();
    if (!text || !isUnit(*text)) {
        return "the name of a unit of systemd (.service or .socket)";
    }
    configuration.*Member = *text;
    return kTaken;
}

template <std::vector<std::string> Configuration::*Member>
string_view units(Configuration& configuration, const toml::node& value) {
    std::optional<std::vector<std::string>> texts = textsOf(value);
    if (!texts || !std::all_of(texts->begin(), texts->end(), isUnit)) {
        return "a list of names of units of systemd (.service or .socket)";
    }
    configuration.*Member = std::move(*texts);
    return kTaken;
}

template <bool Configuration::*Member>
string_view truth(Configuration& configuration, const toml::node& value) {
    const std::optional<bool> flag = value.value_exact<bool>();
    if (!flag) {
        return "true or false";
    }
    configuration.*Member = *flag;
    return kTaken;
}

std::optional<std::int64_t> numberIn(const toml::node& value, std::int64_t least,
                                     std::int64_t most) {
    const std::optional<std::int64_t> number = value.value_exact<std::int64_t>();
    return number && *number >= least && *number <= most ? number : std::nullopt;
}

string_view logLevel(Configuration& configuration, const toml::node& value) {
    constexpr std::array<string_view, 4> kWords{"error", "warning", "info", "debug"};
    const std::optional<std::string> word = value.value_exact<std::string>();
    const auto* found = std::find(kWords.begin(), kWords.end(), word.value_or(""));
    if (found == kWords.end()) {
        return "\"error\", \"warning\", \"info\" or \"debug\"";
    }
    configuration.logLevel = static_cast<LogLevel>(found - kWords.begin());
    return kTaken;
}

string_view fileDeadline(Configuration& configuration, const toml::node& value) {
    const std::optional<std::int64_t> seconds = numberIn(value, 1, 3600);
    if (!seconds) {
        return "a number of seconds from 1 to 3600";
    }
    configuration.fileDeadline = std::chrono::seconds(*seconds);
    return kTaken;
}

string_view largestFile(Configuration& configuration, const toml::node& value) {
    const std::optional<std::int64_t> mebibytes = numberIn(value, 1, 1 << 20);
    if (!mebibytes) {
        return "a number of mebibytes from 1 to 1048576";
    }
    configuration.largestFile = *mebibytes << 20;
    return kTaken;
}

using C = Configuration;

constexpr std::array kKeys{
    ConfigurationKey{"", "device_name", &line<&C::deviceName>},
    ConfigurationKey{"", "log_level", &logLevel},
    ConfigurationKey{"policy", "name", &line<&C::policyName>},
    ConfigurationKey{"policy", "notifications", &truth<&C::policyNotifications>},
    ConfigurationKey{"folders", "host_cache", &path<&C::hostCache>},
    ConfigurationKey{"folders", "updater_status", &path<&C::updaterStatus>},
    ConfigurationKey{"folders", "state", &path<&C::state>},
    ConfigurationKey{"folders", "quarantine", &path<&C::quarantine>},
    ConfigurationKey{"engine", "configuration", &path<&C::engineConfiguration>},
    ConfigurationKey{"engine", "socket", &optionalPath<&C::engineSocket>},
    ConfigurationKey{"engine", "hash_lists", &paths<&C::hashLists>},
    ConfigurationKey{"engine", "file_deadline", &fileDeadline},
    ConfigurationKey{"engine", "units", &units<&C::engineUnits>},
    ConfigurationKey{"scan", "background", &paths<&C::background>},
    ConfigurationKey{"scan", "exclude", &excluded},
    ConfigurationKey{"scan", "other_file_systems", &truth<&C::otherFileSystems>},
    ConfigurationKey{"scan", "largest_file", &largestFile},
    ConfigurationKey{"watch", "folders", &watched},
    ConfigurationKey{"watch", "block", &block},
    ConfigurationKey{"watch", "exploits", &truth<&C::tellExploits>},
    ConfigurationKey{"quarantine", "unsafe", &truth<&C::quarantineUnsafe>},
    ConfigurationKey{"quarantine", "abnormal", &truth<&C::quarantineAbnormal>},
    ConfigurationKey{"updates", "unit", &unit<&C::updaterUnit>},
    ConfigurationKey{"updates", "once_unit", &unit<&C::updaterOnceUnit>},
};

} // namespace

std::span<const ConfigurationKey> knownConfigurationKeys() {
    return kKeys;
}

} // namespace korvale::agent
