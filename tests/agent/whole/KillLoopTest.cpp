#include "AgentRun.h"

#include <QRandomGenerator>

namespace korvale::agent {
namespace {

class KillLoopTest : public AgentRun {};

/// Killed at any moment of a scan with findings, it comes back with every one of them, and none
/// twice. KORVALE_KILLS sets how often; each round takes as long as a start.
TEST_F(KillLoopTest, EveryFindingIsThereAgainAndNoneTwice) {
    bool isNumber = false;
    const int wanted = qEnvironmentVariableIntValue("KORVALE_KILLS", &isNumber);
    const int kills = isNumber ? wanted : 200;
    int written = 0;
    for (int round = 0; round < kills; ++round) {
        for (int i = 0; i < 2; ++i) {
            writeBadFile(QString::number(written++));
        }
        start();
        ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
        // Another moment each time, between the reply and some time after the scan's end.
        const int microseconds = static_cast<int>(QRandomGenerator::global()->bounded(40'000));
        ::usleep(static_cast<useconds_t>(microseconds));
        kill();
    }
    start();
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(waitUntil([&] { return published("file_states.log").size() == written; }));
    QSet<QString> paths;
    for (const QJsonValue threat : control("Threats").value(QStringLiteral("threats")).toArray()) {
        const QString path = threat.toObject().value(QStringLiteral("path")).toString();
        EXPECT_FALSE(paths.contains(path)) << path.toStdString() << " is there twice";
        paths.insert(path);
        EXPECT_EQ(threat.toObject().value(QStringLiteral("state")), QStringLiteral("quarantined"))
            << path.toStdString();
    }
    EXPECT_EQ(paths.size(), written);
    EXPECT_EQ(QDir(m_folder.path(QStringLiteral("files"))).entryList(QDir::Files).size(), 0);
    const QStringList left =
        QDir(m_folder.path(QStringLiteral("HostCache"))).entryList(QDir::Files | QDir::Hidden);
    EXPECT_TRUE(left.filter(QStringLiteral(".new")).isEmpty()) << left.join(u' ').toStdString();
}

} // namespace
} // namespace korvale::agent
