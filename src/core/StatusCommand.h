#pragma once

#include <QByteArray>

#include <vector>

namespace korvale {

/// Asks the running program over the session bus how the machine is, and prints it; returns the
/// exit status. `arguments` without the program's path. Needs a QCoreApplication and the texts, but
/// no display. A bus or program that says nothing ends the process after five seconds. Starts
/// nothing.
[[nodiscard]] int runStatusCommand(const std::vector<QByteArray>& arguments);

} // namespace korvale
