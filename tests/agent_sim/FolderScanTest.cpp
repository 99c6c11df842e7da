#include "agent_sim/FolderScan.h"

#include "agent_sim/TestString.h"
#include "fakes/TestFolder.h"
#include "fakes/WaitUntil.h"

#include <QMap>

#include <sys/stat.h>

namespace korvale::sim {
namespace {

class FolderScanTest : public testing::Test {
protected:
    FolderScanTest() {
        QObject::connect(&m_scan, &FolderScan::scanned, &m_scan, [this](const ScannedFile& file) {
            m_files.insert(QDir(m_folder.path()).relativeFilePath(file.path), file);
        });
        QObject::connect(&m_scan, &FolderScan::ended, &m_scan, [this](bool complete) {
            ++m_ends;
            m_complete = complete;
        });
    }

    void scan() {
        ASSERT_EQ(m_scan.start(m_folder.path()), QString());
        ASSERT_TRUE(waitUntil([this] { return !m_scan.isRunning(); }));
    }

    TestFolder m_folder;
    QMap<QString, ScannedFile> m_files;
    int m_ends = 0;
    bool m_complete = false;
    FolderScan m_scan;
};

TEST_F(FolderScanTest, HashesEveryFileOfEveryFolder) {
    m_folder.write(QStringLiteral("a"), "abc");
    m_folder.write(QStringLiteral("b/c/.hidden"), "");
    scan();
    EXPECT_EQ(m_files.keys(), QStringList({QStringLiteral("a"), QStringLiteral("b/c/.hidden")}));
    EXPECT_EQ(m_files[QStringLiteral("a")].digest,
              QStringLiteral("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"));
    EXPECT_EQ(m_files[QStringLiteral("b/c/.hidden")].digest,
              QStringLiteral("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"));
    EXPECT_TRUE(m_complete);
    EXPECT_EQ(m_scan.filesSeen(), 2);
}

TEST_F(FolderScanTest, FindsTheTestStringWhereverItStands) {
    const QByteArray string = eicarTestString();
    ASSERT_EQ(string.size(), 68);
    m_folder.write(QStringLiteral("alone"), string);
    m_folder.write(QStringLiteral("inside"), "before " + string + " after");
    // Across the border of two pieces that are read.
    m_folder.write(QStringLiteral("across"), QByteArray((1 << 20) - 30, 'x') + string);
    m_folder.write(QStringLiteral("cut"), string.chopped(1));
    scan();
    EXPECT_TRUE(m_files[QStringLiteral("alone")].hasTestString);
    EXPECT_EQ(m_files[QStringLiteral("alone")].digest,
              QStringLiteral("275a021bbfb6489e54d471899f7db9d1663fc695ec2fe2a2c4538aabf651fd0f"));
    EXPECT_TRUE(m_files[QStringLiteral("inside")].hasTestString);
    EXPECT_TRUE(m_files[QStringLiteral("across")].hasTestString);
    EXPECT_FALSE(m_files[QStringLiteral("cut")].hasTestString);
}

TEST_F(FolderScanTest, DoesNotFollowLinksAndLeavesSpecialFilesAlone) {
    const TestFolder outside;
    outside.write(QStringLiteral("secret"), "x");
    QFile::link(outside.path(), m_folder.path(QStringLiteral("folder-link")));
    QFile::link(outside.path(QStringLiteral("secret")), m_folder.path(QStringLiteral("file-link")));
    QFile::link(m_folder.path(), m_folder.path(QStringLiteral("loop")));
    ASSERT_EQ(::mkfifo(m_folder.path(QStringLiteral("fifo")).toLocal8Bit().constData(), 0600), 0);
    m_folder.write(QStringLiteral("plain"), "x");
    scan();
    EXPECT_EQ(m_files.keys(), QStringList{QStringLiteral("plain")});
}

TEST_F(FolderScanTest, FollowsALinkThatItWasGiven) {
    m_folder.write(QStringLiteral("real/file"), "x");
    QFile::link(m_folder.path(QStringLiteral("real")), m_folder.path(QStringLiteral("link")));
    ASSERT_EQ(m_scan.start(m_folder.path(QStringLiteral("link//"))), QString());
    ASSERT_TRUE(waitUntil([this] { return !m_scan.isRunning(); }));
    EXPECT_EQ(m_files.keys(), QStringList{QStringLiteral("link/file")});
}

TEST_F(FolderScanTest, DoesNotGoDownForEver) {
    QString deep;
    for (std::size_t i = 0; i < FolderScan::kMostDepth + 5; ++i) {
        deep += QStringLiteral("d/");
    }
    m_folder.write(deep + QStringLiteral("file"), "x");
    m_folder.write(QStringLiteral("d/file"), "x");
    scan();
    EXPECT_EQ(m_files.keys(), QStringList{QStringLiteral("d/file")});
    EXPECT_TRUE(m_complete);
}

TEST_F(FolderScanTest, CanBeStoppedBetweenSlices) {
    for (int i = 0; i < 20; ++i) {
        m_folder.write(QString::number(i), "x");
    }
    m_scan.setPace(60'000);
    ASSERT_EQ(m_scan.start(m_folder.path()), QString());
    ASSERT_TRUE(waitUntil([this] { return m_files.size() == 1; }));
    EXPECT_TRUE(m_scan.stop());
    EXPECT_FALSE(m_scan.stop());
    EXPECT_EQ(m_ends, 1);
    EXPECT_FALSE(m_complete);
    EXPECT_EQ(m_files.size(), 1);
}

TEST_F(FolderScanTest, CanBeStoppedByAReceiverOfItsSignals) {
    m_folder.write(QStringLiteral("a"), "x");
    m_folder.write(QStringLiteral("b"), "x");
    QObject::connect(&m_scan, &FolderScan::reading, &m_scan, [this] { m_scan.stop(); });
    scan();
    EXPECT_EQ(m_ends, 1);
    EXPECT_EQ(m_files.size(), 0);
}

TEST_F(FolderScanTest, RefusesWhatIsNoFolder) {
    m_folder.write(QStringLiteral("file"), "x");
    EXPECT_NE(m_scan.start(m_folder.path(QStringLiteral("file"))), QString());
    EXPECT_NE(m_scan.start(m_folder.path(QStringLiteral("none"))), QString());
    EXPECT_NE(m_scan.start(QString()), QString());
    EXPECT_FALSE(m_scan.isRunning());
    EXPECT_EQ(m_ends, 0);
}

} // namespace
} // namespace korvale::sim
