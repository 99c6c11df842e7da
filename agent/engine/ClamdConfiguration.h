#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace korvale::agent {

/// What of clamd.conf the agent has to know.
struct ClamdConfiguration {
    /// Used while the file cannot be read: the smallest limits that any clamd had by default.
    std::int64_t maxFileSize = std::int64_t{25} << 20;  ///< bytes
    std::int64_t maxScanSize = std::int64_t{100} << 20; ///< bytes
    std::string localSocket = "/run/clamav/clamd.ctl";
    std::string databaseFolder = "/var/lib/clamav";
    std::string temporaryFolder = "/tmp"; ///< in which clamd unpacks; without it, it scans nothing
    std::string user;                     ///< whom clamd becomes; empty: nobody else
    bool scanArchives = true;

    /// clamd answers "OK" for larger files without having read them. Never above what clamd can
    /// read at all, whatever the file says.
    [[nodiscard]] std::int64_t largestFile() const;

    friend bool operator==(const ClamdConfiguration&, const ClamdConfiguration&) = default;
};

/// Lines "Option value"; the last of several counts, as for clamd. What is not understood keeps its
/// default.
[[nodiscard]] ClamdConfiguration parseClamdConfiguration(std::string_view text);

/// The file at `path`, at most 256 KiB of it; the defaults above when it cannot be read.
[[nodiscard]] ClamdConfiguration readClamdConfiguration(const std::string& path);

} // namespace korvale::agent
