#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QObject>

#include <memory>
#include <optional>

namespace korvale::agent {

/// Hears from the login service that the machine is about to sleep, and delays it for the moment
/// that this takes. Main thread; never waits. Without a login service nothing is heard until there
/// is one: as the machine starts it may come later than this.
class SleepWatch : public QObject {
    Q_OBJECT
public:
    explicit SleepWatch(QObject* parent = nullptr) : QObject(parent) {}

    /// The bus to hear on from now on, again after it was lost.
    void use(const QDBusConnection& bus);

Q_SIGNALS:
    /// True: about to sleep; the delay ends when every slot has returned. False: awake again.
    void sleeping(bool asleep);

private Q_SLOTS:
    void prepare(bool asleep);

private:
    void delay();

    std::optional<QDBusConnection> m_bus;
    std::unique_ptr<QDBusServiceWatcher> m_coming; ///< of the login service
    QDBusUnixFileDescriptor m_delay;               ///< the login service waits while it is open
};

} // namespace korvale::agent
