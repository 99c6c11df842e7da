#include "agent/scan/ScanJob.h"

#include "agent/base/Log.h"
#include "agent/scan/FoundFileOf.h"
#include "agent/scan/LowPriority.h"

namespace korvale::agent {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kOpenFiles = 16;

} // namespace

ScanJob::ScanJob(std::uint64_t id, ScanRequest request, Engine& engine, VerdictCache* cache,
                 ScanListener& listener)
    : m_request(std::move(request)),
      m_engine(engine),
      m_listener(listener),
      m_queue(kOpenFiles),
      m_walk({m_request.options.excluded, m_request.options.otherFileSystems, {}}, *this),
      m_cache(cache),
      m_patience(engine, m_request.options.patience),
      m_permits(std::make_shared<Permits>(foundOnTheirWay)) {
    m_summary.id = id;
    m_summary.kind = m_request.kind;
    m_summary.path = m_request.path;
    m_summary.user = m_request.caller.user;
}

ScanJob::~ScanJob() {
    stop();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void ScanJob::start() {
    m_thread = std::thread([this] { run(); });
}

void ScanJob::stop() {
    m_stop.request_stop();
    m_queue.close(true);
}

void ScanJob::run() {
    const auto start = Clock::now();
    if (m_request.options.lowPriority) {
        lowerOwnPriority();
    }
    CallerFolder folder = openCallerFolder(m_request.path, m_request.caller);
    if (folder.descriptor) {
        scan(std::move(folder));
    } else {
        m_summary.trouble = folder.error;
        m_listener.began(m_request.path, folder.error);
    }
    const std::lock_guard lock(m_mutex);
    m_summary.stopped = m_stop.stop_requested();
    m_summary.duration = std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - start);
    m_listener.ended(m_summary);
}

void ScanJob::scan(CallerFolder folder) {
    m_summary.withEngine = m_engine.refresh().reachable;
    m_summary.path = folder.path;
    m_memory = std::make_unique<VerdictMemory>(m_cache, m_engine);
    m_listener.began(folder.path, {});
    std::vector<std::thread> threads; // with the agent's own rights, as they are made before
    for (std::size_t index = 0; index < workers; ++index) {
        threads.emplace_back([this] { work(); });
    }
    std::string error;
    if (assumeRightsOf(m_request.caller, error)) {
        m_walk.walk(std::move(folder.descriptor), folder.path, m_stop.get_token());
        m_queue.waitUntilDone();
        askAgain();
        m_queue.waitUntilDone();
        const OwnRights own;
        const std::size_t doubted = takeDoubted().size();
        const std::lock_guard lock(m_mutex);
        m_summary.unanswered += doubted;
    } else {
        const std::lock_guard lock(m_mutex);
        m_summary.trouble = error;
    }
    m_queue.close(false);
    for (std::thread& thread : threads) {
        thread.join();
    }
    const OwnRights own;
    m_memory->flush();
}

void ScanJob::work() {
    if (m_request.options.lowPriority) {
        lowerOwnPriority();
    }
    while (std::optional<WalkedFile> file = m_queue.pop()) {
        if (!m_stop.stop_requested()) {
            judge(*file);
        }
        file.reset(); // its descriptor first
        m_queue.done();
    }
}

void ScanJob::judge(WalkedFile& file) {
    const auto deadline = m_request.options.fileDeadline;
    const std::stop_token stop = m_stop.get_token();
    VerdictMemory::Begun begun = m_memory->begin(file);
    const auto start = Clock::now();
    Judgement judgement = m_engine.judge(file.descriptor.get(), deadline, stop);
    // One that took all its time would take it again.
    const bool slow = Clock::now() - start >= deadline;
    if (judgement.verdict == Verdict::NoAnswer && !slow && !stop.stop_requested() &&
        m_summary.withEngine && m_patience.wait(stop)) {
        begun = m_memory->begin(file);
        judgement = m_engine.judge(file.descriptor.get(), deadline, stop);
    }
    if (stop.stop_requested() && !isJudged(judgement.verdict)) {
        return; // nobody's fault
    }
    if (judgement.verdict == Verdict::Clean) {
        (void)m_memory->remember(file, begun, judgement.provisional);
    }
    conclude(file, std::move(judgement));
}

