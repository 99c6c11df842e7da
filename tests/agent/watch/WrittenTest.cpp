#include "WrittenFixture.h"

#include <sched.h>

namespace korvale::agent {
namespace {

TEST_F(WrittenTest, AWrittenFileIsJudged) {
    EXPECT_TRUE(m_watch->isComplete());
    EXPECT_EQ(m_watch->systems().at(0).mode, WatchMode::Full);
    byAnother([this] {
        writeFile(m_folder / "good", "good");
        writeFile(m_folder / "evil", "bad thing");
    });
    EXPECT_TRUE(finds(m_folder / "evil"));
    settle();
    EXPECT_EQ(m_engine.timesSeen("good"), 1);
}

TEST_F(WrittenTest, WhatIsMovedInIsJudgedWithAllThatIsInIt) {
    const std::string outside = m_folder / "outside";
    std::filesystem::create_directories(outside + "/folder/deep");
    watch({m_folder / "inside"});
    std::filesystem::create_directories(m_folder / "inside");
    writeFile(outside + "/folder/deep/evil", "bad deep");
    writeFile(outside + "/file", "bad file");
    byAnother([&] {
        std::filesystem::rename(outside + "/file", m_folder / "inside/file");
        std::filesystem::rename(outside + "/folder", m_folder / "inside/folder");
    });
    EXPECT_TRUE(finds(m_folder / "inside/file"));
    EXPECT_TRUE(finds(m_folder / "inside/folder/deep/evil"));
    EXPECT_EQ(m_found.size(), 2U) << "what lies outside is not looked at";
}

TEST_F(WrittenTest, WhatIsExcludedIsNotJudged) {
    watch({m_folder.path()}, m_folder / "own");
    std::filesystem::create_directory(m_folder / "own");
    byAnother([this] { writeFile(m_folder / "own/evil", "bad but own"); });
    settle();
    EXPECT_EQ(m_engine.timesSeen("bad but own"), 0);
}

TEST_F(WrittenTest, FilesOfTheAgentAndOfTheEngineAreNotJudged) {
    writeFile(m_folder / "own", "bad own");
    std::array<int, 2> gate{};
    ASSERT_EQ(::pipe(gate.data()), 0);
    const pid_t engine = ::fork();
    if (engine == 0) {
        char byte = 0;
        (void)!::read(gate[0], &byte, 1);
        writeFile(m_folder / "temporary", "bad temporary");
        ::_exit(0);
    }
    m_watch->exempt({engine});
    ASSERT_EQ(::write(gate[1], "x", 1), 1);
    ::waitpid(engine, nullptr, 0);
    settle();
    EXPECT_EQ(m_engine.timesSeen("bad own"), 0);
    EXPECT_EQ(m_engine.timesSeen("bad temporary"), 0);
}

TEST_F(WrittenTest, WhatTheEnginesUserWritesInItsFolderIsNotJudged) {
    constexpr uid_t engine = 4711;
    const std::string temporary = m_folder / "temporary";
    ASSERT_EQ(::mkdir(temporary.c_str(), 0755), 0);
    WatchOptions options;
    options.folders = {m_folder.path()};
    options.engine = {temporary, engine};
    m_watch->configure(options);
    const auto write = [](const std::string& path, uid_t owner) {
        byAnother([&] {
            const UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
            ASSERT_EQ(::fchown(file.get(), owner, 0), 0);
            const std::string text = "bad " + path;
            ASSERT_GT(::write(file.get(), text.data(), text.size()), 0);
        });
    };
    write(temporary + "/unpacked", engine);
    write(temporary + "/of-somebody-else", 1);
    write(m_folder / "elsewhere", engine);
    EXPECT_TRUE(finds(temporary + "/of-somebody-else"));
    EXPECT_TRUE(finds(m_folder / "elsewhere"));
    settle();
    EXPECT_EQ(m_engine.timesSeen("bad " + temporary + "/unpacked"), 0);
}

TEST_F(WrittenTest, AWriterInAnotherMountNamespaceIsSeen) {
    byAnother([this] {
        ASSERT_EQ(::unshare(CLONE_NEWNS), 0);
        writeFile(m_folder / "evil", "bad from elsewhere");
    });
    EXPECT_TRUE(finds(m_folder / "evil"));
}

TEST_F(WrittenTest, FilesThatComeAndGoDoNoHarm) {
    byAnother([this] {
        for (int round = 0; round < 200; ++round) {
            const std::string name = m_folder / ("f" + std::to_string(round));
            writeFile(name, "bad " + std::to_string(round));
            if (round % 3 == 0) {
                std::filesystem::rename(name, name + ".moved");
            } else if (round % 3 == 1) {
                std::filesystem::remove(name);
            } else {
                std::filesystem::resize_file(name, 0);
            }
        }
    });
    EXPECT_TRUE(finds(m_folder / "f198.moved")) << "a renamed one is found where it is";
    settle();
}

TEST_F(WrittenTest, WhatTheEngineDidNotAnswerIsAskedAgainWhenItIsBack) {
    m_engine.onJudge([](const std::string& content, std::stop_token) {
        return content.starts_with("bad mark") ? FakeEngine::byContent(content)
                                               : Judgement{Verdict::NoAnswer, {}, "gone", {}};
    });
    byAnother([this] { writeFile(m_folder / "evil", "bad later"); });
    ASSERT_TRUE(waitUntil([this] { return m_watch->written().unanswered() == 1; }));
    m_engine.onJudge({});
    m_watch->engineAnswered(m_engine.state());
    EXPECT_TRUE(finds(m_folder / "evil"));
}

TEST_F(WrittenTest, WhatWasNotHeardOfIsFoundByLookingThroughAll) {
    std::filesystem::create_directories(m_folder / "some/folder");
    writeFile(m_folder / "some/folder/evil", "bad unheard"); // our own files are not heard of
    settle();
    ASSERT_EQ(m_engine.timesSeen("bad unheard"), 0);
    m_watch->lookThroughAll();
    EXPECT_TRUE(finds(m_folder / "some/folder/evil"));
    EXPECT_EQ(m_watch->written().counts().lost, 1U);
}

TEST_F(WrittenTest, TheKernelSaysWhenItDroppedEvents) {
    const EventGroup group(EventGroup::Kind::Names);
    const UniqueFd folder(::open(m_folder.path().c_str(), O_RDONLY | O_DIRECTORY));
    ASSERT_EQ(group.mark(folder.get()), 0);
    const int most = std::stoi(readFile("/proc/sys/fs/fanotify/max_queued_events"));
    ASSERT_LT(most, 1'000'000);
    for (int number = 0; number <= most + 10; ++number) {
        const UniqueFd file(::open((m_folder / std::to_string(number)).c_str(),
                                   O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        ASSERT_TRUE(file.isOpen());
    }
    bool overflow = false;
    std::size_t read = 0;
    for (FileEvents events = group.read(); !events.events.empty() || events.overflow;
         events = group.read()) {
        read += events.events.size();
        overflow = overflow || events.overflow;
    }
    EXPECT_TRUE(overflow);
    EXPECT_GE(read, static_cast<std::size_t>(most) - 10);
}

TEST_F(WrittenTest, AWatchedFileSystemCanBeUnmountedAndAnotherOneMounted) {
    const std::string stick = m_folder / "stick";
    std::filesystem::create_directory(stick);
    {
        const ScratchMount mounted = ScratchMount::tmpfs(stick, "size=1m");
        ASSERT_TRUE(mounted.mounted());
        ASSERT_TRUE(waitUntil([this] { return m_watch->systems().size() == 2; }));
        byAnother([&] { writeFile(stick + "/evil", "bad on a stick"); });
        EXPECT_TRUE(finds(stick + "/evil"));
        bool unmounted = false;
        EXPECT_TRUE(waitUntil([&] {
            return unmounted = unmounted || ::umount2(stick.c_str(), 0) == 0;
        })) << "it is held: "
            << std::strerror(errno);
    }
    ASSERT_TRUE(waitUntil([this] { return m_watch->systems().size() == 1; }));
    settle();
}

TEST_F(WrittenTest, TenThousandFilesAreAllJudged) {
    constexpr std::size_t many = 10'000;
    byAnother([this] {
        for (std::size_t number = 0; number < many; ++number) {
            const UniqueFd file(::open((m_folder / std::to_string(number)).c_str(),
                                       O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
            const std::string content = "good " + std::to_string(number);
            ASSERT_EQ(::write(file.get(), content.data(), content.size()),
                      static_cast<ssize_t>(content.size()));
        }
    });
    for (std::size_t next = many / 10; next <= many; next += many / 10) { // as long as it goes on
        ASSERT_TRUE(waitUntil([&] { return m_engine.seen().size() >= next; }))
            << m_engine.seen().size();
    }
}

TEST_F(WrittenTest, NothingIsWatchedWithoutAFolder) {
    m_watch->configure({});
    ASSERT_TRUE(waitUntil([this] { return m_watch->systems().empty(); }));
    EXPECT_TRUE(m_watch->isComplete());
    byAnother([this] { writeFile(m_folder / "evil", "bad unseen"); });
    watch({m_folder.path()});
    settle();
    EXPECT_EQ(m_engine.timesSeen("bad unseen"), 0);
}

} // namespace
} // namespace korvale::agent
