#include "core/TerminalOutput.h"

#include <algorithm>
#include <array>
#include <clocale>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

namespace korvale {
namespace {

/// Two ends of something that is written to; `far` is read.
struct Ends {
    int near = -1;
    int far = -1;

    /// What is there, once it is `least` bytes: a terminal hands on in its own time.
    [[nodiscard]] QByteArray read(qsizetype least = 0) const {
        QByteArray all;
        do {
            pollfd waiting{far, POLLIN, 0};
            if (all.size() < least && ::poll(&waiting, 1, 20'000) != 1) {
                break;
            }
            std::array<char, 4096> bytes{};
            const ssize_t size = ::read(far, bytes.data(), bytes.size());
            all.append(bytes.data(), std::max<ssize_t>(size, 0));
        } while (all.size() < least);
        return all;
    }
    void expect(const QByteArray& bytes) const { EXPECT_EQ(read(bytes.size()), bytes); }
    ~Ends() {
        ::close(near);
        ::close(far);
    }
};

class TerminalOutputTest : public testing::Test {
protected:
    void SetUp() override {
        std::setlocale(LC_ALL, "C.UTF-8");
        qputenv("TERM", "xterm");
        std::array<int, 2> pipe{};
        ASSERT_EQ(::pipe2(pipe.data(), O_NONBLOCK), 0);
        m_pipe.far = pipe[0];
        m_pipe.near = pipe[1];
        winsize size{};
        size.ws_col = 30;
        size.ws_row = 10;
        ASSERT_EQ(::openpty(&m_terminal.far, &m_terminal.near, nullptr, nullptr, &size), 0);
        ::fcntl(m_terminal.far, F_SETFL, O_NONBLOCK);
    }
    Ends m_pipe;
    Ends m_terminal;
};

TEST_F(TerminalOutputTest, OnATerminalTheProgressIsOneLineThatRewritesItself) {
    {
        TerminalOutput output(m_terminal.near);
        output.progress(QStringLiteral("1"), QStringLiteral("/a"));
        output.progress(QStringLiteral("2"), QStringLiteral("/b"));
        m_terminal.expect("\r1 /a\x1b[K\r2 /b\x1b[K");
        output.say(QStringLiteral("done"));
        m_terminal.expect("\r\x1b[Kdone\r\n");
        output.progress(QStringLiteral("3"), QStringLiteral("/c"));
        m_terminal.expect("\r3 /c\x1b[K");
    }
    m_terminal.expect("\r\x1b[K"); // no rest is left on screen
}

TEST_F(TerminalOutputTest, ALongPathLosesItsStartAndNeverWraps) {
    TerminalOutput output(m_terminal.near);
    output.progress(QStringLiteral("Files: 7"), QStringLiteral("/home/ada/a long way down/x.exe"));
    m_terminal.expect("\rFiles: 7 " +
                      endInColumns(QStringLiteral("/home/ada/a long way down/x.exe"), 20).toUtf8() +
                      "\x1b[K");
    EXPECT_EQ(columnsOf(endInColumns(QStringLiteral("/home/ada/a long way down/x.exe"), 20)), 20);
}

TEST_F(TerminalOutputTest, ElsewhereTheProgressIsAPlainLineNowAndThen) {
    TerminalOutput output(m_pipe.near);
    output.progress(QStringLiteral("1"), QStringLiteral("/a"));
    output.progress(QStringLiteral("2"), QStringLiteral("/b"));
    output.say(QStringLiteral("done"));
    EXPECT_EQ(m_pipe.read(), QByteArray("1 /a\ndone\n"));
}

TEST_F(TerminalOutputTest, ATerminalThatCannotRewriteGetsPlainLines) {
    qputenv("TERM", "dumb");
    TerminalOutput output(m_terminal.near);
    output.progress(QStringLiteral("1"), QStringLiteral("/a"));
    m_terminal.expect("1 /a\r\n");
}

TEST_F(TerminalOutputTest, NoTextSteersTheTerminal) {
    TerminalOutput output(m_pipe.near, m_pipe.near);
    const QString evil = QStringLiteral("a\x1b[2J\r\n\u009b\u202e");
    output.say(evil);
    output.complain(evil);
    output.progress(evil, evil);
    EXPECT_EQ(QString::fromUtf8(m_pipe.read()),
              QStringLiteral("%1\nkorvale-ui: %1\n%1 %1\n")
                  .arg(QStringLiteral("a[U+001B][2J[U+000D][U+000A][U+009B][U+202E]")));
}

TEST_F(TerminalOutputTest, AReaderThatIsGoneEndsNothing) {
    signal(SIGPIPE, SIG_IGN);
    ::close(m_pipe.far);
    m_pipe.far = -1;
    TerminalOutput output(m_pipe.near);
    output.say(QStringLiteral("nobody hears this"));
    signal(SIGPIPE, SIG_DFL);
}

TEST(Columns, WideCharactersHaveTwoAndMarksNone) {
    std::setlocale(LC_ALL, "C.UTF-8");
    EXPECT_EQ(columnsOf(QStringLiteral("abc")), 3);
    EXPECT_EQ(columnsOf(QStringLiteral("日本")), 4);
    EXPECT_EQ(columnsOf(QStringLiteral("e\u0301")), 1);
    EXPECT_EQ(endInColumns(QStringLiteral("日本語"), 4), QStringLiteral("\u2026語"));
    EXPECT_EQ(endInColumns(QStringLiteral("日本語"), 6), QStringLiteral("日本語"));
    EXPECT_EQ(endInColumns(QStringLiteral("abc"), 1), QStringLiteral("\u2026"));
    EXPECT_EQ(endInColumns(QStringLiteral("abc"), 0), QString());
    EXPECT_EQ(endInColumns(QStringLiteral("abc"), -3), QString());
}

} // namespace
} // namespace korvale
