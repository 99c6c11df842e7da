#include "agent/app/Agent.h"
#include "agent/app/WatchOptionsOf.h"
#include "agent/base/Log.h"

namespace korvale::agent {

void Agent::joinWatch() {
    const auto learn = [this](const Finding& finding) {
        // One copy that is gone says nothing of the others.
        if (finding.state != FindingState::Deleted) {
            m_watch.setAllowed(finding.id, finding.state == FindingState::Waived);
        }
    };
    for (const Finding& finding : m_keeper->known()) {
        learn(finding);
    }
    connect(m_keeper.get(), &FindingsKeeper::shown, this, learn);
    connect(&m_sleep, &SleepWatch::sleeping, &m_watch, &Watch::sleep);
    connect(&m_devices, &Devices::notification, &m_bus, &AgentBus::post);
    connect(&m_watch, &Watch::found, this, &Agent::found);
    connect(&m_watch, &Watch::refused, this, &Agent::refused);
    connect(&m_watch, &Watch::changed, this, &Agent::watchChanged);
    m_watchSetUp.setSingleShot(true);
    m_watchSetUp.setInterval(kWatchSetUpTime);
    connect(&m_watchSetUp, &QTimer::timeout, this,
            [this] { m_states.setDriverConnected(m_watch.isComplete()); });
}

void Agent::configureWatch() {
    const Configuration& configuration = m_configuration.current();
    // A machine whose engine never worked must not be locked out of its own programs.
    const bool check = configuration.blockExecute && m_engineMark.isSet();
    m_watch.configure(watchOptionsOf(configuration, m_engineFiles, check));
    m_exploits.listen(configuration.tellExploits);
}

void Agent::watchChanged() {
    setProblem(QStringLiteral("watch"), m_watch.problem());
    const bool complete = m_watch.isComplete();
    if (complete || !m_watch.problem().isEmpty()) {
        m_watchSetUp.stop();
        m_states.setDriverConnected(complete && m_watch.problem().isEmpty());
    } else if (!m_watchSetUp.isActive()) {
        m_watchSetUp.start(); // the guard is asked for each file system in turn
    }
}

void Agent::watchWithEngine(const EngineState& state) {
    if (state.reachable) {
        exemptEngine(state);
        if (m_engineMark.set()) {
            configureWatch();
        }
    }
    m_watch.engineAnswered(state);
}

void Agent::exemptEngine(const EngineState& state) {
    if (state.listener != 1) {
        m_watch.exempt({static_cast<pid_t>(state.listener)});
        return;
    }
    for (const std::string& unit : m_configuration.current().engineUnits) {
        if (unit.ends_with(".service")) {
            m_units.ask(QString::fromStdString(unit), [this](const auto& known, const QString&) {
                if (known && known->mainProcess > 0) {
                    m_watch.exempt({static_cast<pid_t>(known->mainProcess)});
                }
            });
        }
    }
}

void Agent::refused(const std::string& path) {
    logWarning("Not run: " + printable(path));
    // A program that is tried again and again is told now and then.
    const QString text = pathText(path);
    if (m_refused == text && m_sinceRefused.isValid() &&
        !m_sinceRefused.hasExpired(kRefusedPeriod)) {
        return;
    }
    m_refused = text;
    m_sinceRefused.start();
    m_publishing.tell(QStringLiteral("exe_blocked.log"), {{QStringLiteral("BlockedExePath"), text}},
                      QStringLiteral("com.korvale.exe.blocked"));
}

} // namespace korvale::agent
