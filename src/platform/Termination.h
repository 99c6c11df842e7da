#pragma once

#include <QObject>

#include <functional>
#include <memory>

QT_BEGIN_NAMESPACE
class QSocketNotifier;
QT_END_NAMESPACE

namespace korvale {

/// SIGTERM, SIGINT and SIGHUP as an event of the main thread, from the first moment on: a signal
/// that comes before watch() is reported by it. One that the parent had ignored stays ignored. One
/// instance at a time.
class TerminationSignals : public QObject {
    Q_OBJECT
public:
    TerminationSignals();
    ~TerminationSignals() override;

    /// Reports signals through requested() from now on; needs an application object.
    void watch();

    /// Holds up the caller for a second, shorter once a signal has come.
    void sleepOneSecond() const;

    /// The number of the first signal that came; 0 while there was none.
    [[nodiscard]] static int received();

    /// A descriptor that is readable once a signal has come; it is never read.
    [[nodiscard]] int descriptor() const { return m_event; }

Q_SIGNALS:
    /// Once, however many signals come.
    void requested();

private:
    int m_event; ///< readable once a signal has come
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// While it lives, exit() called by somebody else (the toolkit does so when the display server goes
/// away) becomes an end like any other: `willTerminate` runs, and the exit status is 0. One
/// instance at a time. Main thread.
class ToolkitExitGuard {
public:
    explicit ToolkitExitGuard(std::function<void()> willTerminate);
    ~ToolkitExitGuard();
    ToolkitExitGuard(const ToolkitExitGuard&) = delete;
    ToolkitExitGuard& operator=(const ToolkitExitGuard&) = delete;
};

/// The program's own end of writing to a pipe that nobody reads any more is not worth dying for.
void ignoreBrokenPipes();

} // namespace korvale
