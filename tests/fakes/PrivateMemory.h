#pragma once

#include <fstream>
#include <string>

namespace korvale::fakes {

/// What this process alone has written to, in KiB.
inline long privateMemory() {
    std::ifstream rollup("/proc/self/smaps_rollup");
    for (std::string line; std::getline(rollup, line);) {
        if (line.starts_with("Private_Dirty:")) {
            return std::stol(line.substr(line.find(':') + 1));
        }
    }
    return 0;
}

} // namespace korvale::fakes
