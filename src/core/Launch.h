#pragma once

namespace korvale {

/// Entry point of the program; returns the process's exit status.
int runKorvaleUI(int argc, char** argv);

} // namespace korvale
