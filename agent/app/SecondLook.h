#pragma once

#include "agent/scan/ScanTypes.h"

#include <QObject>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <list>
#include <memory>
#include <stop_token>

namespace korvale::agent {

class Engine;

/// Bad files that could not be moved because somebody was writing to them, or had written since
/// they were judged: looked at again until nobody writes, then judged again. Used from the main
/// thread; files are opened and judged on a thread of its own.
class SecondLook : public QObject {
    Q_OBJECT
public:
    /// Files kept at a time. One more is left to the next scan, as is one that is still written to
    /// after the last look.
    static constexpr std::size_t kMostFiles = 64;
    static constexpr int kMostLooks = 10;
    static constexpr std::chrono::milliseconds kLongestPause{30'000};

    /// `engine` must outlive this object. `pause`: before the first look; it doubles each time.
    explicit SecondLook(Engine& engine,
                        std::chrono::milliseconds pause = std::chrono::milliseconds(1000),
                        QObject* parent = nullptr);
    ~SecondLook() override; ///< stops the judging at hand

    /// `finding`: the number of what was found in it.
    void keep(FoundFile file, std::int64_t finding);

Q_SIGNALS:
    /// Nobody writes any more, and it is bad: as a scan tells it.
    void foundAgain(const korvale::agent::FoundFile& file);
    /// What was found is not there any more: the file is gone, or has another content.
    void gone(std::int64_t finding);

private:
    enum class Outcome { Written, Bad, Harmless, Gone, Lost };
    struct Entry {
        FoundFile file;
        std::int64_t finding = 0;
        int looks = 0;
        bool asleep = true; ///< waits for its next look; else it was told as found
        std::chrono::steady_clock::time_point told = {};
    };
    using Place = std::list<Entry>::iterator;

    static Outcome look(Engine& engine, FoundFile& file, const std::stop_token& stop);
    void lookAtNext();
    void looked(Place place, Outcome outcome, const FoundFile& file);
    void forgetTold();
    /// The one whose look is due first; the end when none waits.
    Place next();
    void sleep();

    Engine& m_engine;
    const std::chrono::milliseconds m_pause;
    QThread m_thread;
    std::unique_ptr<QObject> m_worker; ///< lives on the thread
    std::stop_source m_stop;
    std::list<Entry> m_files; ///< those that wait longest first
    QTimer m_next;
    bool m_looking = false;
};

} // namespace korvale::agent
