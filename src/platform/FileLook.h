#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>

namespace korvale {

/// Looks what a path leads to without holding up the main thread: a file system may hang for ever.
/// Each look has a thread of its own, a few at a time; one that is stuck is left behind, and the
/// program ends all the same. Lives on the main thread.
class FileLook final : public QObject {
    Q_OBJECT
public:
    enum class Kind : std::uint8_t { None, Folder, Other };
    /// Called on any thread.
    using Look = Kind (*)(const QByteArray& path);
    using Answer = std::function<void(Kind)>;

    /// What is at `path` in the file system; a link is itself, wherever it leads.
    [[nodiscard]] static Kind kindOf(const QByteArray& path);

    explicit FileLook(Look look = kindOf, QObject* parent = nullptr);
    ~FileLook() override;

    /// Calls `answer` on the main thread, later, unless `context` has gone by then. A path that is
    /// not absolute or that no file can have leads to nothing. Of very many questions that wait the
    /// oldest are dropped.
    void ask(const QString& path, QObject* context, Answer answer);

private:
    struct Question {
        QByteArray path;
        QPointer<QObject> context;
        Answer answer;
    };
    struct Home; ///< outlives this object in the threads that are stuck

    void startWaiting();
    bool startThread(int number, const QByteArray& path);
    void finished(int number, Kind kind);

    Look m_look;
    std::deque<Question> m_waiting;
    std::map<int, Question> m_running;
    int m_number = 0; ///< of the last that was started
    std::shared_ptr<Home> m_home;
};

} // namespace korvale
