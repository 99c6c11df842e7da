// Built into tests under the thread sanitizer. The toolkit's thread pool is not, so that its lock
// goes unseen and whatever one thread hands to another looks like a race. Here the hand-over is
// told: what went before start() has happened for the work, and what the work did has happened for
// who has waited for it.
#include <QRunnable>
#include <QThreadPool>

#include <dlfcn.h>
#include <functional>
#include <utility>

extern "C" {
void __tsan_acquire(void* address); // NOLINT: the sanitizer's own names
void __tsan_release(void* address); // NOLINT
}

namespace {

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

} // namespace

void QThreadPool::start(std::function<void()> work, int priority) {
    auto* const carried = new CarriedWork(this, std::move(work)); // the pool deletes it
    __tsan_release(carried);
    start(static_cast<QRunnable*>(carried), priority);
}

bool QThreadPool::waitForDone(int limitMs) {
    using Original = bool (*)(QThreadPool*, int);
    static const auto original =
        reinterpret_cast<Original>(::dlsym(RTLD_NEXT, "_ZN11QThreadPool11waitForDoneEi"));
    const bool isDone = original(this, limitMs);
    __tsan_acquire(this);
    return isDone;
}
