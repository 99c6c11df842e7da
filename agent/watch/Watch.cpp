#include "agent/watch/Watch.h"

#include "agent/base/Log.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace korvale::agent {

/// Hands over to the main thread.
class Watch::Starts final : public StartListener {
public:
    explicit Starts(Watch& watch) : m_watch(watch), m_post(watch.m_post) {}

    void refused(const std::string& path) override {
        (*m_post)([watch = &m_watch, path] { Q_EMIT watch->refused(path); });
    }
    void found(FoundFile file) override {
        const auto held = std::make_shared<FoundFile>(std::move(file));
        (*m_post)([watch = &m_watch, held] { Q_EMIT watch->found(*held); });
    }
    void unjudged(const std::string& path) override {
        if (!path.empty()) {
            m_watch.m_files->add(path, false);
        }
    }
    void marked(std::uint64_t fileSystem, int error) override {
        (*m_post)([watch = &m_watch, fileSystem, error] { watch->marked(fileSystem, error); });
    }
    void ready(int error) override {
        (*m_post)([watch = &m_watch, error] { watch->guardReady(error); });
    }

private:
    Watch& m_watch;
    std::shared_ptr<MainThreadPost> m_post;
};

Watch::Watch(GuardProcess guard, Engine& engine, VerdictCache* cache, QObject* parent)
    : QObject(parent),
      m_guard(std::move(guard)),
      m_guardTrouble(m_guard.trouble()),
      m_post(std::make_shared<MainThreadPost>(*this)),
      m_memory(cache, engine),
      m_options(std::make_shared<WatchOptions>()),
      m_starts(std::make_unique<Starts>(*this)),
      m_files(std::make_unique<WrittenFiles>(
          engine, m_memory, m_places,
          [starts = m_starts.get()](FoundFile file) { starts->found(std::move(file)); })) {
    if (m_guard.isRunning()) {
        m_judge = std::make_unique<StartJudge>(m_guard.sharedSocket(), engine, m_memory, m_places,
                                               *m_starts);
    }
    for (QTimer* const timer : {&m_restart, &m_tooLate}) {
        timer->setSingleShot(true);
    }
    connect(&m_restart, &QTimer::timeout, this, &Watch::restartGuard);
    connect(&m_tooLate, &QTimer::timeout, this, [this] {
        logWarning("The new guard does not begin its work, and is ended.");
        m_guard.end();
        guardEnded();
    });
    m_reader = std::make_unique<EventReader>(
        m_places, *m_files, m_judge.get(), [this, post = m_post](std::vector<WatchedSystem> found) {
            (*post)([this, found = std::move(found)] {
                m_systems = found;
                Q_EMIT changed();
            });
        });
}

Watch::~Watch() {
    m_post->targetIsGone();
    // Nothing may wait for us while the threads come to their ends.
    m_guard.end();
}

void Watch::configure(const WatchOptions& options) {
    m_options = std::make_shared<const WatchOptions>(options);
    m_files->configure(m_options);
    if (m_judge) {
        m_asked.clear();
        m_judge->release();
        m_judge->forget();
        m_judge->configure(m_options);
    }
    m_reader->configure(m_options);
    Q_EMIT changed();
}

void Watch::engineAnswered(const EngineState& state) {
    if (state.signatureKey != m_signatures) {
        m_signatures = state.signatureKey;
        m_memory.useCurrentSignatures();
        if (m_judge) {
            m_judge->forget();
        }
    }
    m_files->doubt(m_memory.takeDoubted());
    if (state.doubts != m_doubts && m_judge) {
        m_judge->forget(); // programs that were allowed because of it
    }
    m_doubts = state.doubts;
    if (state.reachable && (!m_reachable || m_files->unanswered() > 0)) {
        m_files->askAgain();
    }
    m_reachable = state.reachable;
}

void Watch::exempt(const std::vector<pid_t>& processes) {
    m_reader->exempt(processes);
    if (m_judge) {
        std::vector<pid_t> all = processes;
        all.push_back(::getpid());
        m_judge->exempt(all);
    }
}

void Watch::setAllowed(const std::string& digest, bool allowed) {
    if (m_judge) {
        m_judge->setAllowed(digest, allowed);
    }
}

