#include "agent/app/StateSignals.h"

#include <algorithm>

namespace korvale::agent {

StateSignals::StateSignals(QObject* parent) : QObject(parent) {
    m_heartbeat.setInterval(kHeartbeat);
    m_heartbeat.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_heartbeat, &QTimer::timeout, this, &StateSignals::tellAll);
    m_greeting.setSingleShot(true);
    connect(&m_greeting, &QTimer::timeout, this, &StateSignals::tellAll);
}

void StateSignals::setEngineFresh(bool fresh) {
    if (fresh != m_engineFresh) {
        m_engineFresh = fresh;
        tellCloud();
        tellConsole();
    }
}

void StateSignals::setConfigurationValid(bool valid) {
    if (valid != m_configurationValid) {
        m_configurationValid = valid;
        tellConsole();
    }
}

void StateSignals::setDriverConnected(bool connected) {
    if (connected != m_driver) {
        m_driver = connected;
        tellDriver();
    }
}

void StateSignals::start() {
    m_started = true;
    m_heartbeat.start();
    Q_EMIT notification(QStringLiteral("com.korvale.agent.started"));
    tellAll();
}

void StateSignals::greet() {
    if (m_greeting.isActive()) {
        return;
    }
    std::chrono::milliseconds wait{0};
    if (m_sinceGreeting.isValid()) {
        wait = std::max(wait, kGreetPeriod - std::chrono::milliseconds(m_sinceGreeting.elapsed()));
    }
    m_greeting.start(wait);
}

void StateSignals::stop() {
    m_heartbeat.stop();
    m_greeting.stop();
    if (m_started) {
        m_started = false;
        Q_EMIT notification(QStringLiteral("com.korvale.agent.stopped"));
    }
}

void StateSignals::tellConsole() {
    if (m_started) {
        Q_EMIT notification(m_configurationValid && m_engineFresh
                                ? QStringLiteral("com.korvale.halyx.connected")
                                : QStringLiteral("com.korvale.halyx.notconnected"));
    }
}

void StateSignals::tellCloud() {
    if (m_started) {
        Q_EMIT notification(m_engineFresh ? QStringLiteral("com.korvale.quillmar.connected")
                                          : QStringLiteral("com.korvale.quillmar.notconnected"));
    }
}

void StateSignals::tellDriver() {
    if (m_started) {
        Q_EMIT notification(m_driver ? QStringLiteral("com.korvale.driver.connected")
                                     : QStringLiteral("com.korvale.driver.notconnected"));
    }
}

void StateSignals::tellAll() {
    if (!m_started) {
        return;
    }
    m_sinceGreeting.start();
    tellCloud();
    tellConsole();
    // Only a driver that is missing is repeated: "connected" would stand for a change.
    if (!m_driver) {
        tellDriver();
    }
    Q_EMIT notification(QStringLiteral("com.korvale.agent.running"));
}

} // namespace korvale::agent
