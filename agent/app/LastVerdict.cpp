#include "agent/app/LastVerdict.h"

#include "agent/app/FindingsKeeper.h"
#include "agent/base/FileIdentity.h"
#include "agent/base/FileSystemFacts.h"
#include "agent/base/UniqueFd.h"
#include "agent/engine/Engine.h"
#include "agent/scan/MainThreadPost.h"
#include "agent/store/Store.h"
#include "agent/store/VerdictCache.h"

#include <fcntl.h>
#include <thread>

namespace korvale::agent {
namespace {

struct Seen {
    std::optional<FileIdentity> file;
    bool keepsVerdicts = false;
};

Seen lookAt(const std::string& path) {
    // O_PATH: nothing of a file's kind happens by looking at it.
    const UniqueFd file(::open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    const auto facts = file ? fileSystemFacts(file.get()) : std::nullopt;
    return {file ? identify(file.get()) : std::nullopt, facts && facts->keepsVerdicts};
}

QJsonObject members(const char* verdict, std::int64_t time) {
    return {{QStringLiteral("verdict"), QLatin1String(verdict)},
            {QStringLiteral("verdict_time"), static_cast<qint64>(time)}};
}

/// Of a file that was found bad and still lies there, the newest finding.
QJsonObject found(const Store& store, const std::string& path) {
    QJsonObject newest = members("unknown", 0);
    std::int64_t time = -1;
    for (const Finding& finding : store.findings()) {
        const bool lies =
            finding.state == FindingState::Detected || finding.state == FindingState::Waived;
        if (finding.path == path && lies && finding.lastSeen > time) {
            time = finding.lastSeen;
            newest = members(finding.kind == ThreatKind::Unsafe ? "unsafe" : "abnormal", time);
        }
    }
    return newest;
}

} // namespace

LastVerdict::LastVerdict(FindingsKeeper& keeper, VerdictCache* cache, const Engine& engine,
                         QObject* parent)
    : QObject(parent),
      m_keeper(keeper),
      m_cache(cache),
      m_engine(engine),
      m_post(std::make_shared<MainThreadPost>(*this)) {}

LastVerdict::~LastVerdict() {
    m_post->targetIsGone();
}

void LastVerdict::ask(const std::string& path, Answer answer) {
    if (m_looks >= kMostLooks) {
        (*m_post)([answer = std::move(answer)] { answer(members("unknown", 0)); });
        return;
    }
    ++m_looks;
    std::thread([this, post = m_post, path, answer = std::move(answer)]() mutable {
        const Seen seen = lookAt(path);
        (*post)([this, seen, path, answer = std::move(answer)] {
            --m_looks;
            m_keeper.run([this, seen, path, answer](Store& store, Vault*) -> FindingsKeeper::Then {
                QJsonObject told = members("unknown", 0);
                const std::string key = m_engine.state().signatureKey;
                if (seen.file && seen.keepsVerdicts && m_cache != nullptr &&
                    m_cache->find(*seen.file, key) == KnownVerdict::Clean) {
                    told = members("clean", 0);
                } else if (seen.file) {
                    told = found(store, path);
                }
                return [told, answer] { answer(told); };
            });
        });
    }).detach();
}

} // namespace korvale::agent
