#pragma once

namespace korvale {

/// The process-wide values besides the log level (core/base/Logging.h): set once during start-up by
/// the entry point, before the event loop runs, and only read afterwards.
struct ProcessValues {
    /// One of the four one-shot options was given.
    bool automationMode = false;
    /// "NoKorvaleUI" is 1: neither polling nor details window.
    bool noUIMode = false;
};

[[nodiscard]] ProcessValues& processValues();

/// For tests: all values as at process start.
void resetProcessValues();

} // namespace korvale
