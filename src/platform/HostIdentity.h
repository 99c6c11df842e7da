#pragma once

#include <QString>

namespace korvale {

/// The name this machine is shown by: the pretty host name of machine-info(5), else the kernel's.
/// Read from files only, no service is asked.
[[nodiscard]] QString hostDisplayName();

/// The operating system's name as it is shown: PRETTY_NAME of os-release(5), "Linux" without one.
[[nodiscard]] QString operatingSystemName();

} // namespace korvale
