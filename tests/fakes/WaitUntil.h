#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace korvale {

/// Turns the event loop until `condition` holds; false when it does not for a very long time.
template <typename Condition>
bool waitUntil(Condition condition, std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    bool expired = false;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, &timer, [&expired] { expired = true; });
    timer.start(limit);
    while (!condition() && !expired) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

} // namespace korvale
