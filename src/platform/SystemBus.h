#pragma once

#include "platform/BusProbe.h"

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

QT_BEGIN_NAMESPACE
class QDBusPendingCallWatcher;
class QFileSystemWatcher;
QT_END_NAMESPACE

namespace korvale {

class BusSearch;

/// The program's own connection to the system bus. It comes by itself when there is a bus, and
/// comes back after the bus was restarted. Main thread.
///
/// Qt greets a bus with a call that blocks its D-Bus thread, and with that every user of any bus,
/// for as long as the daemon says nothing; and a bus that refuses the greeting makes libdbus abort
/// the process. So Qt is told to connect to a peer, which it does not greet, the greeting is a call
/// like any other, and whoever wants signals asks for them with hearSignals(). Before that, a probe
/// that never waits has had an answer from the address.
///
/// While there is no bus, it is looked for after 20 ms, then at doubling intervals up to 2.5 s, and
/// afresh whenever the folder of a socket changes. On the bus there is no timer and no watch.
class SystemBus final : public QObject {
    Q_OBJECT
public:
    enum class State { Idle, FirstAttempt, Connected, Absent };

    /// `answerLimitMs`: how long a bus that takes the connection may say nothing.
    /// `address` names the bus: the session's can be followed in the same way.
    explicit SystemBus(int answerLimitMs = 5000, QByteArray (*address)() = systemBusAddress,
                       QObject* parent = nullptr);
    ~SystemBus() override;

    /// Starts looking for the bus; the event loop does the rest. Only the first call counts.
    void start();
    /// Ends a first attempt that is still going on, for one-shot starts, which sleep instead of
    /// turning the event loop: holds up the caller until the bus has had its say, for `timeoutMs`
    /// at most, however many addresses it has. Does nothing in any other state.
    void finishFirstAttempt(int timeoutMs);

    [[nodiscard]] State state() const { return m_state; }
    /// The present connection; keep no copy of it that outlives lost(). Not connected unless
    /// state() is Connected.
    [[nodiscard]] QDBusConnection connection() const;

Q_SIGNALS:
    /// On the bus, for the first time or again: subscribe now.
    void connected();
    /// The first attempt found no bus; said at most once, and not after connected().
    void firstAttemptFailed();
    /// The bus went away, and with it all subscriptions.
    void lost();

private Q_SLOTS:
    void onDisconnected();

private:
    void tryNow();
    void onSearched(const QString& address);
    [[nodiscard]] bool greet(const QString& address, int timeoutMs);
    void onGreeted();
    void dropGreeting();
    void becomeConnected();
    void becomeAbsent();
    void retryLater();
    void watchSocketFolders();

    State m_state = State::Idle;
    QString m_name; ///< of the connection within Qt; of one that is being greeted, too
    std::unique_ptr<BusSearch> m_search;
    std::unique_ptr<QDBusPendingCallWatcher> m_greeting; ///< while unanswered
    std::unique_ptr<QFileSystemWatcher> m_folders;
    QTimer m_retry;
    int m_answerLimitMs;
    QByteArray (*m_address)();
    int m_retryDelayMs;
};

} // namespace korvale
