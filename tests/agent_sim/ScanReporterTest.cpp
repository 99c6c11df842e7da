#include "agent_sim/ScanReporter.h"

#include "agent/publish/HostCacheLists.h"
#include "agent_sim/TestString.h"
#include "fakes/TestFolder.h"
#include "fakes/WaitUntil.h"

#include <QCryptographicHash>

namespace korvale::sim {
namespace {

QString digestOf(const QByteArray& content) {
    return QString::fromLatin1(
        QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
}

class ScanReporterTest : public testing::Test {
protected:
    ScanReporterTest() {
        QObject::connect(&m_reporter, &ScanReporter::analysing, &m_reporter,
                         [this](const QString& path) { m_analysed.append(path); });
        QObject::connect(&m_reporter, &ScanReporter::batchReady, &m_reporter,
                         [this] { ++m_batches; });
        QObject::connect(&m_reporter, &ScanReporter::ended, &m_reporter,
                         [this](bool /*complete*/, bool background, const QString& summary) {
                             m_background = background;
                             m_summary = summary;
                         });
    }

    void scan(bool background = false) {
        ASSERT_EQ(m_reporter.start(m_files.path(), background), QString());
        ASSERT_TRUE(waitUntil([this] { return !m_scan.isRunning(); }));
    }
    [[nodiscard]] int stateOf(const char* name) const {
        const auto threat = m_model.file(m_files.path(QLatin1String(name)));
        return threat ? threat->state : 0;
    }

    TestFolder m_files;
    FolderScan m_scan;
    HostCacheLists m_model;
    ScanReporter m_reporter{m_scan, m_model};
    QStringList m_analysed;
    QString m_summary;
    int m_batches = 0;
    bool m_background = false;
};

TEST_F(ScanReporterTest, GivesAVerdictOnEachFile) {
    m_files.write(QStringLiteral("clean"), "clean");
    m_files.write(QStringLiteral("odd"), "odd");
    m_files.write(QStringLiteral("bad"), eicarTestString());
    m_reporter.addAbnormal(digestOf("odd").toUpper());
    scan(true);
    EXPECT_EQ(stateOf("clean"), 0);
    EXPECT_EQ(stateOf("odd"), file_state::kAbnormal);
    EXPECT_EQ(stateOf("bad"), file_state::kUnsafe);
    EXPECT_EQ(m_model.file(m_files.path(QStringLiteral("odd")))->id, digestOf("odd"));
    EXPECT_EQ(m_model.analysed(), 3);
    EXPECT_EQ(m_summary, QStringLiteral("files=3 unsafe=1 abnormal=1"));
    EXPECT_TRUE(m_background);
}

TEST_F(ScanReporterTest, TellsOfTheFirstFileAndKeepsTheRateLow) {
    for (int i = 0; i < 300; ++i) {
        m_files.write(QString::number(i), "x");
    }
    scan();
    EXPECT_GE(m_analysed.size(), 1);
    EXPECT_LT(m_analysed.size(), 300);
    EXPECT_GE(m_batches, 2) << "one at the start, one at the end";
}

TEST_F(ScanReporterTest, ASecondScanKeepsAWaiverAndReportsAFileThatBecameClean) {
    m_files.write(QStringLiteral("waived"), eicarTestString());
    m_files.write(QStringLiteral("cleaned"), eicarTestString() + "!");
    scan();
    auto waived = m_model.file(m_files.path(QStringLiteral("waived")));
    ASSERT_TRUE(waived.has_value());
    waived->state |= file_state::kWaived;
    m_model.setFile(m_files.path(QStringLiteral("waived")), *waived);
    m_files.write(QStringLiteral("cleaned"), "harmless");
    scan();
    EXPECT_EQ(stateOf("waived"), file_state::kUnsafe | file_state::kWaived);
    EXPECT_EQ(stateOf("cleaned"), 0);
}

TEST_F(ScanReporterTest, AQuarantinedFileThatIsBackIsANewDetection) {
    m_files.write(QStringLiteral("bad"), eicarTestString());
    m_model.setFile(m_files.path(QStringLiteral("bad")), {9, digestOf(eicarTestString()), 100});
    scan();
    EXPECT_EQ(stateOf("bad"), file_state::kUnsafe);
}

TEST_F(ScanReporterTest, ACleanFileInThePlaceOfAQuarantinedOneChangesNothing) {
    m_files.write(QStringLiteral("bad"), "harmless");
    m_model.setFile(m_files.path(QStringLiteral("bad")), {9, QStringLiteral("id"), 100});
    scan();
    EXPECT_EQ(stateOf("bad"), 9);
}

TEST_F(ScanReporterTest, ReadsAListOfDigests) {
    m_files.write(QStringLiteral("odd"), "odd");
    const TestFolder lists;
    lists.write(QStringLiteral("good"), "# digests\n\n" + digestOf("odd").toLatin1() + "\r\n");
    lists.write(QStringLiteral("wrong"), "\nabc\n");
    EXPECT_EQ(m_reporter.loadAbnormal(lists.path(QStringLiteral("good"))), QString());
    EXPECT_TRUE(m_reporter.loadAbnormal(lists.path(QStringLiteral("wrong")))
                    .contains(QStringLiteral("line 2")));
    EXPECT_NE(m_reporter.loadAbnormal(lists.path(QStringLiteral("none"))), QString());
    scan();
    EXPECT_EQ(stateOf("odd"), file_state::kAbnormal);
}

} // namespace
} // namespace korvale::sim
