#include "agent_sim/Answers.h"

#include "agent_sim/RequestLog.h"

#include <QJsonDocument>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace korvale::sim {
namespace {

class MockScans : public ScanRequests {
public:
    MOCK_METHOD(QString, startFolderScan, (const QString&), (override));
    MOCK_METHOD(QString, startBackgroundScan, (), (override));
    MOCK_METHOD(QString, stopScan, (), (override));
};

class AnswersTest : public testing::Test {
protected:
    QByteArray ask(const char* request) {
        return QJsonDocument(m_answers.answer(QJsonDocument::fromJson(request).object()))
            .toJson(QJsonDocument::Compact);
    }

    AgentSettings m_settings;
    testing::StrictMock<MockScans> m_scans;
    Answers m_answers{m_settings, m_scans};
};

TEST_F(AnswersTest, ReportWhatWasSet) {
    m_settings.deviceName = QStringLiteral("Box");
    m_settings.policyName = QStringLiteral("P");
    m_settings.policyMode = QStringLiteral("Local Policy");
    m_settings.policyNotifications = false;
    m_settings.policyUpdated = QStringLiteral("today");
    m_settings.companionVersion = QStringLiteral("9.9");
    m_settings.driverValue = QStringLiteral("0");
    m_settings.logLevel = 3;
    EXPECT_EQ(ask(R"({"CMD_":"CUST"})"), R"({"RESP":"OK","VALU":"Box"})");
    EXPECT_EQ(ask(R"({"CMD_":"GPUT"})"), R"({"RESP":"OK","VALU":"today"})");
    EXPECT_EQ(ask(R"({"CMD_":"GOPV"})"), R"({"RESP":"OK","VALU":"9.9"})");
    EXPECT_EQ(ask(R"({"CMD_":"GDRV"})"), R"({"RESP":"OK","VALU":"0"})");
    EXPECT_EQ(ask(R"({"CMD_":"GLOG"})"), R"({"RESP":"OK","VALU":"3"})");
    EXPECT_EQ(ask(R"({"CMD_":"POLY"})"),
              R"({"PMODE":"Local Policy","PNAME":"P","PNOTF":"NO","RESP":"OK"})");
    EXPECT_EQ(ask(R"({"CMD_":"CHKU"})"), R"({"RESP":"OK"})");
    EXPECT_EQ(ask(R"({"CMD_":"PLYU"})"), R"({"RESP":"OK"})");
}

TEST_F(AnswersTest, AllowedNotificationsAreOk) {
    EXPECT_TRUE(ask(R"({"CMD_":"POLY"})").contains(R"("PNOTF":"OK")"));
}

TEST_F(AnswersTest, TheLogLevelIsKept) {
    EXPECT_EQ(ask(R"({"CMD_":"SLOG","VALU":"1"})"), R"({"RESP":"OK"})");
    EXPECT_EQ(ask(R"({"CMD_":"GLOG"})"), R"({"RESP":"OK","VALU":"1"})");
    for (const char* wrong : {R"({"CMD_":"SLOG","VALU":"4"})", R"({"CMD_":"SLOG","VALU":"x"})",
                              R"({"CMD_":"SLOG"})", R"({"CMD_":"SLOG","VALU":"-1"})"}) {
        EXPECT_NE(ask(wrong), R"({"RESP":"OK"})") << wrong;
    }
    EXPECT_EQ(m_settings.logLevel, 1);
}

TEST_F(AnswersTest, ScanRequestsReachTheScanner) {
    EXPECT_CALL(m_scans, startFolderScan(QStringLiteral("/a b/ü")))
        .WillOnce(testing::Return(QString()));
    EXPECT_CALL(m_scans, startBackgroundScan()).WillOnce(testing::Return(QString()));
    EXPECT_CALL(m_scans, stopScan()).WillOnce(testing::Return(QStringLiteral("none runs")));
    EXPECT_EQ(ask(R"({"CMD_":"SCAN","START":"/a b/ü"})"), R"({"RESP":"OK"})");
    EXPECT_EQ(ask(R"({"CMD_":"SCAN","START":" "})"), R"({"RESP":"OK"})");
    EXPECT_EQ(ask(R"({"CMD_":"SCAN","STOP":" "})"), R"({"RESP":"none runs"})");
}

TEST_F(AnswersTest, UnknownCommandsFail) {
    EXPECT_EQ(ask(R"({"CMD_":"chku"})"), R"({"RESP":"unknown command"})");
    EXPECT_EQ(ask("{}"), R"({"RESP":"unknown command"})");
}

TEST(RequestLog, PrintsRequestsAndWhatIsNone) {
    RequestLog log;
    log.add(QStringLiteral(":1.7"), R"({"CMD_":"CHKU"})", QStringLiteral("CHKU"));
    log.add(QStringLiteral(":1.7"), "x", QString());
    EXPECT_EQ(log.lines(), QByteArrayList({R"({"from":":1.7","request":{"CMD_":"CHKU"}})",
                                           R"({"from":":1.7","malformed":"eA=="})"}));
}

TEST(RequestLog, EachRequestIsClaimedOnce) {
    RequestLog log;
    EXPECT_FALSE(log.claim(QStringLiteral("POLY")));
    log.add(QString(), "{}", QStringLiteral("POLY"));
    EXPECT_FALSE(log.claim(QStringLiteral("CUST")));
    EXPECT_TRUE(log.claim(QStringLiteral("POLY")));
    EXPECT_FALSE(log.claim(QStringLiteral("POLY")));
}

TEST(RequestLog, ForgetsTheOldestWhenItIsFull) {
    RequestLog log;
    for (qsizetype i = 0; i <= RequestLog::kMost; ++i) {
        log.add(QString::number(i), "x", QString());
    }
    EXPECT_EQ(log.lines().size(), RequestLog::kMost);
    EXPECT_TRUE(log.lines().first().contains(R"("from":"1")"));
}

} // namespace
} // namespace korvale::sim
