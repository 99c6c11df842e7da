#pragma once

#include "platform/BusSignals.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <vector>

namespace korvale {

class NameOwner;

/// Hears certain signals of the owner of one name, and of nobody else, in the order sent. What
/// comes while the owner is not known yet waits until it is. Lives in the thread of the NameOwner.
class OwnerSignals final : public QObject {
    Q_OBJECT
public:
    /// `owner` outlives the object.
    explicit OwnerSignals(const NameOwner& owner, QObject* parent = nullptr);

    /// From now on, on this connection; before `owner` follows its name there, so that nothing is
    /// missed once the owner is known. False when they cannot be heard.
    bool hear(const QDBusConnection& bus, SignalRule rule);

Q_SIGNALS:
    void received(const QDBusMessage& signal);

private Q_SLOTS:
    void onSignal(const QDBusMessage& signal);

private:
    void decide(const QString& before, const QString& now);

    const NameOwner& m_owner;
    std::vector<QDBusMessage> m_undecided; ///< of a moment at the start of a connection
};

} // namespace korvale
