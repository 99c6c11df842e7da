#pragma once

#include <QObject>

#include <memory>

class QSocketNotifier;

namespace korvale {

/// SIGTERM, SIGINT and SIGHUP as an event of the main thread, from the first moment on: a signal
/// that comes before watch() is reported by it. One instance at a time.
class TerminationSignals : public QObject {
    Q_OBJECT
public:
    TerminationSignals();
    ~TerminationSignals() override;

    /// Reports signals through requested() from now on; needs an application object.
    void watch();

    /// Holds up the caller for a second, shorter once a signal has come.
    void sleepOneSecond() const;

Q_SIGNALS:
    /// Once, however many signals come.
    void requested();

private:
    int m_event; ///< readable once a signal has come
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// The program's own end of writing to a pipe that nobody reads any more is not worth dying for.
void ignoreBrokenPipes();

} // namespace korvale
