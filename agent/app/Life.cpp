#include "agent/app/Life.h"

#include "agent/base/Log.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <ctime>
#include <pthread.h>
#include <sys/signalfd.h>
#include <systemd/sd-daemon.h>

namespace korvale::agent {
namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP, SIGCHLD};

sigset_t signalSet() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : kSignals) {
        sigaddset(&set, signal);
    }
    return set;
}

} // namespace

void Life::blockSignals() {
    const sigset_t set = signalSet();
    ::pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

Life::Life(QObject* parent) : QObject(parent) {
    const sigset_t set = signalSet();
    m_signals.reset(::signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK));
    if (m_signals) {
        m_notifier = std::make_unique<QSocketNotifier>(m_signals.get(), QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &Life::takeSignal);
    }
    connect(&m_watchdog, &QTimer::timeout, this, [this] {
        ::sd_notify(0, "WATCHDOG=1");
        Q_EMIT alive();
    });
}

void Life::takeSignal() {
    signalfd_siginfo info{};
    while (::read(m_signals.get(), &info, sizeof info) == ssize_t{sizeof info}) {
        if (info.ssi_signo == SIGHUP) {
            Q_EMIT reloadWanted();
        } else if (info.ssi_signo == SIGCHLD) {
            Q_EMIT childChanged();
        } else {
            Q_EMIT endWanted();
        }
    }
}

void Life::ready() {
    ::sd_notify(0, "READY=1");
    std::uint64_t microseconds = 0;
    if (::sd_watchdog_enabled(0, &microseconds) > 0) {
        // Half the time that the manager waits, as its documentation asks.
        m_watchdog.start(std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::microseconds(microseconds / 2)));
    }
}

void Life::status(const QString& line) {
    ::sd_notify(0, ("STATUS=" + printable(line.toStdString())).c_str());
}

void Life::reloading() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    const std::int64_t microseconds =
        std::int64_t{now.tv_sec} * 1'000'000 + std::int64_t{now.tv_nsec} / 1'000;
    ::sd_notify(0, ("RELOADING=1\nMONOTONIC_USEC=" + std::to_string(microseconds)).c_str());
}

void Life::reloaded() {
    ::sd_notify(0, "READY=1");
}

void Life::stopping() {
    ::sd_notify(0, "STOPPING=1");
}

} // namespace korvale::agent
