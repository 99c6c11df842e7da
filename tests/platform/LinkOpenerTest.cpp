#include "fakes/RecordingLogSink.h"
#include "platform/XdgLinkOpener.h"

#include <QDir>
#include <QFile>
#include <QFileSystemWatcher>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace korvale {
namespace {

struct Link {
    QString text;
    bool openable;
};
class Links : public testing::TestWithParam<Link> {};

TEST_P(Links, OpenOnlyWhenHttpOrHttps) {
    EXPECT_EQ(isOpenableLink(GetParam().text), GetParam().openable)
        << GetParam().text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    AllKinds, Links,
    testing::Values(Link{QStringLiteral("https://korvale.example/"), true},
                    Link{QStringLiteral("http://korvale.example/a?b=c&d=%20#e"), true},
                    Link{QStringLiteral("HTTPS://korvale.example"), true},
                    Link{QStringLiteral("https://[::1]:8443/x"), true},
                    Link{QStringLiteral("https://m\u00fcnchen.example/stra\u00dfe"), true},
                    Link{QStringLiteral("https://korvale.example/\U0001F600?q=\U00020000"), true},
                    Link{QStringLiteral("https://korvale.example/") + QChar(0xd83d), false},
                    Link{QChar(0xde00) + QStringLiteral("https://korvale.example/"), false},
                    Link{QStringLiteral("https://korvale.example/\U000E0001"), false},
                    Link{QString(), false}, Link{QStringLiteral("korvale.example"), false},
                    Link{QStringLiteral("https:"), false}, Link{QStringLiteral("https://"), false},
                    Link{QStringLiteral("https:///path"), false},
                    Link{QStringLiteral("https://korvale.example/a b"), false},
                    Link{QStringLiteral(" https://korvale.example/"), false},
                    Link{QStringLiteral("https://korvale.example/\n"), false},
                    Link{QStringLiteral("https://korvale.example/\u202e"), false},
                    Link{QStringLiteral("https://korvale.example/%zz"), false},
                    Link{QStringLiteral("https://korvale.example:99999/"), false},
                    Link{QStringLiteral("file:///etc/passwd"), false},
                    Link{QStringLiteral("javascript:alert(1)"), false},
                    Link{QStringLiteral("ftp://korvale.example/"), false},
                    Link{QStringLiteral("mailto:a@korvale.example"), false},
                    Link{QStringLiteral("--help"), false}));

/// Puts an xdg-open of its own in front of PATH that writes its arguments to a FIFO, from which the
/// test reads: it waits for the program itself, not for time.
class XdgLinkOpenerTest : public testing::Test {
protected:
    void SetUp() override {
        fifo = folder.filePath(QStringLiteral("called")).toUtf8();
        ASSERT_EQ(mkfifo(fifo.constData(), 0600), 0);
        path = qgetenv("PATH");
        qputenv("PATH", folder.path().toUtf8() + ':' + path);
    }
    void TearDown() override { qputenv("PATH", path); }

