#include "core/FolderToScan.h"

#include "fakes/FakeTexts.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvale {
namespace {

class FolderToScanTest : public testing::Test {
protected:
    void SetUp() override {
        m_root = QDir(m_folder.path()).canonicalPath();
        QDir(m_root).mkpath(QStringLiteral("a folder/in it"));
        QFile file(m_root + QStringLiteral("/a file"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    [[nodiscard]] FolderToScan named(const char* below) const {
        return FolderToScan::named((m_root + u'/').toUtf8() + below);
    }
    QTemporaryDir m_folder;
    QString m_root;
    FakeTexts m_texts{{"HPS_TermNoFolder", QStringLiteral("%@ is none: %@")},
                      {"HPS_TermNotUtf8", QStringLiteral("%@ is no UTF-8")}};
};

TEST_F(FolderToScanTest, IsAbsoluteAndWithoutLinks) {
    QFile::link(m_root + QStringLiteral("/a folder/in it"), m_root + QStringLiteral("/link"));
    const FolderToScan folder = named("link/../../a folder");
    EXPECT_EQ(folder.path, m_root + QStringLiteral("/a folder"));
    EXPECT_TRUE(folder.refusal.isEmpty());
}

TEST_F(FolderToScanTest, MayBeNamedFromThePresentFolder) {
    const QString before = QDir::currentPath();
    QDir::setCurrent(m_root);
    EXPECT_EQ(FolderToScan::named("a folder").path, m_root + QStringLiteral("/a folder"));
    QDir::setCurrent(before);
}

TEST_F(FolderToScanTest, MayBeNamedByItsUri) {
    QDir(m_root).mkpath(QStringLiteral("100 %41\nü"));
    const QByteArray place = "file://" + m_root.toUtf8();
    EXPECT_EQ(FolderToScan::named(place + "/100%20%2541%0A%C3%BC").path,
              m_root + QStringLiteral("/100 %41\nü"));
    EXPECT_EQ(FolderToScan::named(place + "/none%20").refusal,
              QString::fromUtf8(place + "/none%20 is none: No such file or directory"));
    for (const QByteArray& other : {place + "%00/etc", QByteArray("file://elsewhere") + "/tmp",
                                    QByteArray("file:///"), QByteArray("sftp:///tmp")}) {
        EXPECT_EQ(FolderToScan::named(other).path,
                  other == "file:///" ? QStringLiteral("/") : QString())
            << other.toStdString();
    }
}

TEST_F(FolderToScanTest, AFileIsNone) {
    const FolderToScan folder = named("a file");
    EXPECT_TRUE(folder.path.isEmpty());
    EXPECT_EQ(folder.refusal, m_root + QStringLiteral("/a file is none: Not a directory"));
}

TEST_F(FolderToScanTest, NothingIsNone) {
    EXPECT_EQ(named("nothing").refusal,
              m_root + QStringLiteral("/nothing is none: No such file or directory"));
    EXPECT_EQ(FolderToScan::named("").refusal,
              QStringLiteral(" is none: No such file or directory"));
}

TEST_F(FolderToScanTest, ANameThatIsNoUtf8CannotBeSent) {
    const QByteArray name = m_root.toUtf8() + "/\xe4";
    ASSERT_EQ(::mkdir(name.constData(), 0700), 0);
    const FolderToScan folder = FolderToScan::named(name);
    EXPECT_TRUE(folder.path.isEmpty());
    EXPECT_EQ(folder.refusal, m_root + QStringLiteral("/\ufffd is no UTF-8"));
    ::rmdir(name.constData()); // the toolkit cannot name it
}

TEST_F(FolderToScanTest, ARefusedNameDoesNotSteerTheTerminal) {
    EXPECT_TRUE(named("\x1b[2J").refusal.contains(QStringLiteral("[U+001B][2J")));
}

} // namespace
} // namespace korvale
