#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariantMap>

#include <functional>

namespace korvale {

/// The program as the one owner of its name on the session bus, with the interface
/// org.freedesktop.Application by which a second start, or the desktop, asks it to show itself.
/// Main thread; nothing waits.
class SingleInstance : public QObject {
    Q_OBJECT
public:
    enum class Outcome {
        First,   ///< the name is ours
        Second,  ///< another instance has it
        Unknown, ///< the bus did not say
    };

    explicit SingleInstance(QObject* parent = nullptr);

    /// Asks for the name, on each new connection. `decided` gets the outcome after a moment at
    /// most; with a bus that is not connected, at once. An outcome that was Unknown, because the
    /// bus took too long, is followed by the true one when the bus says it after all.
    void claim(const QDBusConnection& sessionBus, std::function<void(Outcome)> decided);

    /// After Second: asks the owner to show itself. `done` follows when it has, or does not answer.
    void activateOwner(std::function<void()> done);

Q_SIGNALS:
    /// Somebody wants to see the program. The token (may be empty) is the right to take the focus.
    void activated(const QString& activationToken);

private:
    QDBusConnection m_bus{QString()};
    std::function<void(Outcome)> m_decided;
    QTimer m_limit;             ///< for the answer to the claim
    int m_claim = 0;            ///< number of the last one
    QVariantMap m_platformData; ///< what this process was started with
};

} // namespace korvale
