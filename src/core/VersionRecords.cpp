#include "core/VersionRecords.h"

#include "core/BundleIdentity.h"
#include "core/base/Logging.h"
#include "platform/HostIdentity.h"

namespace korvale {

void UtilLogVersionNumber() {
    if (logs(LogLevel::Info)) {
        OSLoggingLogMessage(LogLevel::Info, "%s() Korvale Bastion %s version = %s",
                            {QStringLiteral("UtilLogVersionNumber"),
                             bufferText(bundleIdentity().name),
                             bufferText(bundleIdentity().version)});
    }
}

void UtilLogOSVersionNumber() {
    if (logs(LogLevel::Info)) {
        // The wording is the whole product's, whatever the system.
        OSLoggingLogMessage(LogLevel::Info, "%s() System macOS version %@",
                            {QStringLiteral("UtilLogOSVersionNumber"), operatingSystemName()});
    }
}

} // namespace korvale
