#include "core/UpdaterWait.h"

#include "core/TerminalOutput.h"
#include "core/TerminalStatus.h"
#include "fakes/UpdaterMessage.h"
#include "fakes/WaitUntil.h"

#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace korvale {
namespace {

using namespace std::chrono_literals;

class UpdaterWaitTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(::pipe2(m_pipe.data(), O_NONBLOCK), 0); }
    void TearDown() override {
        ::close(m_pipe[0]);
        ::close(m_pipe[1]);
    }
    void say(const char* file, const QString& content) const {
        QFile status(m_folder.filePath(QString::fromLatin1(file)));
        ASSERT_TRUE(status.open(QIODevice::WriteOnly));
        status.write(content.toUtf8());
    }
    static QString message(const char* text) {
        return fakes::updaterMessage(QString::fromUtf8(text), QDate::currentDate());
    }
    [[nodiscard]] QByteArray printed() const {
        std::array<char, 4096> bytes{};
        const ssize_t size = ::read(m_pipe[0], bytes.data(), bytes.size());
        return {bytes.data(), size > 0 ? size : 0};
    }
    int statusOf(UpdaterWait& wait) {
        std::optional<int> ending;
        QObject::connect(&wait, &TerminalWait::ended, &wait,
                         [&](int status, const char* complaint) {
                             ending = status;
                             m_complaint = complaint;
                         });
        wait.begin();
        EXPECT_TRUE(waitUntil([&ending] { return ending.has_value(); }));
        return ending.value_or(-1);
    }

    std::array<int, 2> m_pipe{};
    QTemporaryDir m_folder;
    const char* m_complaint = nullptr;
};

TEST_F(UpdaterWaitTest, PrintsWhatIsSaidFromNowOnAndSafely) {
    say("1.kvupupdate", message("long ago"));
    TerminalOutput output(m_pipe[1], m_pipe[1]);
    UpdaterWait wait(output, 700ms, UpdaterStatusFolder(m_folder.path()));
    say("2.kvupupdate", message("asking\x1b[2J"));
    say("3.kvupupdate", QStringLiteral("not encrypted"));
    say("4.kvupupdate", message("done"));
    EXPECT_EQ(statusOf(wait), TerminalStatus::good);
    EXPECT_EQ(printed(), QByteArray("asking[U+001B][2J\ndone\n"));
    EXPECT_EQ(m_complaint, nullptr);
}

TEST_F(UpdaterWaitTest, AnUpdaterThatSaysNothingIsNoAnswer) {
    TerminalOutput output(m_pipe[1], m_pipe[1]);
    UpdaterWait wait(output, 300ms, UpdaterStatusFolder(m_folder.path()));
    EXPECT_EQ(statusOf(wait), TerminalStatus::noAnswer);
    EXPECT_STREQ(m_complaint, "HPS_TermNoUpdater");
    EXPECT_EQ(printed(), QByteArray());
}

TEST_F(UpdaterWaitTest, AnAgentThatStopsEndsIt) {
    TerminalOutput output(m_pipe[1], m_pipe[1]);
    UpdaterWait wait(output, 1h, UpdaterStatusFolder(m_folder.path()));
    QTimer::singleShot(0, &wait, [&wait] { wait.told(AgentNotification::AgentStopped); });
    EXPECT_EQ(statusOf(wait), TerminalStatus::noAgent);
    EXPECT_STREQ(m_complaint, "HPS_TermLeft");
}

} // namespace
} // namespace korvale
