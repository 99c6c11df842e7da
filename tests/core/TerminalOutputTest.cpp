#include "core/TerminalOutput.h"

#include <array>
#include <clocale>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <optional>
#include <pty.h>
#include <unistd.h>

namespace korvale {
namespace {

/// Two ends of something that is written to; `far` is read.
struct Ends {
    int near = -1;
    int far = -1;

    [[nodiscard]] QByteArray read() const {
        std::array<char, 4096> bytes{};
        const ssize_t size = ::read(far, bytes.data(), bytes.size());
        return {bytes.data(), size > 0 ? size : 0};
    }
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
        EXPECT_EQ(m_terminal.read(), QByteArray("\r1 /a\x1b[K\r2 /b\x1b[K"));
        output.say(QStringLiteral("done"));
        EXPECT_EQ(m_terminal.read(), QByteArray("\r\x1b[Kdone\r\n"));
        output.progress(QStringLiteral("3"), QStringLiteral("/c"));
        (void)m_terminal.read();
    }
    EXPECT_EQ(m_terminal.read(), QByteArray("\r\x1b[K")) << "no rest is left on screen";
}

TEST_F(TerminalOutputTest, ALongPathLosesItsStartAndNeverWraps) {
    TerminalOutput output(m_terminal.near);
    output.progress(QStringLiteral("Files: 7"), QStringLiteral("/home/ada/a long way down/x.exe"));
    const QByteArray shown = m_terminal.read();
    EXPECT_EQ(QString::fromUtf8(shown),
              QStringLiteral("\rFiles: 7 \u2026a long way down/x.exe\x1b[K")
                  .replace(QStringLiteral("\u2026a long way down/x.exe"),
                           endInColumns(QStringLiteral("/home/ada/a long way down/x.exe"), 20)));
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
    EXPECT_EQ(m_terminal.read(), QByteArray("1 /a\r\n"));
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
