#include "platform/SingleInstance.h"

#include "platform/ApplicationAdaptor.h"
#include "platform/BusCalls.h"
#include "platform/BusSignals.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <utility>

namespace korvale {
namespace {

constexpr const char* name = "com.korvale.ui";
constexpr const char* path = "/com/korvale/ui";
constexpr int answerLimitMs = 2000;

// org.freedesktop.DBus.RequestName
constexpr uint doNotQueue = 4;
constexpr uint primaryOwner = 1;
constexpr uint alreadyOwner = 4;

/// Taken at once, as the toolkit removes them from the environment for the processes it starts.
QVariantMap platformDataOfThisStart() {
    QVariantMap data;
    if (const QString token = qEnvironmentVariable("XDG_ACTIVATION_TOKEN"); !token.isEmpty()) {
        data.insert(QStringLiteral("activation-token"), token);
    }
    if (const QString id = qEnvironmentVariable("DESKTOP_STARTUP_ID"); !id.isEmpty()) {
        data.insert(QStringLiteral("desktop-startup-id"), id);
    }
    return data;
}

SingleInstance::Outcome outcomeOf(const QDBusPendingReply<uint>& reply) {
    if (reply.isError()) {
        return SingleInstance::Outcome::Unknown;
    }
    return reply.value() == primaryOwner || reply.value() == alreadyOwner
               ? SingleInstance::Outcome::First
               : SingleInstance::Outcome::Second;
}

} // namespace

SingleInstance::SingleInstance(QString action, QObject* parent)
    : QObject(parent), m_action(std::move(action)), m_platformData(platformDataOfThisStart()) {
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] { m_decided(Outcome::Unknown); });
    new ApplicationAdaptor(this, [this](const QString& token, const QString& wanted) {
        Q_EMIT activated(token, wanted);
    });
}

void SingleInstance::claim(const QDBusConnection& sessionBus,
                           std::function<void(Outcome)> decided) {
    m_bus = sessionBus;
    m_limit.stop();
    if (!m_bus.isConnected()) {
        decided(Outcome::Unknown);
        return;
    }
    // Before the name is ours, so that whoever finds the name finds the object.
    m_bus.registerObject(QString::fromLatin1(path), this, QDBusConnection::ExportAdaptors);
    QDBusMessage request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    request << QString::fromLatin1(name) << doNotQueue;
    // However late the answer: it still says whether there is another one.
    const QDBusPendingCall call = m_bus.asyncCall(request, noTimeout);
    if (hasFailedAtOnce(call)) {
        decided(Outcome::Unknown); // the bus has just gone; a watcher would hear nothing
        return;
    }
    m_decided = std::move(decided);
    m_limit.start(answerLimitMs);
    auto* watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, number = ++m_claim] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> reply = *watcher;
        if (number != m_claim || (reply.isError() && !m_limit.isActive())) {
            return; // of an earlier bus, or no news
        }
        m_limit.stop();
        m_decided(outcomeOf(reply));
    });
}

void SingleInstance::activateOwner(std::function<void()> done) {
    QDBusMessage request = QDBusMessage::createMethodCall(
        QString::fromLatin1(name), QString::fromLatin1(path),
        QStringLiteral("org.freedesktop.Application"),
        m_action.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("ActivateAction"));
    if (!m_action.isEmpty()) {
        request << m_action << QVariantList();
    }
    request << m_platformData;
    request.setAutoStartService(false);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(request, answerLimitMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [done = std::move(done)](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                done();
            });
}

} // namespace korvale
