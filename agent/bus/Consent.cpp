#include "agent/bus/Consent.h"

#include "agent/bus/PolkitTypes.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include <limits>

namespace korvale::agent {
namespace {

constexpr uint kAskThePerson = 1;
constexpr int kNoLimit = std::numeric_limits<int>::max();

QDBusMessage polkitCall(const QString& method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.PolicyKit1"),
                                          QStringLiteral("/org/freedesktop/PolicyKit1/Authority"),
                                          QStringLiteral("org.freedesktop.PolicyKit1.Authority"),
                                          method);
}

Consent::Outcome outcomeOf(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage ||
        reply.signature() != QLatin1String("(bba{ss})")) {
        return Consent::Outcome::Unavailable;
    }
    const auto result = qdbus_cast<PolkitResult>(reply.arguments().constFirst());
    return result.isAuthorized ? Consent::Outcome::Granted : Consent::Outcome::Refused;
}

} // namespace

void Consent::ask(const QDBusConnection& connection, const QString& busName, const QString& action,
                  bool mayAskPerson, const Answer& answer) {
    if (m_open >= kMostOpen) {
        QMetaObject::invokeMethod(
            this, [answer] { answer(Outcome::Refused); }, Qt::QueuedConnection);
        return;
    }
    qDBusRegisterMetaType<PolkitSubject>();
    qDBusRegisterMetaType<QMap<QString, QString>>();
    ++m_open;
    const QString question = QStringLiteral("korvale-agent-%1").arg(++m_lastQuestion);
    QDBusMessage call = polkitCall(QStringLiteral("CheckAuthorization"));
    const PolkitSubject subject{QStringLiteral("system-bus-name"),
                                {{QStringLiteral("name"), busName}}};
    call << QVariant::fromValue(subject) << action << QVariant::fromValue(QMap<QString, QString>())
         << (mayAskPerson ? kAskThePerson : 0U) << question;
    auto* watcher = new QDBusPendingCallWatcher(connection.asyncCall(call, kNoLimit), this);
    auto* leaving = new QDBusServiceWatcher(busName, connection,
                                            QDBusServiceWatcher::WatchForUnregistration, watcher);
    connect(leaving, &QDBusServiceWatcher::serviceUnregistered, this,
            [this, connection, question] { withdraw(connection, question); });
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answer] {
        watcher->deleteLater();
        --m_open;
        answer(outcomeOf(watcher->reply()));
    });
}

void Consent::withdraw(const QDBusConnection& connection, const QString& question) {
    QDBusMessage call = polkitCall(QStringLiteral("CancelCheckAuthorization"));
    call << question;
    connection.send(call);
}

} // namespace korvale::agent
