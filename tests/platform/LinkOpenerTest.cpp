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
        QFile script(folder.filePath(QStringLiteral("xdg-open")));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\nprintf '%s\\n' \"$#\" \"$@\" >'" + fifo + "'\n");
        script.close();
        ASSERT_TRUE(script.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        path = qgetenv("PATH");
        qputenv("PATH", folder.path().toUtf8() + ':' + path);
    }
    void TearDown() override { qputenv("PATH", path); }

    QTemporaryDir folder;
    QByteArray fifo;
    QByteArray path;
};

TEST_F(XdgLinkOpenerTest, TheEncodedLinkIsTheOnlyArgument) {
    XdgLinkOpener().openLink(QStringLiteral("file:///etc/passwd"));
    XdgLinkOpener().openLink(QStringLiteral("https://korvale.example/\u00e9;rm?a=$(x)"));
    QFile called(QString::fromUtf8(fifo));
    ASSERT_TRUE(called.open(QIODevice::ReadOnly));
    EXPECT_EQ(called.readAll(), "1\nhttps://korvale.example/%C3%A9;rm?a=$(x)\n");
}

TEST(XdgLinkOpener, WithoutXdgOpenNothingFails) {
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", "/nonexistent");
    XdgLinkOpener().openLink(QStringLiteral("https://korvale.example/"));
    qputenv("PATH", path);
}

} // namespace
} // namespace korvale
