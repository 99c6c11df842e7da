#include "platform/Clock.h"

#include <ctime>

namespace korvale {

double SystemClock::now() const {
    timespec moment{};
    clock_gettime(CLOCK_MONOTONIC, &moment);
    return static_cast<double>(moment.tv_sec) + static_cast<double>(moment.tv_nsec) * 1e-9;
}

QDateTime SystemClock::localTime() const {
    return QDateTime::currentDateTime();
}

} // namespace korvale
