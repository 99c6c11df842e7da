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

    /// `action`: what this start wants of the program, as the desktop entry calls it; empty when it
    /// wants to see it.
    explicit SingleInstance(QString action = {}, QObject* parent = nullptr);

    /// Asks for the name, on each new connection. `decided` gets the outcome after a moment at
    /// most; with a bus that is not connected, at once. An outcome that was Unknown, because the
    /// bus took too long, is followed by the true one when the bus says it after all.
    void claim(const QDBusConnection& sessionBus, std::function<void(Outcome)> decided);

    /// After Second: asks the owner for what this start wants. `done` follows when it has got it,
    /// or does not answer.
    void activateOwner(std::function<void()> done);

Q_SIGNALS:
    /// Somebody wants to see the program, or one of the desktop entry's actions; anybody on the bus
    /// may have named the latter. The token (may be empty) is the right to take the focus.
    void activated(const QString& activationToken, const QString& action);

private:
    const QString m_action;
    QDBusConnection m_bus{QString()};
    std::function<void(Outcome)> m_decided;
    QTimer m_limit;             ///< for the answer to the claim
    int m_claim = 0;            ///< number of the last one
    QVariantMap m_platformData; ///< what this process was started with
};

} // namespace korvale
