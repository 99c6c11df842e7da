#pragma once

#include "agent/bus/Caller.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>

#include <functional>
#include <optional>

namespace korvale::agent {

/// Asks the bus whose connection a name is. Names of connections are never used twice on one bus,
/// so that an answer stays true. Main thread; never waits.
class CallerLookup : public QObject {
    Q_OBJECT
public:
    using Answer = std::function<void(const std::optional<Caller>&)>;

    explicit CallerLookup(QObject* parent = nullptr) : QObject(parent) {}

    /// `answer` is called once, now or later: without a value when the caller is gone, or when the
    /// bus does not name the caller's user and groups. Not after this object is gone.
    void ask(const QDBusConnection& connection, const QString& busName, const Answer& answer);
    /// To be called when the bus was lost: a new one begins to count anew.
    void forget() { m_known.clear(); }

private:
    static constexpr qsizetype kMostKnown = 256;

    QHash<QString, Caller> m_known;
};

} // namespace korvale::agent
