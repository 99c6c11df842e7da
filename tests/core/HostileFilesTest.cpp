// Whatever stands where the program expects one of the files it reads: it is read or counts as
// absent, at once, and nothing else happens.
#include "core/AdvancedMode.h"
#include "core/InfoDictionary.h"
#include "fakes/FakeClock.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/WaitUntil.h"
#include "model/HostCache.h"
#include "model/UpdaterStatusFolder.h"
#include "platform/IniUserDefaults.h"
#include "platform/RegularFile.h"
#include "shell/NotificationHistory.h"
#include "shell/WindowMemory.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace korvale {
namespace {

/// One of the files that the program reads.
struct Reader {
    const char* file; ///< below a folder that stands for all it reads from
    QByteArray valid;
    bool (*isTaken)(const QString& folder); ///< whether the file's content was
};

bool hostCacheTakes(const QString& folder) {
    fakes::MemoryUserDefaults defaults;
    HostCache cache(defaults, folder);
    return cache.readList(QStringLiteral("file_states.log"), {}).state == ListState::Changed;
}

bool statusFolderTakes(const QString& folder) {
    const std::optional<QString> path = UpdaterStatusFolder(folder).takeNext();
    return path && readStatusFile(*path).value_or(QString()) == u"c3RhdHVz";
}

bool advancedModeTakes(const QString& folder) {
    return isAdvanceMode(CommandLine({"korvale-ui"}), folder);
}

bool infoDictionaryTakes(const QString& folder) {
    return InfoDictionary::load(folder + QStringLiteral("/Info.json"), {}).isInstalled();
}

bool userDefaultsTake(const QString& folder) {
    return IniUserDefaults(folder + QStringLiteral("/KorvaleUI.conf"))
        .boolForKey(QStringLiteral("UserNotificationOn"));
}

bool windowMemoryTakes(const QString& folder) {
    return !WindowMemory(folder + QStringLiteral("/window.json")).load().geometry.isEmpty();
}

bool notificationHistoryTakes(const QString& folder) {
    const fakes::FakeClock clock;
    NotificationHistory history(folder + QStringLiteral("/told.json"), clock);
    history.load();
    return waitUntil([&] { return history.isLoaded(); }) && !history.records().isEmpty();
}

const Reader readers[] = {
    {"file_states.log", R"({"/a":{"State":9}})", hostCacheTakes},
    {"1.kvupupdate", "c3RhdHVz", statusFolderTakes},
    {"Korvale/uiArgs", "x -a", advancedModeTakes},
    {"Info.json", R"({"CFBundleName":"K"})", infoDictionaryTakes},
    {"KorvaleUI.conf", "[General]\nUserNotificationOn=1\n", userDefaultsTake},
    {"window.json", R"({"geometry":"AdnQyw=="})", windowMemoryTakes},
    {"told.json", R"([{"when":5,"title":"a","message":"b"}])", notificationHistoryTakes},
};

class HostileFile : public testing::TestWithParam<Reader> {
protected:
    HostileFile() { QDir(folder.path()).mkdir(QStringLiteral("Korvale")); }

    [[nodiscard]] QByteArray path(const char* name) const {
        return QFile::encodeName(folder.filePath(QString::fromLatin1(name)));
    }
    [[nodiscard]] QByteArray path() const { return path(GetParam().file); }
    void write(const QByteArray& content) const {
        QFile file(QFile::decodeName(path()));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(content), content.size());
    }
    /// Far less than anything that waits would take, and more than a busy machine needs.
    [[nodiscard]] bool isTaken() const {
        QElapsedTimer timer;
        timer.start();
        const bool result = GetParam().isTaken(folder.path());
        EXPECT_LT(timer.elapsed(), 20'000);
        return result;
    }

    QTemporaryDir folder;
};

TEST_P(HostileFile, IsTakenWhenItIsNot) {
    write(GetParam().valid);
    EXPECT_TRUE(isTaken());
}

TEST_P(HostileFile, ThatIsAbsentIsNone) {
    EXPECT_FALSE(isTaken());
}

TEST_P(HostileFile, ThatIsAFifoWithOrWithoutAWriterIsNone) {
    ASSERT_EQ(::mkfifo(path().constData(), 0600), 0);
    EXPECT_FALSE(isTaken());
    QFile::remove(QFile::decodeName(path()));
    ASSERT_EQ(::mkfifo(path().constData(), 0600), 0);
    const int writer = ::open(path().constData(), O_RDWR | O_CLOEXEC);
    ASSERT_GE(writer, 0);
    ASSERT_EQ(::write(writer, GetParam().valid.constData(), 4), 4);
    EXPECT_FALSE(isTaken());
    ::close(writer);
}

TEST_P(HostileFile, ThatIsASocketIsNone) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = path();
    ASSERT_LT(static_cast<std::size_t>(name.size()), sizeof address.sun_path);
    std::copy(name.begin(), name.end(), std::begin(address.sun_path));
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const void* const generic = &address;
    ASSERT_EQ(::bind(socket, static_cast<const sockaddr*>(generic), sizeof address), 0);
    EXPECT_FALSE(isTaken());
    ::close(socket);
}

