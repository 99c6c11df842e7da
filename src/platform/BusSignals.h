#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>

#include <limits>

namespace korvale {

/// A time-out that never comes, for QDBusConnection::asyncCall.
inline constexpr int noTimeout = std::numeric_limits<int>::max();

/// Which signals to hear; what is empty may be anything.
struct SignalRule {
    QString path;
    QString interface;
    QString member;
    QString firstArgument;
};

/// Connects `slot`, SLOT(name(QDBusMessage)), to the signals of a message bus, whoever sends them:
/// the slot compares the sender with a NameOwner. Naming a service to Qt instead makes Qt ask the
/// bus for its owner and wait. False when the slot was not accepted. Any thread; waits for no bus.
bool hearSignals(QDBusConnection bus, const SignalRule& rule, QObject* receiver, const char* slot);

/// A call of the bus itself.
[[nodiscard]] QDBusMessage busCall(const char* method);

} // namespace korvale
