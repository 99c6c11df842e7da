#include "agent/app/WatchOptionsOf.h"

namespace korvale::agent {

WatchOptions watchOptionsOf(const Configuration& configuration, const EngineFiles& engine,
                            bool checkStarts) {
    WatchOptions options;
    options.engine = engine;
    options.folders = configuration.watchFolders;
    options.checkStarts = checkStarts && !configuration.watchFolders.empty();
    options.maxFileSize = configuration.largestFile;
    options.fileDeadline = configuration.fileDeadline;
    std::string error; // none: the configuration was checked
    for (const std::string& rule : configuration.exclude) {
        (void)options.excluded.add(rule, error);
    }
    for (const std::string& own : {configuration.state, configuration.quarantine,
                                   configuration.hostCache, configuration.updaterStatus}) {
        (void)options.own.add(own, error);
    }
    return options;
}

} // namespace korvale::agent
