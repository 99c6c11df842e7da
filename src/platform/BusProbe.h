#pragma once

#include <QByteArray>
#include <QObject>
#include <QTimer>

#include <memory>

QT_BEGIN_NAMESPACE
class QSocketNotifier;
QT_END_NAMESPACE

namespace korvale {

/// Finds out, without ever waiting, whether a message bus answers a client's greeting: libdbus
/// greets a bus with a blocking call, so that a bus that accepts connections, or even lets the
/// client in, but then hangs would hang its client too. Main thread.
class BusProbe : public QObject {
    Q_OBJECT
public:
    enum class State {
        Asking,   ///< nothing heard yet, be it that the bus takes no more clients for the moment
        Answered, ///< the greeting was answered, or the transport cannot be asked: it does not hang
        Absent,   ///< nothing listens there: greeting it fails at once
    };

    /// Begins to ask. `address` is a server address list of the D-Bus specification; the first
    /// entry that can be reached is asked.
    explicit BusProbe(const QByteArray& address, QObject* parent = nullptr);
    ~BusProbe() override;

    [[nodiscard]] State state() const { return m_state; }
    /// Gives the answer `milliseconds` at most to arrive, then returns the state.
    State waitBriefly(int milliseconds);
    /// Reports the answer through answered() once the event loop runs, however late it comes.
    void watch();

Q_SIGNALS:
    /// The state is no longer Asking.
    void answered();

private:
    void ask(const QByteArray& address);
    void reach();
    void greet();
    void knockAgain();
    void listen();
    void readAnswer();
    void closeSocket();
    [[nodiscard]] bool isOutside() const { return m_state == State::Asking && m_socket < 0; }

    State m_state = State::Absent;
    QByteArray m_name; ///< of the socket asked, as the kernel wants it
    int m_socket = -1; ///< none while the bus's queue of clients is full
    QTimer m_knock;    ///< until it no longer is
    QByteArray m_heard;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// Value of `key` in one entry of an address list, such as "unix:path=/run/bus,guid=1", with its
/// %-escapes undone; empty when the entry lacks it.
[[nodiscard]] QByteArray busAddressValue(const QByteArray& entry, const QByteArray& key);

/// The session bus's address: DBUS_SESSION_BUS_ADDRESS, else the socket in XDG_RUNTIME_DIR when it
/// exists, else empty. A bus is never launched.
[[nodiscard]] QByteArray sessionBusAddress();
/// The system bus's: DBUS_SYSTEM_BUS_ADDRESS, else the well-known socket.
[[nodiscard]] QByteArray systemBusAddress();

} // namespace korvale
