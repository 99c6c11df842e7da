#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>

namespace korvale::agent {

/// Asks polkit whether a caller may do something. The subject is the caller's bus name. Main
/// thread; never waits: a person may take any time to answer, and what they were asked is withdrawn
/// when the caller leaves the bus.
class Consent : public QObject {
    Q_OBJECT
public:
    enum class Outcome {
        Granted,
        Refused,
        Unavailable, ///< there is no polkit, or it does not know the action
    };
    using Answer = std::function<void(Outcome)>;
    /// Questions that may be open at once; a further one is refused.
    static constexpr int kMostOpen = 32;

    explicit Consent(QObject* parent = nullptr) : QObject(parent) {}

    /// `answer` is called once, later. `mayAskPerson`: a password may be asked for.
    void ask(const QDBusConnection& connection, const QString& busName, const QString& action,
             bool mayAskPerson, const Answer& answer);

private:
    void withdraw(const QDBusConnection& connection, const QString& question);

    quint64 m_lastQuestion = 0;
    int m_open = 0;
};

} // namespace korvale::agent
