#include "agent_sim/AgentPaths.h"

#include "agent/publish/BuildSettings.h"

#include <QFile>

namespace korvale::sim {
namespace {

QString supportFolder(QLatin1String below) {
    return QFile::decodeName(qgetenv("KORVALE_ROOT")) + agent::build::kSupportDir.toString() +
           below;
}

} // namespace

QString hostCacheFolder() {
    return supportFolder(QLatin1String("/HostCache"));
}

QString updaterStatusFolder() {
    return supportFolder(QLatin1String("/Desktop/download/status"));
}

QString defaultQuarantineFolder() {
    return supportFolder(QLatin1String("/Quarantine"));
}

} // namespace korvale::sim
