#pragma once

#include <QDateTime>

namespace korvale {

/// The two notions of time the program has. Both may be read from any thread.
class Clock {
public:
    virtual ~Clock() = default;

    /// Seconds on a clock that neither the user nor sleep moves (CLOCK_MONOTONIC: still while the
    /// machine is suspended). Only differences mean anything.
    [[nodiscard]] virtual double now() const = 0;

    /// The wall clock in the local time zone: for the updater's day key, and for people to read.
    [[nodiscard]] virtual QDateTime localTime() const = 0;
};

/// The clocks of the operating system.
class SystemClock final : public Clock {
public:
    [[nodiscard]] double now() const override;
    [[nodiscard]] QDateTime localTime() const override;
};

} // namespace korvale
