#include "agent/app/Configuration.h"

#include "agent/app/ConfigurationKeys.h"
#include "agent/base/Log.h"
#include "agent/base/UniqueFd.h"
#include "agent/publish/BuildSettings.h"

#include <QString>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace korvale::agent {
namespace {

constexpr std::size_t kLongestFile = std::size_t{1} << 20;

std::string supportFolder(std::string_view below) {
    return build::kSupportDir.toString().toStdString() + std::string(below);
}

/// One line, whatever a key or the parser's own words hold of the file.
std::string inLine(const toml::source_region& place, const std::string& sentence) {
    return "line " + std::to_string(place.begin.line) + ": " + printable(sentence);
}

std::string fullName(std::string_view section, std::string_view name) {
    return section.empty() ? std::string(name) : std::string(section) + '.' + std::string(name);
}

const ConfigurationKey* keyOf(std::string_view section, std::string_view name) {
    const auto keys = knownConfigurationKeys();
    const auto found = std::find_if(keys.begin(), keys.end(), [&](const ConfigurationKey& key) {
        return key.section == section && key.name == name;
    });
    return found == keys.end() ? nullptr : &*found;
}

bool isSection(std::string_view name) {
    const auto keys = knownConfigurationKeys();
    return !name.empty() && std::any_of(keys.begin(), keys.end(), [&](const ConfigurationKey& key) {
        return key.section == name;
    });
}

/// Takes what one table holds. An empty text, or what is wrong.
std::string take(Configuration& configuration, const toml::table& table, std::string_view section) {
    for (const auto& [name, value] : table) {
        const std::string_view key = name.str();
        if (section.empty() && isSection(key)) {
            const toml::table* inner = value.as_table();
            if (inner == nullptr) {
                return inLine(value.source(), std::string(1, '[').append(key) + "] is a section");
            }
            std::string problem = take(configuration, *inner, key);
            if (!problem.empty()) {
                return problem;
            }
            continue;
        }
        const ConfigurationKey* known = keyOf(section, key);
        if (known == nullptr) {
            return inLine(name.source(), "there is no key " + fullName(section, key));
        }
        const std::string_view wanted = known->take(configuration, value);
        if (!wanted.empty()) {
            return inLine(value.source(),
                          fullName(section, key) + " must be " + std::string(wanted));
        }
    }
    return {};
}

} // namespace

Configuration::Configuration()
    : hostCache(supportFolder("/HostCache")),
      updaterStatus(supportFolder("/Desktop/download/status")) {}

ConfigurationResult parseConfiguration(std::string_view text) {
    Configuration configuration;
    try {
        const std::string problem = take(configuration, toml::parse(text), {});
        if (!problem.empty()) {
            return problem;
        }
    } catch (const toml::parse_error& error) {
        return inLine(error.source(), std::string(error.description()));
    }
    return configuration;
}

ConfigurationResult loadConfiguration(const std::string& file) {
    // A FIFO in its place must not hold up the start.
    const UniqueFd descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!descriptor) {
        return errno == ENOENT ? ConfigurationResult(Configuration())
                               : ConfigurationResult(std::string(std::strerror(errno)));
    }
    struct stat status {};
    if (::fstat(descriptor.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::string("it is not a regular file");
    }
    std::string text(kLongestFile + 1, '\0');
    std::size_t length = 0;
    for (;;) {
        const ssize_t got = ::read(descriptor.get(), text.data() + length, text.size() - length);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return std::string(std::strerror(errno));
        }
        length += static_cast<std::size_t>(got);
        if (got == 0 || length == text.size()) {
            break;
        }
    }
    if (length > kLongestFile) {
        return std::string("it is longer than 1 MiB");
    }
    text.resize(length);
    return parseConfiguration(text);
}

std::vector<std::string> configurationKeys() {
    std::vector<std::string> names;
    for (const ConfigurationKey& key : knownConfigurationKeys()) {
        names.push_back(fullName(key.section, key.name));
    }
    return names;
}

} // namespace korvale::agent