void ScanJob::conclude(WalkedFile& file, Judgement judgement) {
    const std::string path = file.path();
    switch (judgement.verdict) {
    case Verdict::NotScanned: {
        logDebug("not scanned: " + path + ": " + judgement.reason);
        const std::lock_guard lock(m_mutex);
        ++m_summary.notScanned;
        return;
    }
    case Verdict::NoAnswer:
        unanswered(path);
        return;
    case Verdict::Abnormal:
    case Verdict::Unsafe:
        report(file, std::move(judgement));
        break;
    case Verdict::Clean:
        break;
    }
    count(path);
}

void ScanJob::unanswered(const std::string& path) {
    const std::lock_guard lock(m_mutex);
    if (!m_lastTry && m_summary.withEngine && m_retries.size() < longestRetryList) {
        m_retries.push_back(path);
    } else {
        ++m_summary.unanswered;
    }
}

std::vector<std::string> ScanJob::takeDoubted() {
    if (!m_memory->isOpen() || m_stop.stop_requested()) {
        return {}; // what is open is not remembered
    }
    m_engine.refresh(); // which shows whether it has scanned
    std::vector<std::string> doubted = m_memory->takeDoubted();
    const std::lock_guard lock(m_mutex);
    m_summary.analysed -= doubted.size();
    return doubted;
}

void ScanJob::askAgain() {
    std::vector<std::string> retries;
    {
        const OwnRights own;
        retries = takeDoubted();
        const std::lock_guard lock(m_mutex);
        m_lastTry = true;
        retries.insert(retries.end(), m_retries.begin(), m_retries.end());
        m_retries.clear();
        if (!retries.empty() && !m_engine.refresh().reachable) {
            m_summary.unanswered += retries.size();
            return;
        }
    }
    for (const std::string& path : retries) {
        if (m_stop.stop_requested()) {
            return;
        }
        WalkedFile file = m_walk.again(path);
        if (file.descriptor) {
            m_queue.push(std::move(file));
        } else {
            skipped(Skipped::Unreadable, path);
        }
    }
}

void ScanJob::report(const WalkedFile& file, Judgement judgement) {
    FoundFile found = foundFileOf(file, std::move(judgement));
    // Even when the scan is being stopped: what was found is told.
    found.permit = m_permits->take(m_stop.get_token());
    const std::lock_guard lock(m_mutex);
    ++m_summary.found;
    m_listener.found(std::move(found));
}

void ScanJob::count(const std::string& path) {
    const std::lock_guard lock(m_mutex);
    ++m_summary.analysed;
    if (m_pace.isDue(Clock::now()) && !m_stop.stop_requested()) {
        m_listener.progress(path, m_summary.analysed);
    }
}

void ScanJob::choose(std::vector<WalkedFile>& files) {
    const OwnRights own;
    std::erase_if(files, [this](const WalkedFile& file) {
        if (file.identity.size > m_request.options.maxFileSize) {
            const std::lock_guard lock(m_mutex);
            ++m_summary.notScanned;
            return true;
        }
        if (!m_memory->isKnownClean(file)) {
            return false;
        }
        {
            const std::lock_guard lock(m_mutex);
            ++m_summary.known;
        }
        count(file.path());
        return true;
    });
}

void ScanJob::file(WalkedFile file) {
    m_queue.push(std::move(file));
}

void ScanJob::skipped(Skipped reason, const std::string& path) {
    const std::lock_guard lock(m_mutex);
    switch (reason) {
    case Skipped::Empty:
    case Skipped::OtherName:
        break;
    case Skipped::Excluded:
        ++m_summary.excluded;
        break;
    case Skipped::TooDeep:
        logInfo("too deep to scan: " + path);
        ++m_summary.notScanned;
        break;
    case Skipped::Unreadable:
        logDebug("not readable: " + path);
        ++m_summary.unreadable;
        break;
    }
}

} // namespace korvale::agent
