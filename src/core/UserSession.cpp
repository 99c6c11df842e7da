#include "core/UserSession.h"

#include "core/ProcessValues.h"
#include "core/StartUp.h"

#include <QCoreApplication>

namespace korvale {
namespace {

/// What a bus that does not hang needs at most; it has been asked before the toolkit started.
constexpr int patienceMs = 100;

} // namespace

UserSession::UserSession() : m_probe(sessionBusAddress()) {
    connect(&m_instance, &SingleInstance::activated, this, [this](const QString& token) {
        launchOnce();
        Q_EMIT activated(token);
    });
}

UserSession::End UserSession::run() {
    QMetaObject::invokeMethod(this, &UserSession::begin, Qt::QueuedConnection);
    if (m_probe.waitBriefly(patienceMs) == BusProbe::State::Asking) {
        QEventLoop loop;
        m_loopWithoutBus = &loop;
        loop.exec();
        m_loopWithoutBus = nullptr;
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
        m_loopWithoutBus->quit();
    }
    if (sessionBusAddress().isEmpty()) {
        // No library shall launch a bus of its own for want of one.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
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
    }
}

void UserSession::terminate() {
    m_isTerminating = true;
    QCoreApplication::exit(0);
}

} // namespace korvale
