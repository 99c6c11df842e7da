#include "agent/app/Agent.h"

#include "agent/app/ThreatJson.h"
#include "agent/base/Log.h"
#include "agent/publish/BuildSettings.h"
#include "agent/publish/HostCacheNames.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QSysInfo>
#include <QTimer>

namespace korvale::agent {
namespace {

constexpr std::chrono::seconds kLastWords{3};
/// Everything that the agent keeps in the host cache.
constexpr std::uint32_t kAllLists =
    bit::kFileStates | bit::kScannerState | bit::kAnalysisCount | bit::kProcesses;

QStringList textsOf(const std::vector<std::string>& list) {
    QStringList texts;
    for (const std::string& text : list) {
        texts.append(QString::fromStdString(text));
    }
    return texts;
}

UpdateSettings updateSettings(const Configuration& configuration, const std::string& signatures) {
    const auto text = [](const std::string& bytes) { return QString::fromStdString(bytes); };
    UpdateSettings settings;
    settings.daemonUnit = text(configuration.updaterUnit);
    settings.onceUnit = text(configuration.updaterOnceUnit);
    settings.engineUnits = textsOf(configuration.engineUnits);
    settings.signatures = text(signatures);
    settings.memory = text(configuration.state) + QStringLiteral("/updates");
    settings.statusFolder = text(configuration.updaterStatus);
    return settings;
}

/// Where the engine's signatures lie. Reads the disk.
std::string signatureFolder(const Configuration& configuration) {
    return readClamdConfiguration(configuration.engineConfiguration).databaseFolder;
}

} // namespace

std::unique_ptr<Agent> Agent::make(ConfigurationFile configuration, GuardProcess guard,
                                   std::string& error) {
    const Configuration& current = configuration.current();
    std::unique_ptr<FindingsKeeper> keeper =
        FindingsKeeper::open({current.state, current.quarantine}, error);
    if (!keeper) {
        return nullptr;
    }
    std::string cacheError;
    std::unique_ptr<VerdictCache> cache =
        VerdictCache::open(current.state + "/verdicts.sqlite", cacheError);
    if (!cache) {
        logWarning("Scanning without a memory of clean files: " + cacheError);
    }
    return std::unique_ptr<Agent>(
        new Agent(std::move(configuration), std::move(guard), std::move(keeper), std::move(cache)));
}

Agent::Agent(ConfigurationFile configuration, GuardProcess guard,
             std::unique_ptr<FindingsKeeper> keeper, std::unique_ptr<VerdictCache> cache)
    : m_configuration(std::move(configuration)),
      m_keeper(std::move(keeper)),
      m_cache(std::move(cache)),
      m_engines(m_configuration.current()),
      m_engineFiles(
          engineFilesOf(readClamdConfiguration(m_configuration.current().engineConfiguration))),
      m_updates(
          m_units,
          updateSettings(m_configuration.current(), signatureFolder(m_configuration.current())),
          &QDateTime::currentSecsSinceEpoch),
      m_engineWatch(m_configuration.current().engineUnits,
                    [this](const std::string& unit) { startUnit(unit); }),
      m_publishing(QString::fromStdString(m_configuration.current().hostCache)),
      m_scanner(m_engines.both, m_cache.get()),
      m_engineMark(m_configuration.current().state + "/engine-answered"),
      m_watch(std::move(guard), m_engines.both, m_cache.get()) {
    m_publishing.lists().setEventLimit(kMostEvents);
    m_threats.fill(m_keeper->known());
    m_publishing.lists().setScanning(false);
    m_publishing.lists().markChanged(kAllLists);
    setProblem(QStringLiteral("store"), m_keeper->trouble());
    join();
    configure(m_updates.settings().signatures.toStdString());
}

Agent::~Agent() {
    m_keeper.reset(); // what its thread does may need the others
}

void Agent::join() {
    connect(&m_states, &StateSignals::notification, &m_bus, &AgentBus::post);
    connect(&m_publishing, &Publishing::notification, &m_bus, &AgentBus::post);
    connect(&m_scanReport, &ScanReport::notification, &m_bus, &AgentBus::post);
    joinFiles();
    joinWatch();
    connect(&m_bus, &AgentBus::nameOwned, this, [this] {
        logInfo("On the bus.");
        m_units.use(AgentBus::connection());
        m_sleep.use(AgentBus::connection());
        m_devices.use(AgentBus::connection());
        m_states.start();
    });
    connect(&m_bus, &AgentBus::busLost, this, [this] {
        logWarning("The bus is gone.");
        m_gatekeeper.forgetCallers();
    });
    connect(&m_bus, &AgentBus::problem, this,
            [](const QString& sentence) { logWarning(sentence.toStdString()); });
    connect(&m_enginePoll, &EnginePoll::answered, this, &Agent::engineAnswered);
    m_engines.clamd.onLost([this] {
        QMetaObject::invokeMethod(&m_enginePoll, &EnginePoll::ask, Qt::QueuedConnection);
    });
    connect(&m_updates, &Updates::signaturesChanged, &m_enginePoll, &EnginePoll::ask);
    connect(&m_scanner, &Scanner::ended, this, [this](const ScanSummary& summary) {
        if (!summary.withEngine || summary.unanswered > 0) {
            m_enginePoll.ask(); // sooner than it would be by itself
        }
    });
}

void Agent::joinFiles() {
    connect(&m_publishing, &Publishing::problem, this, [this](const QString& sentence) {
        m_filesFail = true;
        setProblem(QStringLiteral("host cache"), sentence);
        tellWithoutFiles();
    });
    connect(&m_publishing, &Publishing::notification, this, [this](const QString& name) {
        if (name == QLatin1String("com.korvale.timer.aggregated_messages")) {
            m_unwritten.clear();
        }
    });
    connect(&m_publishing, &Publishing::recovered, this, [this] {
        m_filesFail = false;
        setProblem(QStringLiteral("host cache"), {});
    });
    connect(&m_scanner, &Scanner::found, this, &Agent::found);
    connect(m_keeper.get(), &FindingsKeeper::shown, this, &Agent::shown);
    connect(m_keeper.get(), &FindingsKeeper::postponed, &m_secondLook, &SecondLook::keep);
    connect(&m_secondLook, &SecondLook::foundAgain, this, &Agent::found);
    connect(&m_secondLook, &SecondLook::gone, this, [this](std::int64_t finding) {
        m_keeper->change(
            [finding](Store& store, Vault*) {
                const auto known = store.finding(finding);
                if (known && known->state == FindingState::Detected) {
                    store.setState(finding, FindingState::Deleted);
                }
                return QJsonObject();
            },
            [](const QJsonObject&) {});
    });
    connect(m_keeper.get(), &FindingsKeeper::waiting, this, [this](int findings) {
        setProblem(QStringLiteral("store room"),
                   findings == 0
                       ? QString()
                       : QStringLiteral("%1 findings wait for room on the disk.").arg(findings));
    });
}

void Agent::configure(const std::string& signatures) {
    korvale::agent::setLogLevel(m_configuration.current().logLevel);
    m_scans.configure(m_configuration.current());
    configureWatch();
    m_updates.setSettings(updateSettings(m_configuration.current(), signatures));
    m_states.setConfigurationValid(m_configuration.problem().isEmpty());
    setProblem(QStringLiteral("configuration"), m_configuration.problem());
}

void Agent::start() {
    if (!m_problems.isEmpty()) {
        tellStatusLine(); // nobody listened yet
    }
    m_publishing.changed();
    m_bus.takeName();
    m_enginePoll.ask();
}

void Agent::stop() {
    if (std::exchange(m_stopping, true)) {
        return;
    }
    m_watch.end();
    m_scanner.stopAll();
    m_publishing.lists().setScanning(false);
    m_publishing.changed();
    m_states.stop();
    // The last files are worth a moment, not more: what was found is in the store.
    QTimer::singleShot(kLastWords, this, &Agent::stopped);
    connect(&m_publishing, &Publishing::idle, this, &Agent::stopped);
}

void Agent::reload(const Done& done) {
    m_reload.ask([this, done](const Reload::Read& read) {
        const bool good = m_configuration.take(read.configuration);
        configure(good ? read.signatures : m_updates.settings().signatures.toStdString());
        logInfo(good ? "The configuration was read again."
                     : "The configuration in use before stays in use.");
        done(m_configuration.problem());
    });
}

void Agent::found(const FoundFile& file) {
    const Configuration& configuration = m_configuration.current();
    const bool take = file.judgement.verdict == Verdict::Unsafe ? configuration.quarantineUnsafe
                                                                : configuration.quarantineAbnormal;
    logWarning("Found " + printable(file.judgement.name) + " in " + printable(file.path));
    m_keeper->found(file, take);
}

void Agent::shown(const Finding& finding, const QString& detail) {
    if (!detail.isEmpty()) {
        logWarning(printable(finding.path) + ": " + detail.toStdString());
    }
    m_threats.show(finding);
    if (finding.state != FindingState::Deleted && m_unwritten.size() < kMostUnwritten) {
        m_unwritten.append(QStringLiteral("%1: %2").arg(pathText(finding.path),
                                                        QString::fromStdString(finding.virusName)));
    }
    m_publishing.changed();
    if (m_filesFail) {
        tellWithoutFiles();
    }
}

void Agent::tellWithoutFiles() {
    for (const QString& text : std::exchange(m_unwritten, {})) {
        const QJsonObject message{
            {QStringLiteral("CMD_"), QStringLiteral("SondarNotificationMessage")},
            {QStringLiteral("VALU"), text}};
        m_bus.sendMessage(QJsonDocument(message).toJson(QJsonDocument::Compact));
    }
}

void Agent::engineAnswered(const EngineState& state) {
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    m_engineState = state;
    m_engineWatch.answered(state, std::chrono::steady_clock::now());
    const bool fresh = isFresh(state, now);
    QString problem;
    if (!state.believed) {
        problem = QStringLiteral("The scan engine is not believed: only the built-in one looks. ") +
                  QString::fromStdString(state.trouble);
    } else if (!state.reachable) {
        problem = QStringLiteral("The scan engine does not answer: only the built-in one looks. ") +
                  QString::fromStdString(state.trouble);
    } else if (!fresh) {
        problem = QStringLiteral("The engine's signatures are older than seven days.");
    }
    setProblem(QStringLiteral("engine"), problem.trimmed());
    watchWithEngine(state);
    m_states.setEngineFresh(fresh);
    if (!std::exchange(m_engineAsked, true)) {
        tellStatusLine(); // before, nobody could say that all is well
    }
}

void Agent::startUnit(const std::string& unit) {
    m_units.start(QString::fromStdString(unit),
                  [this, unit](const std::optional<UnitState>& state, const QString& trouble) {
                      if (!state) {
                          logWarning(unit + " is not started: " + trouble.toStdString());
                      } else if (state->isActive()) {
                          m_enginePoll.ask();
                      }
                  });
}

void Agent::setProblem(const QString& what, const QString& sentence) {
    if (m_problems.value(what) == sentence) {
        return;
    }
    if (sentence.isEmpty()) {
        m_problems.remove(what);
        logInfo("Well again: " + what.toStdString());
    } else {
        m_problems.insert(what, sentence);
        logWarning(sentence.toStdString());
    }
    tellStatusLine();
}

void Agent::tellStatusLine() {
    Q_EMIT statusLine(m_problems.isEmpty() ? QStringLiteral("Protecting.")
                                           : m_problems.values().join(u' '));
}

AgentFacts Agent::facts() const {
    const Configuration& configuration = m_configuration.current();
    AgentFacts facts;
    facts.deviceName = configuration.deviceName.empty()
                           ? QSysInfo::machineHostName()
                           : QString::fromStdString(configuration.deviceName);
    facts.policyName = QString::fromStdString(configuration.policyName);
    // Not "Local Policy": programs take every connection for lost then.
    facts.policyMode = QStringLiteral("Configuration file");
    facts.policyTime = m_configuration.time();
    facts.version = build::kVersion.toString();
    facts.notifications = configuration.policyNotifications;
    facts.driverConnected = m_states.driverConnected();
    facts.logLevel = logLevel();
    return facts;
}

void Agent::startFolderScan(const Caller& caller, const QString& folder, const Done& done) {
    m_scans.startFolder(caller, folder.toStdString(),
                        [done](std::uint64_t /*id*/, const QString& refusal) { done(refusal); });
}

void Agent::startBackgroundScan(const Caller& caller, const Done& done) {
    m_scans.startBackground(
        caller, [done](std::uint64_t /*id*/, const QString& refusal) { done(refusal); });
}

bool Agent::ownsEveryScan(std::uint32_t uid) const {
    return m_scans.allOf(uid);
}

void Agent::stopScans(const Done& done) {
    done(m_scans.stopAll() ? QString() : QStringLiteral("No scan is running."));
}

void Agent::checkUpdates(const Done& done) {
    m_updates.check(done);
}

void Agent::readConfiguration(const Done& done) {
    reload(done);
}

void Agent::setLogLevel(LogLevel level) {
    korvale::agent::setLogLevel(level);
    logInfo("The log level is " + std::to_string(static_cast<int>(level)) + ".");
}

} // namespace korvale::agent
