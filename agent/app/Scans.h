#pragma once

#include "agent/app/AgentTasks.h"
#include "agent/app/Configuration.h"
#include "agent/scan/ScanTypes.h"

namespace korvale::agent {

class Scanner;

/// Starts scans as the configuration wants them. Main thread.
class Scans {
public:
    /// Called once, now or later: the scan's number, or 0 and why there is none.
    using Answer = std::function<void(std::uint64_t id, const QString& refusal)>;

    /// `scanner` must outlive this object.
    explicit Scans(Scanner& scanner) : m_scanner(scanner) {}

    void configure(const Configuration& configuration);
    void startFolder(const Caller& caller, const std::string& path, const Answer& answer);
    /// One scan for each folder of the configuration, with root's rights; the number is that of the
    /// first.
    void startBackground(const Caller& caller, const Answer& answer);
    /// Whether all scans were asked for by that user; true when there is none.
    [[nodiscard]] bool allOf(std::uint32_t uid) const;
    /// False: there is no such scan, or none at all.
    bool stop(std::uint64_t id);
    bool stopAll();

private:
    Scanner& m_scanner;
    ScanOptions m_options;
    std::vector<std::string> m_background;
    std::uint32_t m_backgroundUser = 0; ///< who asked for the background scan
};

} // namespace korvale::agent
