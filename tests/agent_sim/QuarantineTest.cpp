#include "agent_sim/Quarantine.h"

#include "agent/publish/HostCacheLists.h"
#include "fakes/TestFolder.h"

namespace korvale::sim {
namespace {

class QuarantineTest : public testing::Test {
protected:
    QString threat(const char* name, int state, const char* id = "digest") {
        m_files.write(QLatin1String(name), name);
        const QString path = m_files.path(QLatin1String(name));
        m_model.setFile(path, {state, QLatin1String(id), 1});
        return path;
    }
    [[nodiscard]] QStringList inQuarantine() const {
        return QDir(m_files.path(QStringLiteral("q"))).entryList(QDir::Files | QDir::Hidden);
    }

    TestFolder m_files;
    HostCacheLists m_model;
    Quarantine m_quarantine{m_model, m_files.path(QStringLiteral("q"))};
};

TEST_F(QuarantineTest, MovesTheFileAndMarksIt) {
    const QString unsafe = threat("unsafe", 1);
    const QString abnormal = threat("abnormal", 2, "other");
    EXPECT_EQ(m_quarantine.take(unsafe), QString());
    EXPECT_EQ(m_quarantine.take(abnormal), QString());
    EXPECT_EQ(m_model.file(unsafe)->state, 9);
    EXPECT_EQ(m_model.file(abnormal)->state, 10);
    EXPECT_FALSE(QFileInfo::exists(unsafe));
    EXPECT_EQ(m_files.read(QStringLiteral("q/digest")), "unsafe");
    const auto permissions = QFile::permissions(m_files.path(QStringLiteral("q/digest")));
    EXPECT_FALSE(permissions & (QFileDevice::ReadOther | QFileDevice::ReadGroup |
                                QFileDevice::ExeOwner | QFileDevice::WriteOwner));
}

TEST_F(QuarantineTest, TwoFilesOfOneIdentifierAreBothKept) {
    EXPECT_EQ(m_quarantine.take(threat("one", 1)), QString());
    EXPECT_EQ(m_quarantine.take(threat("two", 1)), QString());
    EXPECT_EQ(inQuarantine(), QStringList({QStringLiteral("digest"), QStringLiteral("digest-2")}));
}

TEST_F(QuarantineTest, AnIdentifierCannotLeadOutOfTheFolder) {
    EXPECT_EQ(m_quarantine.take(threat("bad", 1, "../out")), QString());
    EXPECT_EQ(inQuarantine(), QStringList{QStringLiteral(".._out")});
}

TEST_F(QuarantineTest, RefusesWhatItCannotTake) {
    EXPECT_NE(m_quarantine.take(m_files.path(QStringLiteral("unknown"))), QString());
    const QString gone = threat("gone", 1);
    QFile::remove(gone);
    EXPECT_NE(m_quarantine.take(gone), QString());
    const QString linked = threat("linked", 1);
    QFile::remove(linked);
    m_files.write(QStringLiteral("target"), "x");
    QFile::link(m_files.path(QStringLiteral("target")), linked);
    EXPECT_NE(m_quarantine.take(linked), QString());
    EXPECT_TRUE(QFileInfo::exists(m_files.path(QStringLiteral("target"))));
    const QString twice = threat("twice", 1);
    EXPECT_EQ(m_quarantine.take(twice), QString());
    EXPECT_NE(m_quarantine.take(twice), QString());
}

TEST_F(QuarantineTest, AWaivedFileStaysWhereItIs) {
    const QString path = threat("file", 2);
    EXPECT_EQ(m_quarantine.waive(path), QString());
    EXPECT_EQ(m_model.file(path)->state, 6);
    EXPECT_TRUE(QFileInfo::exists(path));
    EXPECT_EQ(m_quarantine.take(path), QString());
    EXPECT_EQ(m_model.file(path)->state, 10);
}

} // namespace
} // namespace korvale::sim
