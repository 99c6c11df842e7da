#include "platform/FileLook.h"

#include <QFile>

#include <mutex>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <utility>

namespace korvale {
namespace {

constexpr std::size_t mostThreads = 4;
constexpr std::size_t mostWaiting = 16;

} // namespace

struct FileLook::Home {
    std::mutex mutex;
    FileLook* owner; ///< nullptr once it has gone
};

FileLook::Kind FileLook::kindOf(const QByteArray& path) {
    struct stat facts {};
    if (::lstat(path.constData(), &facts) != 0) {
        return Kind::None;
    }
    return S_ISDIR(facts.st_mode) ? Kind::Folder : Kind::Other;
}

FileLook::FileLook(Look look, QObject* parent)
    : QObject(parent), m_look(look), m_home(std::make_shared<Home>()) {
    m_home->owner = this;
}

FileLook::~FileLook() {
    const std::scoped_lock lock(m_home->mutex);
    m_home->owner = nullptr;
}

void FileLook::ask(const QString& path, QObject* context, Answer answer) {
    Question question{QFile::encodeName(path), context, std::move(answer)};
    if (!path.startsWith(u'/') || path.contains(QChar(u'\0'))) {
        question.path.clear(); // which no file has
    }
    if (m_waiting.size() == mostWaiting) {
        m_waiting.pop_front();
    }
    m_waiting.push_back(std::move(question));
    startWaiting();
}

void FileLook::startWaiting() {
    while (m_running.size() < mostThreads && !m_waiting.empty()) {
        if (!startThread(++m_number, m_waiting.front().path)) {
            return; // no thread is to be had now: with the next question
        }
        m_running.emplace(m_number, std::move(m_waiting.front()));
        m_waiting.pop_front();
    }
}

bool FileLook::startThread(int number, const QByteArray& path) {
    try {
        std::thread([home = m_home, look = m_look, number, path] {
            const Kind kind = look(path);
            const std::scoped_lock lock(home->mutex);
            if (FileLook* owner = home->owner; owner != nullptr) {
                QMetaObject::invokeMethod(
                    owner, [owner, number, kind] { owner->finished(number, kind); },
                    Qt::QueuedConnection);
            }
        }).detach();
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

void FileLook::finished(int number, Kind kind) {
    const Question question = std::move(m_running.extract(number).mapped());
    startWaiting();
    if (question.context) {
        question.answer(kind);
    }
}

} // namespace korvale
