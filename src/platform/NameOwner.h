#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>

namespace korvale {

/// Who owns one well-known name on a bus: its unique name, nobody, or not known yet. Follows every
/// change; what anybody but the bus itself says about it is not heard. Lives in the thread that
/// made it; never waits.
class NameOwner final : public QObject {
    Q_OBJECT
public:
    /// What a unique name is to the followed name. NotKnown is neither yes nor no: whoever asks
    /// keeps what is to be decided until changed().
    enum class Is { Owner, Another, NotKnown };

    explicit NameOwner(QString name, QObject* parent = nullptr);

    /// Follows the name on `bus` from now on, and asks who has it: not known until the bus has
    /// answered. Signals that were asked for before are heard for certain once it is known. Again
    /// for each new connection; one that is not connected stays at "not known".
    void follow(const QDBusConnection& bus);
    /// The same without the question, for whom changes are enough: not known until the name changes
    /// hands for the first time.
    void followChanges(const QDBusConnection& bus);
    /// The bus has gone: not known.
    void forget();

    [[nodiscard]] bool isKnown() const { return m_state == State::Known; }
    [[nodiscard]] const QString& name() const { return m_name; }
    /// The owner's unique name; empty: nobody, or not known.
    [[nodiscard]] const QString& owner() const { return m_owner; }
    [[nodiscard]] Is compare(const QString& uniqueName) const;

Q_SIGNALS:
    /// It has become known, also that it is nobody, or has changed. `before` is the owner that has
    /// lost the name, empty when there was none or when nothing was known.
    void changed(const QString& before, const QString& now);

private Q_SLOTS:
    void onNameOwnerChanged(const QDBusMessage& message);

private:
    enum class State { Idle, NotKnown, Known };

    void ask();
    void set(const QString& before, const QString& now);

    QString m_name;
    QDBusConnection m_bus{QString()};
    QString m_owner;
    State m_state = State::Idle;
    int m_question = 0; ///< number of the last one; the answers to earlier ones are stale
};

} // namespace korvale
