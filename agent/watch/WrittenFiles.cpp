#include "agent/watch/WrittenFiles.h"

#include "agent/base/Log.h"
#include "agent/scan/FoundFileOf.h"
#include "agent/scan/LowPriority.h"
#include "agent/watch/WatchedFile.h"

#include <sys/stat.h>

namespace korvale::agent {

/// Judges what a walk through a folder meets.
class WrittenFiles::Tree final : public WalkVisitor {
public:
    Tree(WrittenFiles& files, const WatchOptions& options) : m_files(files), m_options(options) {}

    void choose(std::vector<WalkedFile>& files) override {
        std::erase_if(files, [this](const WalkedFile& file) {
            return m_options.folderOf(file.path()) == nullptr ||
                   !m_files.isWorthLooking(file, m_options);
        });
    }
    void file(WalkedFile file) override { m_files.judge(file, m_options); }
    void skipped(Skipped /*reason*/, const std::string& /*path*/) override {}

private:
    WrittenFiles& m_files;
    const WatchOptions& m_options;
};

WrittenFiles::WrittenFiles(Engine& engine, VerdictMemory& memory, const FilePlaces& places,
                           Found found)
    : m_engine(engine),
      m_memory(memory),
      m_places(places),
      m_found(std::move(found)),
      m_permits(std::make_shared<Permits>(foundOnTheirWay)),
      m_options(std::make_shared<WatchOptions>()) {
    for (std::thread& thread : m_threads) {
        thread = std::thread([this] { work(); });
    }
}

WrittenFiles::~WrittenFiles() {
    m_stop.request_stop();
    m_queue.close();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
    m_memory.flush();
}

void WrittenFiles::configure(std::shared_ptr<const WatchOptions> options) {
    const std::lock_guard lock(m_mutex);
    m_options = std::move(options);
}

std::shared_ptr<const WatchOptions> WrittenFiles::options() const {
    const std::lock_guard lock(m_mutex);
    return m_options;
}

void WrittenFiles::add(const std::string& path, bool isTree) {
    const auto current = options();
    if (current->folderOf(path) == nullptr) {
        return;
    }
    if (!m_queue.add({path, isTree})) {
        lookThroughAll();
    }
}

void WrittenFiles::lookThroughAll() {
    if (m_counts.lost.fetch_add(1) == 0) {
        logWarning("More was written than could be heard of: everything that is watched is looked "
                   "through.");
    }
    // There is always room for these: each folder waits once at most, before all else was dropped.
    for (const std::string& folder : options()->folders) {
        (void)m_queue.add({folder, true});
    }
}

void WrittenFiles::doubt(const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        noAnswer(path);
    }
}

void WrittenFiles::askAgain() {
    std::unordered_set<std::string> paths;
    bool tooMany = false;
    {
        const std::lock_guard lock(m_mutex);
        paths.swap(m_unanswered);
        tooMany = std::exchange(m_tooManyUnanswered, false);
    }
    if (tooMany) {
        lookThroughAll();
    }
    for (const std::string& path : paths) {
        add(path, false);
    }
}

std::size_t WrittenFiles::unanswered() const {
    const std::lock_guard lock(m_mutex);
    return m_unanswered.size();
}

void WrittenFiles::work() {
    lowerOwnPriority();
    while (const std::optional<PathQueue::Job> job = m_queue.pop()) {
        look(*job);
    }
}

void WrittenFiles::look(const PathQueue::Job& job) {
    const auto current = options();
    if (job.isTree) {
        lookThrough(job.path, *current);
        return;
    }
    WalkedFile file = openWatched(m_places, job.path);
    if (file.descriptor && file.identity.size > 0 && isWorthLooking(file, *current)) {
        judge(file, *current);
    }
}

void WrittenFiles::lookThrough(const std::string& folder, const WatchOptions& options) {
    // A configured folder may hold several watched file systems, and a moved one lies on one.
    for (const WatchedRoot& root : m_places.rootsIn(folder)) {
        const std::string start = root.point.size() > folder.size() ? root.point : folder;
        UniqueFd descriptor = openWatchedFolder(root, start);
        if (descriptor) {
            Tree tree(*this, options);
            TreeWalk({options.excluded, false, {}}, tree)
                .walk(std::move(descriptor), start, m_stop.get_token());
        }
    }
}

bool WrittenFiles::isWorthLooking(const WalkedFile& file, const WatchOptions& options) {
    if (file.identity.size > options.maxFileSize) {
        ++m_counts.notScanned;
        return false;
    }
    if (m_memory.isKnownClean(file)) {
        ++m_counts.judged;
        return false;
    }
    return true;
}

void WrittenFiles::judge(WalkedFile& file, const WatchOptions& options) {
    struct stat status {};
    if (::fstat(file.descriptor.get(), &status) == 0 &&
        options.engine.contain(file.path(), status.st_uid)) {
        return; // written before anybody could tell the number of its process
    }
    const VerdictMemory::Begun begun = m_memory.begin(file);
    Judgement judgement =
        m_engine.judge(file.descriptor.get(), options.fileDeadline, m_stop.get_token());
    switch (judgement.verdict) {
    case Verdict::NoAnswer:
        noAnswer(file.path());
        return;
    case Verdict::NotScanned:
        ++m_counts.notScanned;
        return;
    case Verdict::Clean:
        (void)m_memory.remember(file, begun, judgement.provisional);
        break;
    case Verdict::Abnormal:
    case Verdict::Unsafe: {
        FoundFile found = foundFileOf(file, std::move(judgement));
        found.permit = m_permits->take(m_stop.get_token());
        m_found(std::move(found));
        break;
    }
    }
    ++m_counts.judged;
}

void WrittenFiles::noAnswer(const std::string& path) {
    const std::lock_guard lock(m_mutex);
    if (m_unanswered.size() < longestRetryList) {
        m_unanswered.insert(path);
    } else {
        m_tooManyUnanswered = true;
    }
}

} // namespace korvale::agent
