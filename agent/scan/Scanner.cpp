#include "agent/scan/Scanner.h"

#include "agent/base/Log.h"
#include "agent/scan/CallerFolder.h"
#include "agent/scan/MainThreadPost.h"
#include "agent/scan/ScanJob.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace korvale::agent {

/// Brings what a job tells to the main thread.
class Scanner::Listener final : public ScanListener {
public:
    Listener(Scanner& scanner, std::uint64_t id)
        : m_scanner(scanner), m_post(scanner.m_post), m_id(id) {}

    void began(const std::string& /*path*/, const std::string& /*trouble*/) override {}
    void progress(const std::string& path, std::uint64_t analysed) override {
        (*m_post)([this_ = &m_scanner, id = m_id, path, analysed] {
            this_->jobProgress(id, path, analysed);
        });
    }
    void found(FoundFile file) override {
        (*m_post)([this_ = &m_scanner, file = std::move(file)] { Q_EMIT this_->found(file); });
    }
    void ended(const ScanSummary& summary) override {
        (*m_post)([this_ = &m_scanner, summary] { this_->jobEnded(summary); });
    }

private:
    Scanner& m_scanner;
    std::shared_ptr<MainThreadPost> m_post;
    std::uint64_t m_id;
};

Scanner::Scanner(Engine& engine, VerdictCache* cache, QObject* parent)
    : QObject(parent),
      m_engine(engine),
      m_cache(cache),
      m_post(std::make_shared<MainThreadPost>(*this)) {}

Scanner::~Scanner() {
    m_post->targetIsGone();
    for (const auto& [kind, running] : m_running) {
        running.job->stop(); // all of them first, then their ends are waited for
    }
    m_running.clear();
}

void Scanner::start(ScanRequest request, Answer answer) {
    if (m_checks >= checksAtOnce || m_waiting.size() >= longestQueue) {
        (*m_post)([answer = std::move(answer)] { answer(0, "too many scans wait"); });
        return;
    }
    ++m_checks;
    // Detached: a folder on a dead network file system may hold it for ever.
    std::thread([this, post = m_post, request = std::move(request),
                 answer = std::move(answer)]() mutable {
        const std::string error = openCallerFolder(request.path, request.caller).error;
        (*post)([this, request = std::move(request), answer = std::move(answer), error] {
            checked(request, answer, error);
        });
    }).detach();
}

void Scanner::checked(ScanRequest request, const Answer& answer, const std::string& error) {
    --m_checks;
    if (!error.empty()) {
        answer(0, error);
        return;
    }
    const std::uint64_t id = ++m_lastId;
    const ScanKind kind = request.kind;
    m_waiting.push_back({id, std::move(request)});
    answer(id, {});
    startNext(kind);
}

void Scanner::startNext(ScanKind kind) {
    const auto next =
        std::find_if(m_waiting.begin(), m_waiting.end(),
                     [kind](const Waiting& waiting) { return waiting.request.kind == kind; });
    if (next == m_waiting.end() || m_running.contains(kind)) {
        return;
    }
    Waiting waiting = std::move(*next);
    m_waiting.erase(next);
    startNow(std::move(waiting));
}

void Scanner::startNow(Waiting waiting) {
    const ScanInfo info = infoOf(waiting.id, waiting.request);
    Running& running = m_running[info.kind];
    running.info = info;
    running.info.running = true;
    running.listener = std::make_unique<Listener>(*this, info.id);
    running.job = std::make_unique<ScanJob>(info.id, std::move(waiting.request), m_engine, m_cache,
                                            *running.listener);
    logInfo("scan " + std::to_string(info.id) + " begins: " + info.path);
    running.job->start();
    if (!std::exchange(m_toldRunning, true)) {
        Q_EMIT runningChanged(true);
    }
    Q_EMIT began(running.info);
}

bool Scanner::stop(std::uint64_t id) {
    for (const auto& [kind, running] : m_running) {
        if (running.info.id == id) {
            running.job->stop();
            return true;
        }
    }
    const auto found = std::find_if(m_waiting.begin(), m_waiting.end(),
                                    [id](const Waiting& waiting) { return waiting.id == id; });
    if (found == m_waiting.end()) {
        return false;
    }
    ScanSummary summary;
    summary.id = id;
    summary.kind = found->request.kind;
    summary.path = found->request.path;
    summary.user = found->request.caller.user;
    summary.stopped = true;
    m_waiting.erase(found);
    (*m_post)([this, summary] { Q_EMIT ended(summary); });
    return true;
}

void Scanner::stopAll() {
    for (const ScanInfo& scan : scans()) {
        stop(scan.id);
    }
}

std::vector<ScanInfo> Scanner::scans() const {
    std::vector<ScanInfo> list;
    for (const auto& [kind, running] : m_running) {
        list.push_back(running.info);
    }
    for (const Waiting& waiting : m_waiting) {
        list.push_back(infoOf(waiting.id, waiting.request));
    }
    return list;
}

void Scanner::jobProgress(std::uint64_t id, const std::string& path, std::uint64_t analysed) {
    for (auto& [kind, running] : m_running) {
        if (running.info.id == id) {
            running.info.analysed = analysed;
            const ScanInfo info = running.info; // a slot may end the scan
            Q_EMIT progress(info, path);
            return;
        }
    }
}

void Scanner::jobEnded(const ScanSummary& summary) {
    m_running.erase(summary.kind); // joins threads that have nothing left to do
    logInfo("scan " + std::to_string(summary.id) +
            (summary.stopped ? " was stopped: " : " ended: ") + std::to_string(summary.analysed) +
            " files judged, " + std::to_string(summary.found) + " bad, " +
            std::to_string(summary.notScanned) + " not scanned, " +
            std::to_string(summary.unreadable) + " not readable, " +
            std::to_string(summary.unanswered) + " without an answer");
    Q_EMIT ended(summary);
    startNext(summary.kind);
    if (m_running.empty() && std::exchange(m_toldRunning, false)) {
        Q_EMIT runningChanged(false);
    }
}

ScanInfo Scanner::infoOf(std::uint64_t id, const ScanRequest& request) {
    return {id, request.kind, request.path, request.caller.user, false, 0};
}

} // namespace korvale::agent
