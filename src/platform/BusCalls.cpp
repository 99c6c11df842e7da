#include "platform/BusCalls.h"

namespace korvale {

QDBusMessage busCall(const char* method) {
    return QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"),
                                          QString::fromLatin1(method));
}

bool hasFailedAtOnce(const QDBusPendingCall& call) {
    return call.isFinished() && call.isError();
}

} // namespace korvale
