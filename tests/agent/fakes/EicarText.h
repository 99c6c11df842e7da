#pragma once

#include <string>

namespace korvale::agent {

/// The EICAR test file's 68 bytes, put together here so that no scanner finds them in a source
/// file.
inline std::string eicarText() {
    return std::string("X5O!P%@AP[4\\PZX54(P^)7CC)7}$") + "EICAR-STANDARD-" +
           "ANTIVIRUS-TEST-FILE!$H+H*";
}

} // namespace korvale::agent
