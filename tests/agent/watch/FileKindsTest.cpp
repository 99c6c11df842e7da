#include "WrittenFixture.h"
#include "agent/fakes/Needs.h"
#include "agent/store/VerdictCache.h"

#include <condition_variable>

namespace korvale::agent {
namespace {

/// An engine whose first look at a content takes until the test says so.
class SlowLook {
public:
    SlowLook(FakeEngine& engine, std::string content) : m_content(std::move(content)) {
        engine.onJudge([this](const std::string& seen, std::stop_token stop) {
            if (seen == m_content && !m_begun.exchange(true)) {
                while (!m_go && !stop.stop_requested()) {
                    ::usleep(1000);
                }
            }
            return FakeEngine::byContent(seen);
        });
    }
    [[nodiscard]] bool begun() const { return m_begun; }
    void go() { m_go = true; }

private:
    const std::string m_content;
    std::atomic<bool> m_begun = false;
    std::atomic<bool> m_go = false;
};

class FileKindsTest : public WrittenTest {
protected:
    void TearDown() override {
        WrittenTest::TearDown();
        m_slow.reset();
    }
    std::unique_ptr<SlowLook> m_slow;
};

TEST_F(FileKindsTest, AHardLinkIsFoundByTheNameThatItWasWrittenBy) {
    writeFile(m_folder / "first", "good");
    byAnother([this] {
        std::filesystem::create_hard_link(m_folder / "first", m_folder / "second");
        writeFile(m_folder / "second", "bad by its second name");
    });
    EXPECT_TRUE(finds(m_folder / "second"));
}

TEST_F(FileKindsTest, ASparseFileIsJudgedUpToTheLimit) {
    const auto sparse = [this](const std::string& name, off_t size) {
        // Closed once, with its size: in between it would be a small one.
        const UniqueFd file(
            ::open((m_folder / name).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        const std::string content = "bad sparse " + name;
        ASSERT_EQ(::ftruncate(file.get(), size), 0);
        ASSERT_EQ(::write(file.get(), content.data(), content.size()),
                  static_cast<ssize_t>(content.size()));
    };
    byAnother([&] {
        sparse("large", off_t{512} << 20);
        sparse("larger", off_t{2} << 30);
    });
    EXPECT_TRUE(finds(m_folder / "large"));
    EXPECT_TRUE(waitUntil([this] { return m_watch->written().counts().notScanned > 0; }));
    EXPECT_EQ(std::count(m_found.begin(), m_found.end(), m_folder / "larger"), 0);
}

TEST_F(FileKindsTest, AFileThatIsReplacedWhileItIsJudgedIsJudgedAgain) {
    m_slow = std::make_unique<SlowLook>(m_engine, "good first");
    byAnother([this] { writeFile(m_folder / "file", "good first"); });
    ASSERT_TRUE(waitUntil([this] { return m_slow->begun(); }));
    byAnother([this] {
        writeFile(m_folder / "new", "bad second");
        std::filesystem::rename(m_folder / "new", m_folder / "file");
    });
    m_slow->go();
    EXPECT_TRUE(finds(m_folder / "file"));
}

TEST_F(FileKindsTest, AFileThatIsRenamedWhileItIsJudgedIsFoundWhereItIs) {
    m_slow = std::make_unique<SlowLook>(m_engine, "bad moving");
    byAnother([this] { writeFile(m_folder / "before", "bad moving"); });
    ASSERT_TRUE(waitUntil([this] { return m_slow->begun(); }));
    byAnother([this] { std::filesystem::rename(m_folder / "before", m_folder / "after"); });
    m_slow->go();
    EXPECT_TRUE(finds(m_folder / "after"));
}

TEST_F(FileKindsTest, AFileThatIsTruncatedOrRemovedWhileItIsJudgedHoldsUpNobody) {
    m_slow = std::make_unique<SlowLook>(m_engine, "good and gone");
    byAnother([this] {
        writeFile(m_folder / "file", "good and gone");
        writeFile(m_folder / "other", "good and gone");
    });
    ASSERT_TRUE(waitUntil([this] { return m_slow->begun(); }));
    byAnother([this] {
        std::filesystem::resize_file(m_folder / "file", 0);
        std::filesystem::remove(m_folder / "other");
    });
    m_slow->go();
    settle();
    byAnother([this] { writeFile(m_folder / "file", "bad now"); });
    EXPECT_TRUE(finds(m_folder / "file"));
}

/// With a cache, on a file system that it believes.
class SignatureUpdateTest : public FileKindsTest {
protected:
    void mountAt(const std::string& place) override {
        m_mount = std::make_unique<ScratchMount>(ScratchMount::ext4(place, 32));
        KORVALE_NEEDS(mounted(*m_mount, "ext4"));
    }
    VerdictCache* cache() override {
        std::string error;
        m_cache = VerdictCache::open(m_state / "verdicts", error);
        EXPECT_TRUE(m_cache) << error;
        return m_cache.get();
    }
    void TearDown() override {
        FileKindsTest::TearDown();
        m_mount.reset();
        std::filesystem::remove(m_folder.path() + ".image");
    }
    /// Everything was looked through: twice, as the first look may still be at it when the second
    /// begins to find.
    void lookTwice() {
        for (int count = 0; count < 2; ++count) {
            // Nobody hears of what the test writes itself.
            const std::string unheard = m_folder / ("unheard" + std::to_string(m_marks++));
            writeFile(unheard, "bad unheard");
            m_watch->lookThroughAll();
            ASSERT_TRUE(finds(unheard));
        }
    }

    ScratchFolder m_state;
    std::unique_ptr<VerdictCache> m_cache;
};

TEST_F(SignatureUpdateTest, WithTheSameSignaturesAFileIsJudgedOnce) {
    writeFile(m_folder / "file", "good");
    ::usleep(200'000); // a file that was changed a moment ago is not remembered
    lookTwice();
    EXPECT_EQ(m_engine.timesSeen("good"), 1);
}

TEST_F(SignatureUpdateTest, AVerdictByOldSignaturesIsNotRemembered) {
    writeFile(m_folder / "file", "good");
    ::usleep(200'000);
    m_slow = std::make_unique<SlowLook>(m_engine, "good");
    m_watch->lookThroughAll();
    ASSERT_TRUE(waitUntil([this] { return m_slow->begun(); }));
    m_engine.setKey("new");
    m_watch->engineAnswered(m_engine.state());
    m_slow->go();
    lookTwice();
    EXPECT_EQ(m_engine.timesSeen("good"), 2) << "again by the new ones, and then it is known";
}

} // namespace
} // namespace korvale::agent
