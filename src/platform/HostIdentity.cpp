#include "platform/HostIdentity.h"

#include "platform/AssignmentFile.h"
#include "platform/RootedPath.h"

#include <array>
#include <unistd.h>

namespace korvale {

QString hostDisplayName() {
    if (const auto pretty =
            assignedValue(rootedPath(QStringLiteral("/etc/machine-info")), "PRETTY_HOSTNAME")) {
        return *pretty;
    }
    std::array<char, 256> name{}; // HOST_NAME_MAX is 64; the last byte stays NUL
    ::gethostname(name.data(), name.size() - 1);
    return QString::fromLocal8Bit(name.data());
}

QString operatingSystemName() {
    // The machine's own files too: a test's root need not hold them.
    for (const QString& path :
         {rootedPath(QStringLiteral("/etc/os-release")),
          rootedPath(QStringLiteral("/usr/lib/os-release")), QStringLiteral("/etc/os-release"),
          QStringLiteral("/usr/lib/os-release")}) {
        if (const auto name = assignedValue(path, "PRETTY_NAME")) {
            return *name;
        }
    }
    return QStringLiteral("Linux");
}

} // namespace korvale
