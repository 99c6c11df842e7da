#include "core/UserSession.h"

#include "core/ProcessValues.h"
#include "core/StartUp.h"

#include <QCoreApplication>

namespace korvale {
namespace {

/// What a bus that does not hang needs at most; it has been asked before the toolkit started.
constexpr int patienceMs = 100;
/// How long a bus that comes back may say nothing before it is asked afresh.
constexpr int answerLimitMs = 5000;

/// What the loop without a bus ends with when the bus has spoken; whoever else ends it means the
/// program.
constexpr int busHasSpoken = 1;

/// While it lives, the toolkit's bridge to screen readers stays off the session bus, which it would
/// greet, blocking, with the first widget that is shown. A widget shown in this time leaves the
/// program without the bridge until its next start; otherwise it comes with the first one after.
class NoBridge {
public:
    NoBridge() : m_isMine(!qEnvironmentVariableIsSet(variable)) {
        if (m_isMine) {
            qputenv(variable, "disabled:");
        }
    }
    ~NoBridge() {
        if (m_isMine) {
            qunsetenv(variable);
        }
    }
    NoBridge(const NoBridge&) = delete;
    NoBridge& operator=(const NoBridge&) = delete;

private:
    static constexpr const char* variable = "AT_SPI_BUS_ADDRESS";
    bool m_isMine;
};

} // namespace

UserSession::UserSession(const QString& action)
    : m_action(action),
      m_probe(sessionBusAddress()),
      m_instance(action),
      m_laterBus(answerLimitMs, sessionBusAddress) {
    connect(&m_laterBus, &SystemBus::connected, this, [this] { use(m_laterBus.connection()); });
    connect(&m_laterBus, &SystemBus::lost, this,
            [this] { Q_EMIT busDecided(QDBusConnection(QString())); });
    connect(&m_instance, &SingleInstance::activated, this,
            [this](const QString& token, const QString& wanted) {
                launchOnce();
                Q_EMIT activated(token, wanted);
            });
}

UserSession::End UserSession::run() {
    QMetaObject::invokeMethod(this, &UserSession::begin, Qt::QueuedConnection);
    if (m_probe.waitBriefly(patienceMs) == BusProbe::State::Asking) {
        QEventLoop loop;
        const NoBridge noBridge;
        m_loopWithoutBus = &loop;
        const bool goesOn = loop.exec() == busHasSpoken;
        m_loopWithoutBus = nullptr;
        if (!goesOn) {
            return m_end; // SIGTERM, or the session manager
        }
    }
    if (!m_isTerminating) {
        QCoreApplication::exec();
    }
    return m_end;
}

void UserSession::begin() {
    if (m_probe.state() == BusProbe::State::Asking) {
        connect(&m_probe, &BusProbe::answered, this, &UserSession::busAnswered);
        m_probe.watch();
        launchOnce();
    } else {
        busAnswered();
    }
}

void UserSession::busAnswered() {
    if (m_loopWithoutBus != nullptr) {
        m_loopWithoutBus->exit(busHasSpoken);
    }
    if (sessionBusAddress().isEmpty()) {
        // No library shall launch a bus of its own for want of one.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.connect(QString(), QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"), this,
                SLOT(firstBusLost()));
    use(bus);
}

/// The toolkit's own connection never comes back; the program makes another.
void UserSession::firstBusLost() {
    Q_EMIT busDecided(QDBusConnection(QString()));
    m_laterBus.start();
}

void UserSession::use(const QDBusConnection& bus) {
    Q_EMIT busDecided(bus);
    if (processValues().automationMode) {
        launchOnce(); // neither owns the name nor asks for it
    } else {
        m_instance.claim(bus,
                         [this](SingleInstance::Outcome outcome) { instanceDecided(outcome); });
    }
}

void UserSession::instanceDecided(SingleInstance::Outcome outcome) {
    if (outcome == SingleInstance::Outcome::Second) {
        logOtherInstance();
        // With a bus that answered late the program has been running already.
        m_end = m_isLaunched ? End::Terminated : End::Declined;
        m_instance.activateOwner([this] { terminate(); });
    } else {
        launchOnce();
    }
}

void UserSession::launchOnce() {
    if (!m_isLaunched) {
        m_isLaunched = true;
        Q_EMIT launch();
        if (!m_action.isEmpty()) {
            Q_EMIT activated({}, m_action);
        }
    }
}

void UserSession::terminate() {
    m_isTerminating = true;
    QCoreApplication::exit(0);
}

} // namespace korvale
