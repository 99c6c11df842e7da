#include "agent/watch/StartJudge.h"

#include "agent/scan/FoundFileOf.h"
#include "agent/watch/DescriptorMessage.h"
#include "agent/watch/WatchedFile.h"

#include <algorithm>
#include <cstdint>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/stat.h>

namespace korvale::agent {

StartJudge::StartJudge(std::shared_ptr<const UniqueFd> guard, Engine& engine, VerdictMemory& memory,
                       const FilePlaces& places, StartListener& listener)
    : m_engine(engine),
      m_memory(memory),
      m_places(places),
      m_listener(listener),
      m_wake(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_guard(std::move(guard)),
      m_options(std::make_shared<WatchOptions>()) {
    m_exemptions.kind = GuardOrder::Kind::Exempt;
    m_listenThread = std::thread([this] { listen(); });
    for (std::thread& thread : m_threads) {
        thread = std::thread([this] { work(); });
    }
}

StartJudge::~StartJudge() {
    release();
    m_stop.request_stop();
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_asked.notify_all();
    ::eventfd_write(m_wake.get(), 1);
    m_listenThread.join();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

std::shared_ptr<const UniqueFd> StartJudge::guard() const {
    const std::lock_guard lock(m_guardMutex);
    return m_guard;
}

void StartJudge::use(std::shared_ptr<const UniqueFd> guard) {
    {
        const std::lock_guard lock(m_guardMutex);
        m_guard = std::move(guard);
    }
    ::eventfd_write(m_wake.get(), 1);
    GuardOrder forget;
    GuardOrder sleep;
    GuardOrder exempt;
    {
        const std::lock_guard lock(m_mutex);
        forget.kind = GuardOrder::Kind::Forget;
        forget.generation = m_generation;
        sleep.kind = GuardOrder::Kind::Sleep;
        sleep.flag = m_asleep;
        exempt = m_exemptions;
    }
    for (const GuardOrder& order : {forget, exempt, sleep}) {
        send(order);
    }
}

void StartJudge::configure(std::shared_ptr<const WatchOptions> options) {
    const std::lock_guard lock(m_mutex);
    m_options = std::move(options);
}

void StartJudge::setAllowed(const std::string& digest, bool allowed) {
    const std::lock_guard lock(m_mutex);
    if (allowed) {
        m_allowed.insert(digest);
    } else {
        m_allowed.erase(digest);
    }
}

bool StartJudge::isAllowed(const std::string& digest) const {
    const std::lock_guard lock(m_mutex);
    return m_allowed.contains(digest);
}

void StartJudge::mark(std::uint64_t fileSystem, const UniqueFd& folder) {
    GuardOrder order;
    order.kind = GuardOrder::Kind::Mark;
    order.token = fileSystem;
    send(order, folder.get());
}

void StartJudge::release() {
    GuardOrder order;
    order.kind = GuardOrder::Kind::Release;
    send(order);
}

void StartJudge::forget() {
    GuardOrder order;
    order.kind = GuardOrder::Kind::Forget;
    {
        const std::lock_guard lock(m_mutex);
        order.generation = ++m_generation;
    }
    send(order);
}

void StartJudge::exempt(const std::vector<pid_t>& processes) {
    GuardOrder order;
    order.kind = GuardOrder::Kind::Exempt;
    std::copy_n(processes.begin(), std::min(processes.size(), order.processes.size()),
                order.processes.begin());
    {
        const std::lock_guard lock(m_mutex);
        m_exemptions = order;
    }
    send(order);
}

void StartJudge::sleep(bool asleep) {
    GuardOrder order;
    order.kind = GuardOrder::Kind::Sleep;
    order.flag = asleep;
    {
        const std::lock_guard lock(m_mutex);
        m_asleep = asleep;
    }
    send(order);
}

void StartJudge::ping(std::uint64_t number) {
    GuardOrder order;
    order.kind = GuardOrder::Kind::Ping;
    order.token = number;
    send(order);
}

void StartJudge::send(const GuardOrder& order, int descriptor) const {
    // A guard that does not take its orders is stopped, and will be ended.
    (void)sendMessage(guard()->get(), &order, sizeof order, descriptor);
}

void StartJudge::listen() {
    std::shared_ptr<const UniqueFd> ended; // nothing comes from there any more
    for (;;) {
        const std::shared_ptr<const UniqueFd> from = guard();
        std::array<pollfd, 2> waitFor{pollfd{from == ended ? -1 : from->get(), POLLIN, 0},
                                      pollfd{m_wake.get(), POLLIN, 0}};
        ::poll(waitFor.data(), waitFor.size(), -1);
        if (waitFor[1].revents != 0) {
            eventfd_t woken = 0;
            ::eventfd_read(m_wake.get(), &woken);
            if (isEnding()) {
                return;
            }
            continue; // there may be another guard
        }
        GuardNote note;
        UniqueFd passed;
        Received received = Received::Nothing;
        while ((received = receiveMessage(from->get(), &note, sizeof note, passed)) ==
               Received::Message) {
            take(note, std::move(passed), from);
        }
        if (received == Received::End) {
            ended = from;
        }
    }
}

bool StartJudge::isEnding() const {
    const std::lock_guard lock(m_mutex);
    return m_ending;
}

void StartJudge::take(const GuardNote& note, UniqueFd passed,
                      const std::shared_ptr<const UniqueFd>& guard) {
    switch (note.kind) {
    case GuardNote::Kind::Ready:
        m_listener.ready(note.error);
        break;
    case GuardNote::Kind::Marked:
        m_listener.marked(note.token, note.error);
        break;
    case GuardNote::Kind::Question:
        if (passed) {
            // The guard has few at a time, so there is no need of a bound.
            const std::lock_guard lock(m_mutex);
            m_questions.push_back({note.token, std::move(passed), guard});
            m_asked.notify_one();
        }
        break;
    }
}

void StartJudge::work() {
    for (;;) {
        std::unique_lock lock(m_mutex);
        m_asked.wait(lock, [this] { return m_ending || !m_questions.empty(); });
        if (m_ending) {
            return;
        }
        Question question = std::move(m_questions.front());
        m_questions.pop_front();
        lock.unlock();
        judge(std::move(question));
    }
}

void StartJudge::judge(Question question) {
    GuardOrder answer;
    answer.kind = GuardOrder::Kind::Answer;
    answer.token = question.token;
    std::shared_ptr<const WatchOptions> options;
    {
        const std::lock_guard lock(m_mutex);
        answer.generation = m_generation;
        options = m_options;
    }
    const std::string path = m_places.pathOf(question.file.get()).value_or(std::string());
    WalkedFile file = fileOf(std::move(question.file), path);
    // What has no path here (it was opened elsewhere, or deleted) is judged all the same.
    if (file.identity.size == 0 || file.identity.size > options->maxFileSize ||
        (!path.empty() && options->folderOf(path) == nullptr)) {
        answer.remember = file.folder->facts.keepsVerdicts;
    } else {
        answer = orderFor(file, path, answer, *question.guard);
    }
    (void)sendMessage(question.guard->get(), &answer, sizeof answer, -1);
}

WalkedFile StartJudge::fileOf(UniqueFd descriptor, const std::string& path) const {
    WalkedFile file;
    struct stat status {};
    const FileSystemFacts facts = fileSystemFacts(descriptor.get()).value_or(FileSystemFacts());
    const std::size_t slash = path.rfind('/');
    if (::fstat(descriptor.get(), &status) == 0) {
        file.identity = identityOf(status, facts.id);
    }
    std::string folder = slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
    file.name = slash == std::string::npos ? path : path.substr(slash + 1);
    file.folder =
        std::make_shared<WalkedFolder>(WalkedFolder{UniqueFd(), std::move(folder), facts});
    file.descriptor = std::move(descriptor);
    return file;
}

GuardOrder StartJudge::orderFor(WalkedFile& file, const std::string& path, GuardOrder answer,
                                const UniqueFd& guard) {
    const VerdictMemory::Begun begun = m_memory.begin(file);
    if (m_memory.isKnownClean(file)) {
        answer.remember = true;
        return answer;
    }
    Judgement judgement = m_engine.judge(file.descriptor.get(), deadline, m_stop.get_token());
    if (judgement.verdict == Verdict::Clean) {
        answer.remember = m_memory.remember(file, begun, judgement.provisional);
    } else if (judgement.verdict == Verdict::NoAnswer) {
        m_listener.unjudged(path);
    } else if (isBad(judgement.verdict)) {
        // What may be a mistake is told, and runs: a person decides.
        answer.refuse = judgement.verdict == Verdict::Unsafe && !isAllowed(judgement.sha256hex);
        // The answer first: what is told takes its time. The second one finds nobody waiting.
        (void)sendMessage(guard.get(), &answer, sizeof answer, -1);
        tellFound(file, std::move(judgement));
        if (answer.refuse) {
            m_listener.refused(path.empty() ? file.name : path);
        }
    }
    return answer;
}

void StartJudge::tellFound(const WalkedFile& file, Judgement judgement) {
    // Only what has a place here can be moved away.
    const WalkedFile placed = openWatched(m_places, file.path());
    if (placed.descriptor && placed.identity.inode == file.identity.inode &&
        placed.identity.fileSystem == file.identity.fileSystem) {
        m_listener.found(foundFileOf(placed, std::move(judgement)));
    }
}

} // namespace korvale::agent
