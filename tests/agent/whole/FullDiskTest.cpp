#include "AgentRun.h"
#include "agent/fakes/Needs.h"

#include <vector>

namespace korvale::agent {
namespace {

/// Host cache, store and quarantine lie on a file system that has no room left.
class FullDiskTest : public AgentRun {
protected:
    void SetUp() override {
        KORVALE_NEEDS(mounts());
        AgentRun::SetUp();
        for (const char* name : {"HostCache", "state"}) {
            const QString place = m_folder.path(QLatin1String(name));
            QDir().mkpath(place);
            m_mounts.push_back(ScratchMount::tmpfs(place.toStdString(), "size=2m"));
            ASSERT_TRUE(m_mounts.back().mounted());
        }
    }
    void TearDown() override {
        AgentRun::TearDown();
        m_mounts.clear();
    }

    void fill(const char* folder) const {
        QFile file(m_folder.path(QLatin1String(folder) + QStringLiteral("/filler")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray block(4096, 'x');
        while (file.write(block) == block.size()) {
        }
        const QByteArray little(1, 'x');
        while (file.write(little) == 1) {
        }
    }
    void makeRoom(const char* folder) const {
        QFile::remove(m_folder.path(QLatin1String(folder) + QStringLiteral("/filler")));
    }

    std::vector<ScratchMount> m_mounts;
};

TEST_F(FullDiskTest, AFindingIsToldWithoutRoomAndWrittenWhenThereIsSome) {
    start();
    fill("HostCache");
    fill("state");
    writeBadFile(QStringLiteral("a"));
    ASSERT_EQ(scanFiles(), QStringLiteral("OK"));
    ASSERT_TRUE(waitUntil([&] { return !m_ear->messages.isEmpty(); })) << "nobody was told";
    EXPECT_NE(publishedState(QStringLiteral("a")), 1);
    const QJsonArray threats = control("Threats").value(QStringLiteral("threats")).toArray();
    EXPECT_EQ(threats.size(), 1) << "known, though not written";
    makeRoom("HostCache");
    makeRoom("state");
    EXPECT_TRUE(waitUntil([&] { return publishedState(QStringLiteral("a")) > 0; }));
    ASSERT_TRUE(logged("Well again: store room"));
    kill();
    start();
    EXPECT_EQ(control("Threats").value(QStringLiteral("threats")).toArray().size(), 1);
}

} // namespace
} // namespace korvale::agent
