#include "agent/app/EnginePoll.h"

#include "agent/engine/Engine.h"

namespace korvale::agent {

EnginePoll::EnginePoll(Engine& engine, QObject* parent)
    : QObject(parent), m_engine(engine), m_worker(std::make_unique<QObject>()) {
    m_worker->moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("engine state"));
    m_thread.start();
    m_next.setSingleShot(true);
    m_next.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_next, &QTimer::timeout, this, &EnginePoll::ask);
}

EnginePoll::~EnginePoll() {
    m_thread.quit();
    m_thread.wait();
}

void EnginePoll::ask() {
    if (m_asking) {
        return;
    }
    m_asking = true;
    QMetaObject::invokeMethod(m_worker.get(), [this] {
        const EngineState state = m_engine.refresh();
        QMetaObject::invokeMethod(
            this,
            [this, state] {
                m_asking = false;
                m_next.start(state.reachable ? kPeriod : kPeriodWithout);
                Q_EMIT answered(state);
            },
            Qt::QueuedConnection);
    });
}

} // namespace korvale::agent
