#pragma once

namespace korvale {

/// At INFO: the display name and the version of bundleIdentity().
void UtilLogVersionNumber();

/// At INFO: the operating system.
void UtilLogOSVersionNumber();

} // namespace korvale
