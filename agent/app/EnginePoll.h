#pragma once

#include "agent/engine/EngineState.h"

#include <QObject>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <memory>

namespace korvale::agent {

class Engine;

/// Asks the engine now and then how it is, on a thread of its own. Used from the main thread.
class EnginePoll : public QObject {
    Q_OBJECT
public:
    /// Between two questions, while it answers and while it does not.
    static constexpr std::chrono::seconds kPeriod{30};
    static constexpr std::chrono::seconds kPeriodWithout{15};

    /// `engine` must outlive this object.
    explicit EnginePoll(Engine& engine, QObject* parent = nullptr);
    ~EnginePoll() override; ///< waits for the question at hand, a few seconds at most

    /// Asks now; `answered` follows.
    void ask();

Q_SIGNALS:
    void answered(const korvale::agent::EngineState& state);

private:
    Engine& m_engine;
    QThread m_thread;
    std::unique_ptr<QObject> m_worker; ///< lives on the thread
    QTimer m_next;
    bool m_asking = false;
};

} // namespace korvale::agent
