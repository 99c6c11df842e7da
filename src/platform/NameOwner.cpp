#include "platform/NameOwner.h"

#include "platform/BusCalls.h"
#include "platform/BusSignals.h"

#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace korvale {

NameOwner::NameOwner(QString name, QObject* parent) : QObject(parent), m_name(std::move(name)) {}

void NameOwner::follow(const QDBusConnection& bus) {
    followChanges(bus);
    if (m_bus.isConnected()) {
        ask();
    }
}

void NameOwner::followChanges(const QDBusConnection& bus) {
    forget();
    m_bus = bus;
    if (!m_bus.isConnected()) {
        return;
    }
    const QDBusMessage call = busCall("NameOwnerChanged");
    hearSignals(m_bus, {call.path(), call.interface(), call.member(), m_name, call.service()}, this,
                SLOT(onNameOwnerChanged(QDBusMessage)));
    m_state = State::NotKnown;
}

void NameOwner::forget() {
    m_bus = QDBusConnection(QString());
    m_owner.clear();
    m_state = State::Idle;
    ++m_question;
}

NameOwner::Is NameOwner::compare(const QString& uniqueName) const {
    if (!isKnown()) {
        return Is::NotKnown;
    }
    return !m_owner.isEmpty() && uniqueName == m_owner ? Is::Owner : Is::Another;
}

void NameOwner::ask() {
    QDBusMessage question = busCall("GetNameOwner");
    question << m_name;
    const QDBusPendingCall call = m_bus.asyncCall(question, noTimeout);
    if (hasFailedAtOnce(call)) {
        return; // the bus has gone
    }
    auto* answer = new QDBusPendingCallWatcher(call, this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, answer, number = ++m_question] {
                answer->deleteLater();
                // What the bus announced in the meantime is newer, whichever is delivered first.
                if (number != m_question || m_state != State::NotKnown || !m_bus.isConnected()) {
                    return;
                }
                if (answer->reply().service() != busName) {
                    ask(); // somebody has guessed the question's number, and it is used up
                    return;
                }
                set({}, answer->isError() ? QString()
                                          : answer->reply().arguments().value(0).toString());
            });
}

void NameOwner::onNameOwnerChanged(const QDBusMessage& message) {
    const QVariantList arguments = message.arguments(); // name, before, now
    if (m_state == State::Idle || arguments.size() != 3 || arguments.at(0) != m_name ||
        message.service() != busName) {
        return;
    }
    set(arguments.at(1).toString(), arguments.at(2).toString());
}

void NameOwner::set(const QString& before, const QString& now) {
    m_owner = now;
    m_state = State::Known;
    Q_EMIT changed(before, now);
}

} // namespace korvale
