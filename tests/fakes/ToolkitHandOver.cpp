// Built into tests and programs under the thread sanitizer. The toolkit is not, so that the locks
// of its thread pool and event queues go unseen and whatever one thread hands to another by them
// looks like a race. Here the hand-over is told: what went before a call was posted or work was
// started has happened for it, and what that did has happened for who has waited for its thread.
#include <QObject>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>

#include <dlfcn.h>
#include <functional>
#include <utility>

extern "C" {
void __tsan_acquire(void* address); // NOLINT: the sanitizer's own names
void __tsan_release(void* address); // NOLINT
}

namespace {

/// The toolkit's own function of that name, which one below stands in front of.
template <typename Function>
Function original(const char* name) {
    return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

class CarriedWork final : public QRunnable {
public:
    CarriedWork(QThreadPool* pool, std::function<void()> work)
        : m_pool(pool), m_work(std::move(work)) {}

    void run() override {
        __tsan_acquire(this);
        m_work();
        m_work = nullptr;
        __tsan_release(m_pool);
    }

private:
    QThreadPool* m_pool;
    std::function<void()> m_work;
};

/// A call on its way to the thread of an object.
class CarriedCall final : public QtPrivate::QSlotObjectBase {
public:
    explicit CarriedCall(QtPrivate::QSlotObjectBase* call) : QSlotObjectBase(run), m_call(call) {}

private:
    static void run(int what, QSlotObjectBase* self, QObject* receiver, void** arguments, bool*) {
        auto* const carried = static_cast<CarriedCall*>(self);
        __tsan_acquire(carried);
        if (what == Call) {
            carried->m_call->call(receiver, arguments);
        } else if (what == Destroy) {
            carried->m_call->destroyIfLastRef();
            delete carried;
        }
        __tsan_release(QThread::currentThread());
    }

    QSlotObjectBase* m_call;
};

} // namespace

void QThreadPool::start(std::function<void()> work, int priority) {
    auto* const carried = new CarriedWork(this, std::move(work)); // the pool deletes it
    __tsan_release(carried);
    start(static_cast<QRunnable*>(carried), priority);
}

bool QThreadPool::waitForDone(int limitMs) {
    using Wait = bool (*)(QThreadPool*, int);
    static const auto wait = original<Wait>("_ZN11QThreadPool11waitForDoneEi");
    const bool isDone = wait(this, limitMs);
    __tsan_acquire(this);
    return isDone;
}

bool QThread::wait(QDeadlineTimer deadline) {
    using Wait = bool (*)(QThread*, QDeadlineTimer);
    static const auto wait = original<Wait>("_ZN7QThread4waitE14QDeadlineTimer");
    const bool isDone = wait(this, deadline);
    __tsan_acquire(this);
    return isDone;
}

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot,
                                   Qt::ConnectionType type, void* result) {
    using Invoke = bool (*)(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*);
    static const auto invoke = original<Invoke>("_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9Qt"
                                                "Private15QSlotObjectBaseEN2Qt14ConnectionTypeEPv");
    auto* const carried = new CarriedCall(slot); // the toolkit deletes it
    __tsan_release(carried);
    return invoke(object, carried, type, result);
}
