#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QHash>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace korvale::agent {

/// What the service manager says of a unit.
struct UnitState {
    bool installed = false; ///< its file is there and could be read
    QString active;         ///< "active", "inactive", "failed", "activating", …
    QString result;         ///< of a service that ended: "success", "exit-code", …; else empty
    qint64 mainProcess = 0; ///< of a service that runs; 0: none
    int exitStatus = 0;     ///< of its main process, where `result` says that it ended

    [[nodiscard]] bool isActive() const {
        return active == QLatin1String("active") || active == QLatin1String("activating") ||
               active == QLatin1String("reloading");
    }
};

/// Asks the service manager for units over the bus. Main thread; never waits.
class SystemdUnits : public QObject {
    Q_OBJECT
public:
    /// Without a state `trouble` says why, a sentence; called once, later. Not called any more
    /// after this object is gone.
    using Told = std::function<void(const std::optional<UnitState>& state, const QString& trouble)>;

    explicit SystemdUnits(QObject* parent = nullptr) : QObject(parent) {}

    /// The bus to ask on from now on (again after it was lost): what is still under way is told as
    /// trouble.
    void use(const QDBusConnection& bus);

    void ask(const QString& unit, const Told& told);
    /// Starts it and tells its state once that is done, for a unit that works and ends (a oneshot)
    /// when it has ended. That it was done is not success: `result` is.
    void start(const QString& unit, const Told& told);
    /// Sends a signal to the main process of a running unit; its state then, as it was before.
    void signalMain(const QString& unit, int signal, const Told& told);

private Q_SLOTS:
    void onJobRemoved(const QDBusMessage& message);

private:
    struct Job {
        QString unit;
        Told told;
    };

    void call(const QDBusMessage& message, const Told& told,
              const std::function<void(const QDBusMessage&)>& answered);
    void askService(const QString& path, const UnitState& state, const Told& told);
    void jobEnded(const Job& job, const QString& result);

    std::optional<QDBusConnection> m_bus;
    QHash<QString, Job> m_jobs;      ///< by the path of the job
    QHash<QString, QString> m_ended; ///< results of jobs that ended before we knew their path
    int m_starting = 0;              ///< jobs whose path is not known yet
};

} // namespace korvale::agent