void Watch::sleep(bool asleep) {
    if (m_judge) {
        m_judge->sleep(asleep);
    }
}

void Watch::childChanged() {
    if (!m_guard.isRunning()) {
        return;
    }
    switch (m_guard.look()) {
    case GuardProcess::State::Runs:
        break;
    case GuardProcess::State::Stopped:
        logWarning("The guard was stopped, and is ended: no program may wait for it.");
        break;
    case GuardProcess::State::Ended:
        guardEnded();
        break;
    }
}

void Watch::end() {
    m_ending = true;
    m_restart.stop();
    m_tooLate.stop();
    m_guard.end();
}

void Watch::guardEnded() {
    if (m_ending) {
        return; // the service manager ends both
    }
    m_guardLost = true;
    m_asked.clear();
    m_tooLate.stop();
    const std::chrono::milliseconds wait = m_backOff.next();
    logWarning("The guard has ended; it is started again in " +
               std::to_string(wait.count() / 1000) + " s.");
    m_restart.start(wait);
    Q_EMIT changed();
}

void Watch::restartGuard() {
    if (!m_guard.restart(m_ping)) {
        logWarning(std::string("The guard cannot be started: ") + std::strerror(m_guard.trouble()));
        guardEnded();
        return;
    }
    m_tooLate.start(readyTime);
    m_judge->use(m_guard.sharedSocket());
}

void Watch::guardReady(int error) {
    if (!m_guard.isRunning()) {
        return; // by now it has ended
    }
    if (error != 0) {
        logWarning(std::string("The guard cannot do its work: ") + std::strerror(error));
        return; // it ends by itself
    }
    logInfo("The guard runs again.");
    m_tooLate.stop();
    m_guardLost = false;
    m_asked.clear();
    m_reader->configure(m_options); // which marks everything again
    Q_EMIT changed();
}

void Watch::checkGuard() {
    if (!m_guard.isRunning() || m_asked.empty()) {
        return;
    }
    if (m_guard.page().ponged.load() < m_ping) {
        logWarning("The guard does not answer, and is ended: no program may wait for it.");
        m_guard.end();
        guardEnded();
        return;
    }
    // Asked one time, looked at the next: at rest every wake-up counts, the guard's too.
    m_asksGuard = !m_asksGuard;
    if (m_asksGuard) {
        m_judge->ping(++m_ping);
    }
}

void Watch::marked(std::uint64_t fileSystem, int error) {
    if (error == 0) {
        m_asked.insert(fileSystem);
    } else {
        logWarning(std::string("Programs of a file system cannot be checked: ") +
                   std::strerror(error));
    }
    Q_EMIT changed();
}

std::vector<WatchedSystem> Watch::systems() const {
    std::vector<WatchedSystem> systems = m_systems;
    for (WatchedSystem& system : systems) {
        system.starts = !m_guardLost && m_asked.contains(system.id);
    }
    return systems;
}

bool Watch::isComplete() const {
    const std::vector<WatchedSystem> all = systems();
    return std::all_of(all.begin(), all.end(), [this](const WatchedSystem& system) {
        return system.mode == WatchMode::Unasked ||
               (system.mode != WatchMode::None && (system.starts || !m_options->checkStarts));
    });
}

QString Watch::problem() const {
    if (m_options->checkStarts && m_guardLost) {
        return QStringLiteral(
            "Programs are not checked before they run, as the guard was ended. It "
            "is started again soon.");
    }
    if (m_options->checkStarts && m_guardTrouble != 0) {
        return QStringLiteral("Programs cannot be checked before they run: %1.")
            .arg(QLatin1String(std::strerror(m_guardTrouble)));
    }
    for (const WatchedSystem& system : m_systems) {
        if (system.mode == WatchMode::None) {
            return QStringLiteral("The file system at %1 is not watched. %2")
                .arg(QString::fromStdString(printable(system.point)),
                     QString::fromStdString(system.problem));
        }
    }
    return {};
}

const GuardPage* Watch::guardCounts() const {
    return m_guard.isRunning() ? &m_guard.page() : nullptr;
}

} // namespace korvale::agent
