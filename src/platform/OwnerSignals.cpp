#include "platform/OwnerSignals.h"

#include "platform/NameOwner.h"

#include <utility>

namespace korvale {
namespace {

// The bus answers within a moment; whoever floods it meanwhile must not make the program grow.
constexpr std::size_t mostUndecided = 1000;

} // namespace

OwnerSignals::OwnerSignals(const NameOwner& owner, QObject* parent)
    : QObject(parent), m_owner(owner) {
    connect(&owner, &NameOwner::changed, this, &OwnerSignals::decide);
}

bool OwnerSignals::hear(const QDBusConnection& bus, SignalRule rule) {
    m_undecided.clear(); // of an earlier connection
    rule.sender = m_owner.name();
    return hearSignals(bus, rule, this, SLOT(onSignal(QDBusMessage)));
}

void OwnerSignals::onSignal(const QDBusMessage& signal) {
    switch (m_owner.compare(signal.service())) {
    case NameOwner::Is::Owner:
        Q_EMIT received(signal);
        break;
    case NameOwner::Is::NotKnown:
        if (m_undecided.size() < mostUndecided) {
            m_undecided.push_back(signal);
        }
        break;
    case NameOwner::Is::Another:
        break;
    }
}

void OwnerSignals::decide(const QString& before, const QString& now) {
    // They were sent before this change.
    const QString& sender = before.isEmpty() ? now : before;
    for (const QDBusMessage& signal : std::exchange(m_undecided, {})) {
        if (signal.service() == sender) {
            Q_EMIT received(signal);
        }
    }
}

} // namespace korvale
