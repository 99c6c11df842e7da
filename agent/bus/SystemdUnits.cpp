#include "agent/bus/SystemdUnits.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace korvale::agent {
namespace {

const QString kService = QStringLiteral("org.freedesktop.systemd1");
const QString kManagerPath = QStringLiteral("/org/freedesktop/systemd1");
const QString kManager = QStringLiteral("org.freedesktop.systemd1.Manager");

QDBusMessage toManager(const QString& method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(kService, kManagerPath, kManager, method);
    message.setArguments(arguments);
    message.setAutoStartService(false);
    return message;
}

QDBusMessage getAll(const QString& path, const QString& interface) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        kService, path, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("GetAll"));
    message.setArguments({interface});
    message.setAutoStartService(false);
    return message;
}

QVariantMap propertiesOf(const QDBusMessage& reply) {
    return reply.signature() == QLatin1String("a{sv}")
               ? qdbus_cast<QVariantMap>(reply.arguments().constFirst())
               : QVariantMap();
}

QString objectOf(const QDBusMessage& reply) {
    return reply.signature() == QLatin1String("o")
               ? reply.arguments().constFirst().value<QDBusObjectPath>().path()
               : QString();
}

QString troubleOf(const QDBusMessage& error) {
    const QString name = error.errorName();
    if (name == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
        name == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner")) {
        return QStringLiteral("There is no service manager on the bus.");
    }
    return QStringLiteral("The service manager refused: %1").arg(error.errorMessage());
}

} // namespace

void SystemdUnits::use(const QDBusConnection& bus) {
    const QHash<QString, Job> lost = m_jobs;
    m_jobs.clear();
    m_ended.clear();
    m_bus = bus;
    // Before any job is begun: one may be over before we know its name.
    m_bus->connect(kService, kManagerPath, kManager, QStringLiteral("JobRemoved"), this,
                   SLOT(onJobRemoved(QDBusMessage)));
    for (const Job& job : lost) {
        job.told(std::nullopt, QStringLiteral("The bus was lost meanwhile."));
    }
}

void SystemdUnits::call(const QDBusMessage& message, const Told& told,
                        const std::function<void(const QDBusMessage&)>& answered) {
    if (!m_bus) {
        told(std::nullopt, QStringLiteral("There is no bus."));
        return;
    }
    auto* const watcher = new QDBusPendingCallWatcher(m_bus->asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, told, answered] {
        watcher->deleteLater();
        const QDBusMessage reply = QDBusPendingReply<>(*watcher).reply();
        if (reply.type() == QDBusMessage::ErrorMessage) {
            told(std::nullopt, troubleOf(reply));
        } else {
            answered(reply);
        }
    });
}

void SystemdUnits::ask(const QString& unit, const Told& told) {
    call(toManager(QStringLiteral("LoadUnit"), {unit}), told, [this, told](const auto& reply) {
        const QString path = objectOf(reply);
        call(getAll(path, QStringLiteral("org.freedesktop.systemd1.Unit")), told,
             [this, told, path](const QDBusMessage& properties) {
                 const QVariantMap values = propertiesOf(properties);
                 UnitState state;
                 state.installed = values.value(QStringLiteral("LoadState")).toString() ==
                                   QLatin1String("loaded");
                 state.active = values.value(QStringLiteral("ActiveState")).toString();
                 askService(path, state, told);
             });
    });
}

void SystemdUnits::askService(const QString& path, const UnitState& state, const Told& told) {
    // A unit that is no service has none of these.
    const Told plain = [told, state](const auto&, const QString&) { told(state, {}); };
    call(getAll(path, QStringLiteral("org.freedesktop.systemd1.Service")), plain,
         [told, state](const QDBusMessage& properties) {
             const QVariantMap values = propertiesOf(properties);
             UnitState whole = state;
             whole.result = values.value(QStringLiteral("Result")).toString();
             whole.mainProcess = values.value(QStringLiteral("MainPID")).toLongLong();
             whole.exitStatus = values.value(QStringLiteral("ExecMainStatus")).toInt();
             told(whole, {});
         });
}

void SystemdUnits::start(const QString& unit, const Told& told) {
    // The manager sends JobRemoved only to those who asked for signals.
    const Told failed = [this, told](const auto& state, const QString& trouble) {
        --m_starting;
        told(state, trouble);
    };
    ++m_starting;
    call(toManager(QStringLiteral("Subscribe"), {}), failed, [this, unit, told, failed](auto&) {
        call(toManager(QStringLiteral("StartUnit"), {unit, QStringLiteral("replace")}), failed,
             [this, unit, told](const QDBusMessage& reply) {
                 --m_starting;
                 const QString path = objectOf(reply);
                 const Job job{unit, told};
                 if (m_ended.contains(path)) {
                     jobEnded(job, m_ended.take(path));
                 } else {
                     m_jobs.insert(path, job);
                 }
             });
    });
}

void SystemdUnits::onJobRemoved(const QDBusMessage& message) {
    if (message.signature() != QLatin1String("uoss")) {
        return;
    }
    const QString path = message.arguments().at(1).value<QDBusObjectPath>().path();
    const QString result = message.arguments().at(3).toString();
    if (m_jobs.contains(path)) {
        jobEnded(m_jobs.take(path), result);
    } else if (m_starting > 0) {
        m_ended.insert(path, result);
    } else {
        m_ended.clear(); // other people's jobs
    }
}

void SystemdUnits::jobEnded(const Job& job, const QString& result) {
    if (result == QLatin1String("done") || result == QLatin1String("failed")) {
        ask(job.unit, job.told);
        return;
    }
    job.told(std::nullopt,
             QStringLiteral("The service manager did not start %1: %2").arg(job.unit, result));
}

void SystemdUnits::signalMain(const QString& unit, int signal, const Told& told) {
    ask(unit, [this, unit, signal, told](const auto& state, const QString& trouble) {
        if (!state || !state->isActive()) {
            told(state, trouble);
            return;
        }
        call(toManager(QStringLiteral("KillUnit"), {unit, QStringLiteral("main"), signal}), told,
             [told, state](const QDBusMessage&) { told(state, {}); });
    });
}

} // namespace korvale::agent
