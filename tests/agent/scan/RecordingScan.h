#pragma once

#include "agent/scan/ScanJob.h"

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace korvale::agent {

/// One scan from its beginning to its end, with everything it told.
class RecordingScan final : public ScanListener {
public:
    RecordingScan(ScanRequest request, Engine& engine, VerdictCache* cache = nullptr)
        : m_job(1, std::move(request), engine, cache, *this) {}

    static ScanRequest of(const std::string& path) {
        ScanRequest request;
        request.path = path;
        request.options.lowPriority = false;
        return request;
    }

    ScanSummary run() {
        m_job.start();
        return waitForEnd();
    }
    ScanSummary waitForEnd() {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_summary.has_value(); });
        return *m_summary;
    }
    void waitForFindings(std::size_t count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return files.size() >= count; });
    }
    ScanJob& job() { return m_job; }

    void began(const std::string& path, const std::string& /*trouble*/) override {
        const std::lock_guard lock(m_mutex);
        beganWith = path;
    }
    void progress(const std::string& path, std::uint64_t analysed) override {
        const std::lock_guard lock(m_mutex);
        steps.emplace_back(path, analysed);
        times.push_back(std::chrono::steady_clock::now());
    }
    void found(FoundFile file) override {
        const std::lock_guard lock(m_mutex);
        if (letGo) {
            file.permit.reset();
        }
        files.push_back(std::move(file));
        m_changed.notify_all();
    }
    void ended(const ScanSummary& summary) override {
        const std::lock_guard lock(m_mutex);
        m_summary = summary;
        m_changed.notify_all();
    }

    std::string beganWith;
    std::vector<std::pair<std::string, std::uint64_t>> steps;
    std::vector<std::chrono::steady_clock::time_point> times;
    std::vector<FoundFile> files;
    bool letGo = true;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::optional<ScanSummary> m_summary;
    ScanJob m_job; // its threads end first
};

} // namespace korvale::agent
