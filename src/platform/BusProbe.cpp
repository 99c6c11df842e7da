#include "platform/BusProbe.h"

#include "platform/BusGreeting.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QList>
#include <QSocketNotifier>
#include <QThread>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <optional>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace korvale {
namespace {

/// Name of the socket in the form the kernel wants: a leading NUL marks an abstract one.
std::optional<QByteArray> socketName(const QByteArray& entry) {
    if (const QByteArray path = busAddressValue(entry, "path"); !path.isEmpty()) {
        return path;
    }
    if (const QByteArray name = busAddressValue(entry, "abstract"); !name.isEmpty()) {
        return QByteArray(1, '\0') + name;
    }
    return std::nullopt;
}

constexpr int knockEveryMs = 100;
/// A bus says less than this before it has answered.
constexpr qsizetype longestAnswer = 4096;

/// Connects without waiting; 0, or the reason (errno) why not.
int connectTo(int socket, const QByteArray& name) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (static_cast<std::size_t>(name.size()) >= sizeof address.sun_path) {
        return ENAMETOOLONG;
    }
    std::copy(name.begin(), name.end(), std::begin(address.sun_path));
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) +
                                               static_cast<std::size_t>(name.size()));
    const void* const generic = &address;
    return ::connect(socket, static_cast<const sockaddr*>(generic), length) == 0 ? 0 : errno;
}

/// Waits until `socket` can be read, whatever signals come; false when the time is up.
bool waitReadable(int socket, QDeadlineTimer deadline) {
    pollfd waiting{socket, POLLIN, 0};
    int ready = -1;
    do {
        ready = ::poll(&waiting, 1, static_cast<int>(deadline.remainingTime()));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

} // namespace

QByteArray busAddressValue(const QByteArray& entry, const QByteArray& key) {
    for (const QByteArray& pair : entry.mid(entry.indexOf(':') + 1).split(',')) {
        if (pair.startsWith(key + '=')) {
            return QByteArray::fromPercentEncoding(pair.mid(key.size() + 1));
        }
    }
    return {};
}

BusProbe::BusProbe(const QByteArray& address, QObject* parent) : QObject(parent) {
    for (const QByteArray& entry : address.split(';')) {
        ask(entry);
        if (m_state != State::Absent) {
            return;
        }
    }
}

BusProbe::~BusProbe() {
    closeSocket();
}

void BusProbe::ask(const QByteArray& address) {
    if (!address.startsWith("unix:")) {
        // Other transports (tcp, unixexec) are taken on trust.
        m_state = address.contains(':') ? State::Answered : State::Absent;
        return;
    }
    if (const std::optional<QByteArray> name = socketName(address)) {
        m_name = *name;
        reach();
    }
}

void BusProbe::reach() {
    m_state = State::Absent;
    m_socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (m_socket < 0) {
        return;
    }
    const int failure = connectTo(m_socket, m_name);
    if (failure == 0) {
        greet();
        return;
    }
    closeSocket();
    if (failure == EAGAIN) {
        // A full queue of clients: a bus that hangs, and that the toolkit would wait for in vain.
        m_state = State::Asking;
    }
}

void BusProbe::greet() {
    const QByteArray greeting = busGreeting();
    m_heard.clear();
    if (::send(m_socket, greeting.constData(), static_cast<std::size_t>(greeting.size()),
               MSG_NOSIGNAL) == greeting.size()) {
        m_state = State::Asking;
    } else {
        closeSocket();
    }
}

BusProbe::State BusProbe::waitBriefly(int milliseconds) {
    const QDeadlineTimer deadline(milliseconds);
    while (isOutside() && !deadline.hasExpired()) {
        QThread::msleep(std::min<qint64>(knockEveryMs, deadline.remainingTime()));
        reach();
    }
    while (m_state == State::Asking && m_socket >= 0 && waitReadable(m_socket, deadline)) {
        readAnswer();
    }
    return m_state;
}

void BusProbe::watch() {
    if (m_state != State::Asking || m_notifier || m_knock.isActive()) {
        return;
    }
    if (m_socket >= 0) {
        listen();
        return;
    }
    connect(&m_knock, &QTimer::timeout, this, &BusProbe::knockAgain);
    m_knock.start(knockEveryMs);
}

void BusProbe::knockAgain() {
    reach();
    if (isOutside()) {
        return;
    }
    m_knock.stop();
    if (m_state == State::Asking) {
        listen();
    } else {
        Q_EMIT answered();
    }
}

void BusProbe::listen() {
    m_notifier = std::make_unique<QSocketNotifier>(m_socket, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &BusProbe::readAnswer);
}

void BusProbe::readAnswer() {
    std::array<char, 256> answer{};
    const ssize_t length = ::recv(m_socket, answer.data(), answer.size(), 0);
    if (length < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    m_heard.append(answer.data(), static_cast<qsizetype>(std::max<ssize_t>(length, 0)));
    if (length > 0 && !isGreetingAnswered(m_heard) && m_heard.size() < longestAnswer) {
        return;
    }
    m_state = length > 0 ? State::Answered : State::Absent;
    closeSocket();
    Q_EMIT answered();
}

void BusProbe::closeSocket() {
    if (m_notifier) {
        m_notifier->setEnabled(false); // and not destroyed, as it may be what is calling
    }
    if (m_socket >= 0) {
        ::close(m_socket);
        m_socket = -1;
    }
}

QByteArray sessionBusAddress() {
    QByteArray given = qgetenv("DBUS_SESSION_BUS_ADDRESS");
    if (!given.isEmpty()) {
        return given;
    }
    const QByteArray runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray socket = runtimeFolder + "/bus";
    if (runtimeFolder.isEmpty() || !QFileInfo::exists(QString::fromLocal8Bit(socket))) {
        return {};
    }
    return "unix:path=" + socket.toPercentEncoding("/");
}

QByteArray systemBusAddress() {
    QByteArray given = qgetenv("DBUS_SYSTEM_BUS_ADDRESS");
    return given.isEmpty() ? QByteArrayLiteral("unix:path=/run/dbus/system_bus_socket") : given;
}

} // namespace korvale
