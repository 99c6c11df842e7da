#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

namespace korvale {

/// Turns the event loop until `condition` holds; false when it does not for a very long time.
template <typename Condition>
bool waitUntil(Condition condition) {
    bool expired = false;
    QTimer limit;
    limit.setSingleShot(true);
    QObject::connect(&limit, &QTimer::timeout, &limit, [&expired] { expired = true; });
    limit.start(20000);
    while (!condition() && !expired) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
}

} // namespace korvale