TEST_P(HostileFile, ThatLeadsToADeviceIsNone) {
    for (const char* device : {"/dev/zero", "/dev/full", "/dev/tty", "/dev/random"}) {
        ASSERT_EQ(::symlink(device, path().constData()), 0);
        EXPECT_FALSE(isTaken()) << device;
        QFile::remove(QFile::decodeName(path()));
    }
}

TEST_P(HostileFile, ThatIsAFolderIsNone) {
    ASSERT_EQ(::mkdir(path().constData(), 0700), 0);
    EXPECT_FALSE(isTaken());
}

TEST_P(HostileFile, ThatIsALoopOfLinksIsNone) {
    ASSERT_EQ(::symlink(path("loop").constData(), path().constData()), 0);
    ASSERT_EQ(::symlink(path().constData(), path("loop").constData()), 0);
    EXPECT_FALSE(isTaken());
}

TEST_P(HostileFile, ThatMayNotBeReadIsNone) {
    write(GetParam().valid);
    ASSERT_EQ(::chmod(path().constData(), 0), 0);
    const bool isRoot = ::geteuid() == 0; // who may read everything, so somebody else has to try
    if (isRoot) {
        constexpr uid_t nobody = 65534;
        ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
        ASSERT_EQ(::seteuid(nobody), 0);
    }
    EXPECT_FALSE(isTaken());
    if (isRoot) {
        ASSERT_EQ(::seteuid(0), 0);
    }
}

TEST_P(HostileFile, OfOneByteMoreThan256MebibytesIsNone) {
    write(GetParam().valid);
    ASSERT_EQ(::truncate(path().constData(), static_cast<off_t>(RegularFile::maxFileSize) + 1), 0);
    EXPECT_FALSE(isTaken());
}

TEST_P(HostileFile, NestedAHundredThousandDeepIsNone) {
    write(QByteArray(100'000, '[') + QByteArray(100'000, ']'));
    EXPECT_FALSE(isTaken());
    write("{\"a\":" + QByteArray(100'000, '{'));
    EXPECT_FALSE(isTaken());
}

TEST_P(HostileFile, OfEveryByteIsNone) {
    QByteArray every;
    for (int byte = 0; byte < 256; ++byte) {
        every += static_cast<char>(byte);
    }
    write(every);
    EXPECT_FALSE(isTaken());
}

TEST_P(HostileFile, ThatChangesWhileItIsReadIsReadOrNone) {
    std::atomic<bool> isOver = false;
    std::thread other([this, &isOver] {
        const QByteArray name = path();
        const QByteArray next = path("next");
        for (int i = 0; !isOver; ++i) {
            const int file = ::open(i % 2 == 0 ? name.constData() : next.constData(),
                                    O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
            const QByteArray& valid = GetParam().valid;
            (void)!::write(file, valid.constData(), static_cast<std::size_t>(valid.size()));
            (void)!::ftruncate(file, (i % 5) * 300'000); // it grows and shrinks
            (void)!::ftruncate(file, valid.size());
            ::close(file);
            if (i % 2 == 1) {
                ::rename(next.constData(), name.constData());
            } else if (i % 7 == 0) {
                ::unlink(name.constData());
            }
        }
    });
    for (int i = 0; i < 500; ++i) {
        (void)isTaken();
    }
    isOver = true;
    other.join();
    QFile::remove(QFile::decodeName(path()));
    write(GetParam().valid);
    EXPECT_TRUE(isTaken());
}

INSTANTIATE_TEST_SUITE_P(EachReader, HostileFile, testing::ValuesIn(readers),
                         [](const testing::TestParamInfo<Reader>& reader) {
                             return QFileInfo(QString::fromLatin1(reader.param.file))
                                 .baseName()
                                 .remove(u'_')
                                 .prepend(u'_')
                                 .toStdString();
                         });

} // namespace
} // namespace korvale
