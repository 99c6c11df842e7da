#pragma once

#include "agent/app/UpdaterFolder.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace korvale::agent {

class SystemdUnits;
class UpdaterStatusWriter;
struct UnitState;

struct UpdateSettings {
    QString daemonUnit;      ///< the updater that runs all the time
    QString onceUnit;        ///< the one that works and ends
    QStringList engineUnits; ///< started, in this order, once signatures are there
    QString signatures;      ///< folder
    QString memory;          ///< file that keeps over a restart when was asked last
    QString statusFolder;    ///< of the updater status files
};

/// Asks the signature updater for new signatures, through the service manager: a running one is
/// woken, else one is run once. Not more than once an hour, as the download service locks machines
/// out that ask more often. What comes of it is told in an updater status file. Main thread; the
/// disk is left to a thread of its own.
class Updates : public QObject {
    Q_OBJECT
public:
    /// Called once, later; empty: the updater will be asked, or is being asked. Else why not.
    using Done = std::function<void(const QString& refusal)>;
    using Clock = std::function<std::int64_t()>; ///< wall clock, seconds since 1970

    static constexpr std::chrono::seconds kBetweenChecks{3600};
    /// So long is looked for what a woken updater brings, or waited for one that runs once.
    static constexpr std::chrono::seconds kWatchAfterWaking{180};
    static constexpr std::chrono::minutes kLongestRun{30};

    struct Facts {
        std::int64_t asked = 0;     ///< seconds since 1970; 0: never
        std::int64_t waitUntil = 0; ///< as above; 0: no reason to wait
        QString outcome;            ///< the last sentence
    };

    /// `units` must outlive this object.
    Updates(SystemdUnits& units, UpdateSettings settings, Clock clock, QObject* parent = nullptr);
    ~Updates() override;

    void setSettings(const UpdateSettings& settings);
    [[nodiscard]] const UpdateSettings& settings() const { return m_settings; }
    void check(const Done& done);
    /// Starts the engine's units that are installed and do not run, when signatures are there:
    /// without them they were skipped, and nobody else starts them later.
    void startEngine();
    [[nodiscard]] const Facts& facts() const { return m_facts; }
    /// For tests: in place of kWatchAfterWaking.
    void setWatchTime(std::chrono::milliseconds time) { m_watchTime = time; }

Q_SIGNALS:
    /// Something is to be told; it is in a status file soon.
    void told(const QString& sentence);
    /// The updater has brought new signatures.
    void signaturesChanged();

private:
    struct Look { // what the disk says before and after
        UpdaterFolder folder;
        std::int64_t asked = 0;
    };

    void onDisk(const std::function<void()>& work, const std::function<void()>& then);
    void look(const std::function<void(const Look&)>& then);
    void decide(const Look& look, const Done& done);
    [[nodiscard]] std::int64_t nextAllowed(const Look& look) const;
    void wake();
    void runOnce();
    void watch();
    void watchAgain();
    void ended(const UnitState& state);
    void compare(const UpdaterFolder& now, bool wasWoken);
    void finish(const QString& sentence);
    void tell(const QString& sentence);

    SystemdUnits& m_units;
    UpdateSettings m_settings;
    Clock m_clock;
    QThreadPool m_disk; ///< one thread, so that status files keep their order
    std::shared_ptr<UpdaterStatusWriter> m_writer; ///< used on that thread only
    QTimer m_limit;
    QTimer m_lookAgain;
    QElapsedTimer m_sinceAsked;
    UpdaterFolder m_before;
    Facts m_facts;
    std::chrono::milliseconds m_watchTime{kWatchAfterWaking};
    bool m_busy = false;
    bool m_watching = false;
};

} // namespace korvale::agent
