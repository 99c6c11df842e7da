#include "core/VersionRecords.h"

#include "core/BundleIdentity.h"
#include "core/base/Logging.h"
#include "platform/HostIdentity.h"

namespace korvale {

void UtilLogVersionNumber() {
    logLine(
        LogLevel::Info, "%s() Korvale Bastion %s version = %s", "UtilLogVersionNumber",
        [] { return bufferText(bundleIdentity().name); },
        [] { return bufferText(bundleIdentity().version); });
}

void UtilLogOSVersionNumber() {
    // The wording is the whole product's, whatever the system.
    logLine(LogLevel::Info, "%s() System macOS version %@", "UtilLogOSVersionNumber",
            operatingSystemName);
}

} // namespace korvale
