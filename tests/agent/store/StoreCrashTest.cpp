#include "agent/fakes/ScratchFolder.h"
#include "agent/store/Store.h"

#include <csignal>
#include <map>
#include <sys/wait.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

/// What the writer says after `Store::add` returned: that finding is on the disk.
struct Acknowledged {
    int serial;
    std::uintmax_t logSize; // bytes of the write-ahead log at that moment
};

Finding numbered(int serial) {
    Finding finding;
    finding.id = std::string(64, 'a');
    finding.path = "/found/" + std::to_string(serial);
    finding.firstSeen = finding.lastSeen = serial;
    return finding;
}

/// A process that adds findings until it is ended, each twice.
class Writer {
public:
    Writer(const std::string& path, int firstSerial) {
        int ends[2];
        EXPECT_EQ(::pipe(ends), 0);
        m_pid = ::fork();
        if (m_pid == 0) {
            ::close(ends[0]);
            write(path, firstSerial, ends[1]);
        }
        ::close(ends[1]);
        m_said = ends[0];
    }
    ~Writer() {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
        ::close(m_said);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// The next finding that is written; waits for it.
    [[nodiscard]] std::optional<Acknowledged> next() const {
        Acknowledged acknowledged{};
        return ::read(m_said, &acknowledged, sizeof acknowledged) == sizeof acknowledged
                   ? std::optional(acknowledged)
                   : std::nullopt;
    }
    void stop() const {
        ::kill(m_pid, SIGSTOP);
        ::waitpid(m_pid, nullptr, WUNTRACED);
    }
    void goOn() const { ::kill(m_pid, SIGCONT); }
    void kill() const {
        ::kill(m_pid, SIGKILL);
        ::waitpid(m_pid, nullptr, 0);
    }

private:
    [[noreturn]] static void write(const std::string& path, int serial, int say) {
        std::string error;
        const auto store = Store::open(path, error);
        while (store != nullptr) {
            store->add(numbered(serial));
            store->add(numbered(serial));
            std::error_code ignored;
            const Acknowledged done{serial++, std::filesystem::file_size(path + "-wal", ignored)};
            if (::write(say, &done, sizeof done) != sizeof done) {
                break;
            }
        }
        ::_exit(1);
    }

    pid_t m_pid = -1;
    int m_said = -1;
};

/// Serial numbers and how often each is there.
std::map<int, int> serialsIn(const std::string& path) {
    std::string error;
    const auto store = Store::open(path, error);
    std::map<int, int> serials;
    if (store == nullptr || !store->notice().empty()) {
        ADD_FAILURE() << error << (store == nullptr ? "" : store->notice());
        return serials;
    }
    for (const Finding& finding : store->findings()) {
        ++serials[static_cast<int>(finding.firstSeen)];
    }
    return serials;
}

void expectAllOnce(const std::map<int, int>& serials, int lastAcknowledged) {
    for (int serial = 0; serial <= lastAcknowledged; ++serial) {
        ASSERT_TRUE(serials.contains(serial)) << "finding " << serial << " is lost";
    }
    for (const auto& [serial, times] : serials) {
        ASSERT_EQ(times, 1) << "finding " << serial;
    }
}

TEST(StoreCrashTest, LosesNoFindingAndHasNoneTwiceAfterTwoHundredKills) {
    const ScratchFolder folder;
    const std::string path = folder / "findings.db";
    int last = -1;
    for (int round = 0; round < 200; ++round) {
        const Writer writer(path, last + 1);
        // Another number of findings each time: killed in the opening, in a write, in a checkpoint.
        for (int i = 0; i < round % 11; ++i) {
            const auto acknowledged = writer.next();
            ASSERT_TRUE(acknowledged);
            last = acknowledged->serial;
        }
        writer.kill();
        while (const auto acknowledged = writer.next()) {
            last = acknowledged->serial;
        }
        ASSERT_NO_FATAL_FAILURE(expectAllOnce(serialsIn(path), last)) << "round " << round;
    }
    EXPECT_GT(last, 500);
}

/// What a disk holds that lost its power: the files as far as they were written for certain.
void copyAsAfterPowerLoss(const std::string& from, const std::string& to, std::uintmax_t logSize) {
    std::filesystem::remove(to + "-shm");
    std::filesystem::copy_file(from, to, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::copy_file(from + "-wal", to + "-wal",
                               std::filesystem::copy_options::overwrite_existing);
    if (std::filesystem::file_size(to + "-wal") > logSize) {
        std::filesystem::resize_file(to + "-wal", logSize);
    }
}

TEST(StoreCrashTest, KeepsWhatWasWrittenBeforeThePowerWent) {
    const ScratchFolder folder;
    const std::string path = folder / "findings.db";
    const Writer writer(path, 0);
    for (int cut = 0; cut < 20; ++cut) {
        std::optional<Acknowledged> acknowledged;
        for (int i = 0; i < 5 + cut; ++i) {
            acknowledged = writer.next();
            ASSERT_TRUE(acknowledged);
        }
        writer.stop();
        const std::string copy = folder / ("copy" + std::to_string(cut) + ".db");
        // The log never shrinks; a torn frame after the last certain one must not matter.
        ASSERT_NO_FATAL_FAILURE(copyAsAfterPowerLoss(
            path, copy, acknowledged->logSize + static_cast<std::uintmax_t>(cut) * 333));
        ASSERT_NO_FATAL_FAILURE(expectAllOnce(serialsIn(copy), acknowledged->serial));
        writer.goOn();
    }
}

} // namespace
} // namespace korvale::agent
