#pragma once

#include "platform/BusCalls.h"

#include <QDBusConnection>
#include <QString>

namespace korvale {

/// Which signals to hear; what is empty may be anything.
struct SignalRule {
    QString path;
    QString interface;
    QString member;
    QString firstArgument;
    /// A name of the bus: it keeps back what others send, a flood included. Only on a bus that
    /// SystemBus made; elsewhere all senders are heard.
    QString sender{};
};

/// Connects `slot`, SLOT(name(QDBusMessage)), to the signals of a message bus, whoever sends them:
/// the slot compares the sender with a NameOwner. Naming a service to Qt instead makes Qt ask the
/// bus for its owner and wait. False when the slot was not accepted. Any thread; waits for no bus.
bool hearSignals(QDBusConnection bus, const SignalRule& rule, QObject* receiver, const char* slot);

} // namespace korvale
