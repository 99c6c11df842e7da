#pragma once

#include "agent/app/Configuration.h"

#include <span>
#include <toml++/toml.h>

namespace korvale::agent {

/// One key of the configuration file and how its value is taken.
struct ConfigurationKey {
    std::string_view section; ///< empty: the top of the file
    std::string_view name;
    /// Takes the value, or says what it should have been ("a folder, beginning with /").
    std::string_view (*take)(Configuration& configuration, const toml::node& value);
};

[[nodiscard]] std::span<const ConfigurationKey> knownConfigurationKeys();

} // namespace korvale::agent
