#pragma once

#include "agent/base/Log.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace korvale::agent {

/// What the administrator can set, with the values that hold where nothing is set. agent.toml(5)
/// documents every key.
struct Configuration {
    std::string deviceName; ///< empty: the host name
    LogLevel logLevel = LogLevel::Info;

    std::string policyName = "Local configuration";
    bool policyNotifications = true;

    std::string hostCache;     ///< default: below the support folder of the build
    std::string updaterStatus; ///< as above
    std::string state = "/var/lib/korvale-agent";
    std::string quarantine = "/var/lib/korvale-agent/quarantine";

    std::string engineConfiguration = "/etc/clamav/clamd.conf";
    std::string engineSocket; ///< empty: as that file says
    std::vector<std::string> hashLists;
    std::chrono::seconds fileDeadline{120};

    std::vector<std::string> background{"/"};
    std::vector<std::string> exclude;
    bool otherFileSystems = false;
    std::int64_t largestFile = std::int64_t{256} << 20; ///< bytes

    std::vector<std::string> watchFolders; ///< none: nothing is watched
    bool blockExecute = false;             ///< bad programs are not run
    bool tellExploits = true;              ///< what the kernel killed or denied is told

    bool quarantineUnsafe = true;
    bool quarantineAbnormal = false;

    std::vector<std::string> engineUnits{"clamav-daemon.socket", "clamav-daemon.service"};
    std::string updaterUnit = "clamav-freshclam.service";
    std::string updaterOnceUnit = "clamav-freshclam-once.service";

    Configuration();
    friend bool operator==(const Configuration&, const Configuration&) = default;
};

/// A configuration, or one sentence that says what is wrong, with its line.
using ConfigurationResult = std::variant<Configuration, std::string>;

/// Text in TOML. An unknown key is an error, as is a value of a wrong type or outside its range:
/// somebody meant something by it.
[[nodiscard]] ConfigurationResult parseConfiguration(std::string_view text);

/// The same from a regular file of at most 1 MiB. A file that is not there is the configuration in
/// which nothing is set. Waits for the disk.
[[nodiscard]] ConfigurationResult loadConfiguration(const std::string& file);

/// Every key that is understood, as "section.key" or "key".
[[nodiscard]] std::vector<std::string> configurationKeys();

} // namespace korvale::agent
