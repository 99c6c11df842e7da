#include "fakes/ProgramRun.h"

#include <QCoreApplication>
#include <QFile>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvale {
namespace {

constexpr const char* otherInstanceLine = "INFO \"KorvaleUI: an instance already running\"";

/// Runs a process named KorvaleBASTION for the test.
class NamedProcess : public testing::Test {
protected:
    void SetUp() override {
        const QString copy = m_run.path("KorvaleBASTION");
        ASSERT_TRUE(QFile::copy(QStringLiteral("/bin/sleep"), copy));
        m_other.start(copy, {QStringLiteral("60")});
        ASSERT_TRUE(m_other.waitForStarted());
    }
    void TearDown() override {
        m_other.kill();
        m_other.waitForFinished();
    }
    ProgramRun m_run;
    QProcess m_other;
};

TEST_F(NamedProcess, KeepsANormalStartFromRunning) {
    EXPECT_EQ(m_run.run(), 0); // before any display is asked for
    EXPECT_EQ(m_run.lines().last(), otherInstanceLine);
    EXPECT_EQ(m_run.lines().value(m_run.lines().size() - 2),
              "INFO \"app(KorvaleBASTION), pid(" + QByteArray::number(m_other.processId()) + ")\"");
}

TEST_F(NamedProcess, DoesNotConcernAOneShotStart) {
    EXPECT_EQ(m_run.run({QStringLiteral("-background-scan")}), 0);
    EXPECT_EQ(m_run.lines().last(), exitLine);
    EXPECT_FALSE(m_run.log().contains("app("));
}

} // namespace
} // namespace korvale
