#pragma once

#include "agent/app/AgentStatus.h"
#include "agent/app/AgentTasks.h"
#include "agent/app/ConfigurationFile.h"
#include "agent/app/ControlRequests.h"
#include "agent/app/Devices.h"
#include "agent/app/EngineMark.h"
#include "agent/app/EnginePoll.h"
#include "agent/app/Engines.h"
#include "agent/app/Exploits.h"
#include "agent/app/FindingsKeeper.h"
#include "agent/app/Gatekeeper.h"
#include "agent/app/LastVerdict.h"
#include "agent/app/Reload.h"
#include "agent/app/Requests.h"
#include "agent/app/ScanReport.h"
#include "agent/app/Scans.h"
#include "agent/app/SecondLook.h"
#include "agent/app/StateSignals.h"
#include "agent/app/ThreatLists.h"
#include "agent/app/Updates.h"
#include "agent/bus/AgentBus.h"
#include "agent/bus/AgentObject.h"
#include "agent/bus/ControlPort.h"
#include "agent/bus/RequestPort.h"
#include "agent/bus/SleepWatch.h"
#include "agent/bus/SystemdUnits.h"
#include "agent/engine/EngineWatch.h"
#include "agent/publish/Publishing.h"
#include "agent/scan/Scanner.h"
#include "agent/store/VerdictCache.h"
#include "agent/watch/Watch.h"

#include <QMap>
#include <QTimer>

#include <chrono>

namespace korvale::agent {

/// The agent: owns its parts, creates them in the order in which they need each other, and joins
/// them. Main thread.
class Agent : public QObject, private AgentTasks, private AgentStatus {
    Q_OBJECT
public:
    /// Events that the list of events holds at most.
    static constexpr qsizetype kMostEvents = 2000;
    /// Threats that are told one by one while the host cache cannot be written.
    static constexpr qsizetype kMostUnwritten = 20;

    /// The same program is not told of again within this many milliseconds.
    static constexpr qint64 kRefusedPeriod = 5000;
    /// The watch may take so long to begin before the driver counts as missing: programs keep a red
    /// shield until somebody looks.
    static constexpr std::chrono::seconds kWatchSetUpTime{2};

    /// Null and a sentence in `error` when it cannot do its work at all: without a place to write
    /// findings down.
    static std::unique_ptr<Agent> make(ConfigurationFile configuration, GuardProcess guard,
                                       std::string& error);
    ~Agent() override;

    /// Goes on the bus, or tries to until there is one.
    void start();
    /// Says good-bye, stops scans and writes what is not written. `stopped` follows, a few seconds
    /// later at most.
    void stop();
    /// Reads the configuration and the lists of digests again. `done` is called once, later, with
    /// an empty text or what is wrong with the configuration.
    void reload(const Done& done);
    /// See Watch.
    void childChanged() { m_watch.childChanged(); }
    void checkGuard() { m_watch.checkGuard(); }

Q_SIGNALS:
    void stopped();
    /// One line for the service manager.
    void statusLine(const QString& line);

private:
    Agent(ConfigurationFile configuration, GuardProcess guard,
          std::unique_ptr<FindingsKeeper> keeper, std::unique_ptr<VerdictCache> cache);
    void join();
    void joinFiles();
    void configure(const std::string& signatures);
    // AgentWatch.cpp
    void joinWatch();
    void watchChanged();
    void configureWatch();
    void watchWithEngine(const EngineState& state);
    void exemptEngine(const EngineState& state);
    void refused(const std::string& path);
    void found(const FoundFile& file);
    void shown(const Finding& finding, const QString& detail);
    void engineAnswered(const EngineState& state);
    void startUnit(const std::string& unit);
    void setProblem(const QString& what, const QString& sentence);
    void tellStatusLine();
    void tellWithoutFiles();

    // AgentTasks
    [[nodiscard]] AgentFacts facts() const override;
    void greet() override { m_states.greet(); }
    void startFolderScan(const Caller& caller, const QString& folder, const Done& done) override;
    void startBackgroundScan(const Caller& caller, const Done& done) override;
    [[nodiscard]] bool ownsEveryScan(std::uint32_t uid) const override;
    void stopScans(const Done& done) override;
    void checkUpdates(const Done& done) override;
    void readConfiguration(const Done& done) override;
    void setLogLevel(LogLevel level) override;

    // AgentStatus
    [[nodiscard]] QJsonObject status() const override;
    [[nodiscard]] QJsonObject policy() const override;
    [[nodiscard]] QJsonObject devices() const override;
    void why(const std::string& path, const Answer& answer) override;

    ConfigurationFile m_configuration;
    std::unique_ptr<FindingsKeeper> m_keeper;
    std::unique_ptr<VerdictCache> m_cache; ///< null when it cannot be opened
    Engines m_engines;
    const EngineFiles m_engineFiles; ///< as they were at the start
    SystemdUnits m_units;
    Updates m_updates;
    EngineWatch m_engineWatch;
    EnginePoll m_enginePoll{m_engines.both};
    Reload m_reload{m_configuration.file(), m_engines.builtIn};
    SecondLook m_secondLook{m_engines.both};
    LastVerdict m_lastVerdict{*m_keeper, m_cache.get(), m_engines.both};
    EngineState m_engineState;
    Publishing m_publishing;
    ThreatLists m_threats{m_publishing.lists()};
    StateSignals m_states;
    Scanner m_scanner;
    Scans m_scans{m_scanner};
    ScanReport m_scanReport{m_scanner, m_publishing};
    EngineMark m_engineMark;
    Watch m_watch;
    SleepWatch m_sleep;
    Devices m_devices{m_publishing};
    Exploits m_exploits{m_publishing};
    Gatekeeper m_gatekeeper;
    Requests m_requests{m_gatekeeper, *this};
    RequestPort m_requestPort{m_requests};
    ControlRequests m_control{m_gatekeeper, *this, *m_keeper, m_scans};
    ControlPort m_controlPort{m_control};
    AgentObject m_object{{&m_requestPort, &m_controlPort}};
    AgentBus m_bus{m_object, std::chrono::seconds(2)};
    QMap<QString, QString> m_problems; ///< by what they are about
    bool m_filesFail = false;          ///< the host cache cannot be written
    QStringList m_unwritten;           ///< threats shown, and not yet in a written file
    QElapsedTimer m_sinceEngineStart;  ///< since its units were started last
    QString m_refused;                 ///< the program that was told of last
    QElapsedTimer m_sinceRefused;
    QTimer m_watchSetUp;
    bool m_engineAsked = false;
    bool m_stopping = false;
};

} // namespace korvale::agent
