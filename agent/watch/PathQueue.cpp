#include "agent/watch/PathQueue.h"

#include <algorithm>

namespace korvale::agent {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kRemembered = 4096;

std::string nameOf(const PathQueue::Job& job) {
    return job.isTree ? job.path + '/' : job.path;
}

} // namespace

bool PathQueue::add(Job job) {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return true;
    }
    std::string name = nameOf(job);
    if (m_waiting.contains(name)) {
        return true;
    }
    if (m_jobs.size() >= capacity) {
        return false;
    }
    TimePoint due = Clock::now();
    if (const auto recent = m_recent.find(name); recent != m_recent.end()) {
        due = std::max(due, recent->second + pause);
    }
    m_waiting.insert(std::move(name));
    m_jobs.emplace(std::pair(due, m_next++), std::move(job));
    m_changed.notify_one();
    return true;
}

std::optional<PathQueue::Job> PathQueue::pop() {
    std::unique_lock lock(m_mutex);
    for (;;) {
        if (m_closed) {
            return std::nullopt;
        }
        if (m_jobs.empty()) {
            m_changed.wait(lock);
            continue;
        }
        const TimePoint due = m_jobs.begin()->first.first;
        const TimePoint now = Clock::now();
        if (due > now) {
            m_changed.wait_until(lock, due);
            continue;
        }
        Job job = std::move(m_jobs.begin()->second);
        m_jobs.erase(m_jobs.begin());
        std::string name = nameOf(job);
        m_waiting.erase(name);
        forgetOld(now);
        m_recent.insert_or_assign(std::move(name), now);
        return job;
    }
}

void PathQueue::forgetOld(TimePoint now) {
    if (m_recent.size() >= kRemembered) {
        std::erase_if(m_recent, [&](const auto& entry) { return entry.second + pause <= now; });
    }
    if (m_recent.size() >= kRemembered) {
        m_recent.clear();
    }
}

void PathQueue::close() {
    const std::lock_guard lock(m_mutex);
    m_closed = true;
    m_jobs.clear();
    m_changed.notify_all();
}

std::size_t PathQueue::size() const {
    const std::lock_guard lock(m_mutex);
    return m_jobs.size();
}

} // namespace korvale::agent
