#include "platform/BusCalls.h"

namespace korvale {

QDBusMessage busCall(const char* method) {
    return QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"),
                                          QStringLiteral("org.freedesktop.DBus"),
                                          QString::fromLatin1(method));
}

bool hasFailedAtOnce(const QDBusPendingCall& call) {
    // An error that somebody has sent is an answer; those of the toolkit have no sender.
    return call.isFinished() && call.isError() && call.reply().service().isEmpty();
}

} // namespace korvale