    /// What xdg-open writes to the FIFO: the output of a line of shell.
    void install(const QByteArray& line) {
        QFile script(folder.filePath(QStringLiteral("xdg-open")));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\n{ " + line + "; } >'" + fifo + "'\n");
        script.close();
        ASSERT_TRUE(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }
    QByteArray written() const {
        QFile called(QString::fromUtf8(fifo));
        EXPECT_TRUE(called.open(QIODevice::ReadOnly));
        return called.readAll();
    }

    QTemporaryDir folder;
    QByteArray fifo;
    QByteArray path;
};

TEST_F(XdgLinkOpenerTest, TheEncodedLinkIsTheOnlyArgument) {
    install("printf '%s\\n' \"$#\" \"$@\"");
    XdgLinkOpener opener{StartEnvironment()};
    opener.openLink(QStringLiteral("file:///etc/passwd"), {});
    opener.openLink(QStringLiteral("https://korvale.example/\u00e9;rm?a=$(x)&\U0001F600"), {});
    EXPECT_EQ(written(), "1\nhttps://korvale.example/%C3%A9;rm?a=$(x)&%F0%9F%98%80\n");
}

TEST_F(XdgLinkOpenerTest, TheBrowserGetsTheEnvironmentAsItWasWithoutAnyRightToTheFocus) {
    install("env");
    qputenv("KORVALE_CHANGED", "as it was");
    qputenv("KORVALE_REMOVED", "there");
    qputenv("KORVALE_BYTES", "\xff\xfe");
    qputenv("XDG_ACTIVATION_TOKEN", "spent");
    XdgLinkOpener opener{StartEnvironment()};
    qputenv("KORVALE_CHANGED", "changed since");
    qunsetenv("KORVALE_REMOVED");
    qputenv("KORVALE_ADDED", "since");
    qputenv("DESKTOP_STARTUP_ID", "spent");
    opener.openLink(QStringLiteral("https://korvale.example/"), {});
    const QByteArray environment = written();
    for (const char* name : {"KORVALE_CHANGED", "KORVALE_BYTES", "KORVALE_ADDED",
                             "XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        qunsetenv(name);
    }
    EXPECT_TRUE(environment.contains("KORVALE_CHANGED=as it was\n"));
    EXPECT_TRUE(environment.contains("KORVALE_REMOVED=there\n"));
    EXPECT_TRUE(environment.contains("KORVALE_BYTES=\xff\xfe\n"));
    EXPECT_FALSE(environment.contains("since"));
    EXPECT_FALSE(environment.contains("spent"));
}

TEST_F(XdgLinkOpenerTest, TheRightToTheFocusThatCameWithAClickIsHandedOnOnce) {
    install("env");
    XdgLinkOpener opener{StartEnvironment()};
    opener.openLink(QStringLiteral("https://korvale.example/"), QStringLiteral("of this click"));
    const QByteArray environment = written();
    EXPECT_TRUE(environment.contains("XDG_ACTIVATION_TOKEN=of this click\n"));
    EXPECT_TRUE(environment.contains("DESKTOP_STARTUP_ID=of this click\n"));
    opener.openLink(QStringLiteral("https://korvale.example/"), {});
    EXPECT_FALSE(written().contains("of this click"));
}

TEST_F(XdgLinkOpenerTest, ATokenTooLargeForAnEnvironmentKeepsNoLinkClosed) {
    install("env");
    XdgLinkOpener opener{StartEnvironment()};
    opener.openLink(QStringLiteral("https://korvale.example/"), QString(1'000'000, u'x'));
    EXPECT_FALSE(written().contains("xxxx"));
}

TEST_F(XdgLinkOpenerTest, AFolderIsOpenedByAnAddressThatOnlyAFolderCanHave) {
    install("printf '%s\\n' \"$#\" \"$@\"");
    XdgLinkOpener opener{StartEnvironment()};
    EXPECT_TRUE(opener.openFolder(QStringLiteral("/home/me/-a b;$(x)\u00e9")));
    EXPECT_EQ(written(), "1\nfile:///home/me/-a%20b;$(x)%C3%A9/\n");
    EXPECT_TRUE(opener.openFolder(QStringLiteral("/")));
    EXPECT_EQ(written(), "1\nfile:///\n");
    qputenv("PATH", "/nonexistent");
    EXPECT_FALSE(opener.openFolder(QStringLiteral("/home")));
}

TEST_F(XdgLinkOpenerTest, WithoutXdgOpenALineInTheLogSaysSo) {
    const RecordingLogSink log;
    qputenv("PATH", "/nonexistent");
    XdgLinkOpener(StartEnvironment()).openLink(QStringLiteral("https://korvale.example/"), {});
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines()[0].substr(0, 27), "WARN \"xdg-open cannot start");
}

} // namespace
} // namespace korvale
