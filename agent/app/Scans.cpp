#include "agent/app/Scans.h"

#include "agent/scan/Scanner.h"

#include <algorithm>

namespace korvale::agent {
namespace {

const CallerCredentials kRoot{0, {0}};

Scanner::Answer toScanner(const Scans::Answer& answer) {
    return [answer](std::uint64_t id, const std::string& error) {
        answer(id, QString::fromStdString(error));
    };
}

} // namespace

void Scans::configure(const Configuration& configuration) {
    ScanOptions options;
    std::string error; // none: the configuration was checked
    for (const std::string& rule : configuration.exclude) {
        (void)options.excluded.add(rule, error);
    }
    // Our own: now and then there is a test file for the engine in it, which is no finding.
    for (const std::string& own : {configuration.state, configuration.quarantine}) {
        (void)options.excluded.add(own, error);
    }
    options.otherFileSystems = configuration.otherFileSystems;
    options.maxFileSize = configuration.largestFile;
    options.fileDeadline = configuration.fileDeadline;
    m_options = options;
    m_background = configuration.background;
}

void Scans::startFolder(const Caller& caller, const std::string& path, const Answer& answer) {
    ScanRequest request;
    request.kind = ScanKind::Folder;
    request.path = path;
    request.caller.user = caller.uid;
    request.caller.groups.assign(caller.gids.begin(), caller.gids.end());
    request.options = m_options;
    m_scanner.start(std::move(request), toScanner(answer));
}

void Scans::startBackground(const Caller& caller, const Answer& answer) {
    const std::vector<ScanInfo> scans = m_scanner.scans();
    if (std::any_of(scans.begin(), scans.end(),
                    [](const ScanInfo& scan) { return scan.kind == ScanKind::Background; })) {
        answer(0, QStringLiteral("A background scan is running already."));
        return;
    }
    if (m_background.empty()) {
        answer(0, QStringLiteral("No folder is configured for background scans."));
        return;
    }
    m_backgroundUser = caller.uid;
    bool first = true;
    for (const std::string& folder : m_background) {
        ScanRequest request{ScanKind::Background, folder, kRoot, m_options};
        m_scanner.start(std::move(request),
                        first ? toScanner(answer)
                              : Scanner::Answer([](std::uint64_t, const std::string&) {}));
        first = false;
    }
}

bool Scans::allOf(std::uint32_t uid) const {
    const std::vector<ScanInfo> scans = m_scanner.scans();
    return std::all_of(scans.begin(), scans.end(), [&](const ScanInfo& scan) {
        return uid == (scan.kind == ScanKind::Background ? m_backgroundUser : scan.user);
    });
}

bool Scans::stop(std::uint64_t id) {
    return m_scanner.stop(id);
}

bool Scans::stopAll() {
    const bool any = !m_scanner.scans().empty();
    m_scanner.stopAll();
    return any;
}

} // namespace korvale::agent
