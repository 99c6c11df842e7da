#pragma once

#include "platform/BusProbe.h"
#include "platform/SingleInstance.h"
#include "platform/SystemBus.h"

#include <QDBusConnection>
#include <QEventLoop>
#include <QObject>

namespace korvale {

/// The program's place in the user's session: finds out whether the session bus answers, becomes
/// the one owner of the program's name there, and turns the event loop. Main thread.
///
/// The toolkit greets the session bus, blocking, as soon as its own event loop runs. So while the
/// bus says nothing (it hangs) a plain loop runs in its place, and nothing touches that bus.
///
/// A bus that is lost is looked for until it is back, and everything told of it again.
class UserSession : public QObject {
    Q_OBJECT
public:
    enum class End {
        Terminated, ///< the program ran and was asked to end
        Declined,   ///< another instance has the name, and shows itself now
    };

    /// Asks the bus already, so that it answers while the toolkit starts. `action`: what this start
    /// wants of the program, be it this one or another; empty when it wants to see the other.
    explicit UserSession(const QString& action = {});

    /// What the program's name offers on the bus; further interfaces are added before run().
    [[nodiscard]] QObject& object() { return m_instance; }

    /// Runs until the end. launch() is the first thing that follows, inside the event loop.
    End run();

    /// Ends run().
    void terminate();

Q_SIGNALS:
    /// The bus answers, for the first time or again, or there is none: a connection that is not
    /// connected. Before or after launch().
    void busDecided(const QDBusConnection& sessionBus);
    void launch();
    /// A second start, the desktop or this start wants to see the program, or one of its actions.
    /// Never before launch().
    void activated(const QString& activationToken, const QString& action);

private Q_SLOTS:
    void firstBusLost();

private:
    void begin();
    void busAnswered();
    void use(const QDBusConnection& bus);
    void instanceDecided(SingleInstance::Outcome outcome);
    void launchOnce();

    const QString m_action;
    BusProbe m_probe;
    SingleInstance m_instance;
    SystemBus m_laterBus; ///< the session's, after the one of the start was lost
    bool m_isLaunched = false;
    bool m_isTerminating = false;
    End m_end = End::Terminated;
    QEventLoop* m_loopWithoutBus = nullptr; ///< while it runs
};

} // namespace korvale
