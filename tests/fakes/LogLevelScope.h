#pragma once

#include "core/base/Logging.h"

namespace korvale::fakes {

/// Another log level while it lives.
class LogLevelScope {
public:
    explicit LogLevelScope(LogLevel level) { setLogLevel(level); }
    LogLevelScope(const LogLevelScope&) = delete;
    LogLevelScope& operator=(const LogLevelScope&) = delete;
    ~LogLevelScope() { setLogLevel(m_before); }

private:
    LogLevel m_before = logLevel();
};

} // namespace korvale::fakes
