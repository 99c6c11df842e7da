#pragma once

#include "platform/Clock.h"

namespace korvale::fakes {

/// Stands still unless told otherwise.
class FakeClock final : public Clock {
public:
    [[nodiscard]] double now() const override { return seconds; }
    [[nodiscard]] QDateTime localTime() const override { return wallClock; }

    double seconds = 1000;
    QDateTime wallClock;
};

} // namespace korvale::fakes
