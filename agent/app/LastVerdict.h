#pragma once

#include <QJsonObject>
#include <QObject>

#include <functional>
#include <memory>
#include <string>

namespace korvale::agent {

class Engine;
class FindingsKeeper;
class MainThreadPost;
class VerdictCache;

/// What was last said of the file at a path: members "verdict" and "verdict_time" of the answer to
/// "Why". Main thread; the file is looked at by a thread that may wait for ever, on a dead network
/// file system.
class LastVerdict : public QObject {
    Q_OBJECT
public:
    /// Paths that are looked at at a time; a further one is "unknown" at once.
    static constexpr int kMostLooks = 4;
    using Answer = std::function<void(const QJsonObject& members)>;

    /// `cache` may be null. All must outlive this object.
    LastVerdict(FindingsKeeper& keeper, VerdictCache* cache, const Engine& engine,
                QObject* parent = nullptr);
    ~LastVerdict() override;

    /// `answer` is called once, later.
    void ask(const std::string& path, Answer answer);

private:
    FindingsKeeper& m_keeper;
    VerdictCache* m_cache;
    const Engine& m_engine;
    std::shared_ptr<MainThreadPost> m_post;
    int m_looks = 0;
};

} // namespace korvale::agent
