#include "agent/app/SecondLook.h"

#include "agent/base/Log.h"
#include "agent/engine/Engine.h"
#include "agent/quarantine/SafeOpen.h"
#include "agent/quarantine/WriteLease.h"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>
#include <utility>

namespace korvale::agent {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kDeadline{60}; ///< for the engine

bool isWrittenTo(int descriptor) {
    return WriteLease(descriptor).state() == WriteLease::State::OpenForWriting;
}

} // namespace

SecondLook::SecondLook(Engine& engine, std::chrono::milliseconds pause, QObject* parent)
    : QObject(parent), m_engine(engine), m_pause(pause), m_worker(std::make_unique<QObject>()) {
    m_worker->moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("second look"));
    m_thread.start();
    m_next.setSingleShot(true);
    connect(&m_next, &QTimer::timeout, this, &SecondLook::lookAtNext);
}

SecondLook::~SecondLook() {
    m_stop.request_stop();
    m_thread.quit();
    m_thread.wait();
}

void SecondLook::keep(FoundFile file, std::int64_t finding) {
    file.permit.reset(); // the scan goes on
    const auto known = std::find_if(m_files.begin(), m_files.end(), [&](const Entry& entry) {
        return entry.file.path == file.path;
    });
    int looks = 0;
    if (known != m_files.end()) {
        if (known->asleep) {
            return; // another scan found it meanwhile
        }
        const bool justTold = Clock::now() - known->told < kLongestPause;
        looks = justTold ? known->looks : 0;
        m_files.erase(known);
    }
    forgetTold();
    if (looks >= kMostLooks || m_files.size() >= kMostFiles) {
        logWarning(file.path +
                   ": somebody writes to it all the time; it stays until the next scan");
        return;
    }
    m_files.push_back({std::move(file), finding, looks, true, {}});
    sleep();
}

void SecondLook::forgetTold() {
    // Taken, or kept again right away: of those nothing is to come.
    if (m_files.size() >= kMostFiles) {
        std::erase_if(m_files, [](const Entry& entry) { return !entry.asleep; });
    }
}

void SecondLook::sleep() {
    const auto first = next();
    if (m_looking || first == m_files.end()) {
        return;
    }
    const std::chrono::milliseconds pause = std::min(m_pause * (1 << first->looks), kLongestPause);
    if (!m_next.isActive() || m_next.remainingTimeAsDuration() > pause) {
        m_next.start(pause);
    }
}

SecondLook::Place SecondLook::next() {
    const auto first =
        std::min_element(m_files.begin(), m_files.end(), [](const Entry& one, const Entry& other) {
            return std::pair(!one.asleep, one.looks) < std::pair(!other.asleep, other.looks);
        });
    return first == m_files.end() || first->asleep ? first : m_files.end();
}

void SecondLook::lookAtNext() {
    const Place place = next();
    if (place == m_files.end()) {
        return;
    }
    m_looking = true; // and nobody removes the place meanwhile, as it waits
    const auto file = std::make_shared<FoundFile>(place->file);
    QMetaObject::invokeMethod(m_worker.get(), [this, place, file] {
        const Outcome outcome = look(m_engine, *file, m_stop.get_token());
        QMetaObject::invokeMethod(
            this, [this, place, outcome, file] { looked(place, outcome, *file); },
            Qt::QueuedConnection);
    });
}

SecondLook::Outcome SecondLook::look(Engine& engine, FoundFile& file, const std::stop_token& stop) {
    const UniqueFd opened = openRegular(file.folder->descriptor.get(), file.name);
    if (!opened) {
        return errno == ENOENT || errno == ESTALE || errno == EINVAL || errno == ELOOP
                   ? Outcome::Gone
                   : Outcome::Lost;
    }
    struct stat status {};
    const auto before = identify(opened.get());
    if (isWrittenTo(opened.get()) || !before || ::fstat(opened.get(), &status) != 0) {
        return Outcome::Written;
    }
    Judgement judgement = engine.judge(opened.get(), kDeadline, stop);
    if (identify(opened.get()) != before || !isJudged(judgement.verdict) || judgement.provisional) {
        return Outcome::Written; // or nobody to ask, or to believe: later
    }
    if (!isBad(judgement.verdict)) {
        return Outcome::Harmless;
    }
    file.identity = *before;
    file.owner = status.st_uid;
    file.judgement = std::move(judgement);
    return Outcome::Bad;
}

void SecondLook::looked(Place place, Outcome outcome, const FoundFile& file) {
    m_looking = false;
    ++place->looks;
    const std::int64_t finding = place->finding;
    const bool otherContent = file.judgement.sha256hex != place->file.judgement.sha256hex;
    switch (outcome) {
    case Outcome::Written:
        if (place->looks >= kMostLooks) {
            logWarning(file.path +
                       ": somebody writes to it all the time; it stays until the next scan");
            m_files.erase(place);
        }
        break;
    case Outcome::Lost:
        m_files.erase(place);
        break;
    case Outcome::Harmless:
    case Outcome::Gone:
        m_files.erase(place);
        Q_EMIT gone(finding);
        break;
    case Outcome::Bad:
        place->told = Clock::now();
        place->asleep = false; // its looks count on when it cannot be taken again
        place->file.folder.reset();
        if (otherContent) {
            Q_EMIT gone(finding);
        }
        Q_EMIT foundAgain(file);
        break;
    }
    sleep();
}

} // namespace korvale::agent
