#include "agent/app/ThreatCommands.h"

#include "agent/quarantine/VaultFixture.h"

#include <QJsonArray>

#include <algorithm>

namespace korvale::agent {
namespace {

class ThreatCommandsTest : public VaultFixture {
protected:
    void SetUp() override {
        make(Files::InScratchFolder, VaultOn::SameFileSystem);
        writeFile(path("one"), "a bad program");
        writeFile(path("t\xffo"), "a bad program");
        writeFile(path("other"), "another bad program");
        for (const std::string name : {"one", "t\xffo", "other"}) {
            m_requests.push_back(judged(name));
        }
        m_commands.emplace(*m_store, *m_vault);
    }

    QJsonObject answer(std::string_view method, const QJsonObject& arguments = {}) {
        const auto* const found =
            std::find_if(control::kMethods.begin(), control::kMethods.end(),
                         [&](const control::Method& entry) { return entry.name == method; });
        EXPECT_TRUE(ThreatCommands::answers(*found));
        return m_commands->answer(*found, arguments, 1000);
    }
    static QJsonObject threats(const QJsonArray& selectors) {
        return {{QStringLiteral("threats"), selectors}};
    }
    [[nodiscard]] QString identifier(std::size_t number) const {
        return QString::fromStdString(m_requests[number].sha256);
    }
    static QStringList outcomes(const QJsonObject& answer) {
        QStringList words;
        for (const QJsonValue result : answer.value(QStringLiteral("results")).toArray()) {
            words += result.toObject().value(QStringLiteral("outcome")).toString();
        }
        return words;
    }
    static QString code(const QJsonObject& answer) {
        EXPECT_FALSE(answer.value(QStringLiteral("ok")).toBool());
        EXPECT_FALSE(answer.value(QStringLiteral("error")).toString().isEmpty());
        return answer.value(QStringLiteral("code")).toString();
    }

    std::vector<TakeRequest> m_requests;
    std::optional<ThreatCommands> m_commands;
};

TEST_F(ThreatCommandsTest, ListsThreatsWithExactAndReadablePaths) {
    const QJsonObject reply = answer("Threats");
    EXPECT_TRUE(reply.value(QStringLiteral("ok")).toBool());
    const QJsonArray list = reply.value(QStringLiteral("threats")).toArray();
    ASSERT_EQ(list.size(), 3);
    const QJsonObject threat = list.at(1).toObject();
    EXPECT_EQ(threat.value(QStringLiteral("id")).toString(), identifier(1));
    EXPECT_EQ(threat.value(QStringLiteral("state")).toString(), QStringLiteral("detected"));
    EXPECT_EQ(threat.value(QStringLiteral("kind")).toString(), QStringLiteral("unsafe"));
    EXPECT_TRUE(
        threat.value(QStringLiteral("path")).toString().endsWith(QStringLiteral("/t\uFFFDo")));
    EXPECT_TRUE(threat.value(QStringLiteral("uri")).toString().endsWith(QStringLiteral("/t%FFo")));
    EXPECT_TRUE(
        threat.value(QStringLiteral("uri")).toString().startsWith(QStringLiteral("file:///")));
}

TEST_F(ThreatCommandsTest, MeansEveryPathByAnIdentifier) {
    EXPECT_EQ(outcomes(answer("Quarantine", threats({identifier(0)}))),
              QStringList({QStringLiteral("taken"), QStringLiteral("taken")}));
    EXPECT_EQ(outcomes(answer("Restore", threats({identifier(0).left(8)}))),
              QStringList({QStringLiteral("restored"), QStringLiteral("restored")}));
    EXPECT_EQ(outcomes(answer("Waive", threats({identifier(2), identifier(2)}))),
              QStringList({QStringLiteral("waived")}));
    EXPECT_EQ(m_store->waives().back().by, 1000U);
}

TEST_F(ThreatCommandsTest, FindsThreatsByNumberPathAndUri) {
    const QString uri = QString::fromStdString("file://" + m_folder + "/t%FFo");
    const QJsonObject reply =
        answer("Quarantine", threats({static_cast<qint64>(m_requests[0].finding), uri,
                                      QString::fromStdString(path("other"))}));
    EXPECT_TRUE(reply.value(QStringLiteral("ok")).toBool());
    EXPECT_EQ(outcomes(reply).size(), 3);
    EXPECT_THAT(inFolder(), ::testing::IsEmpty());
}

TEST_F(ThreatCommandsTest, RestoresOnlyWhatIsInQuarantine) {
    (void)answer("Quarantine", threats({QString::fromStdString(path("one"))}));
    EXPECT_EQ(outcomes(answer("Restore", threats({identifier(0)}))),
              QStringList({QStringLiteral("restored")}));
    EXPECT_EQ(code(answer("Restore", threats({identifier(0)}))), QStringLiteral("unknown"));
}

TEST_F(ThreatCommandsTest, TellsWhatCouldNotBeDone) {
    std::filesystem::remove(path("one"));
    const QJsonObject reply = answer("Quarantine", threats({identifier(0)}));
    EXPECT_EQ(code(reply), QStringLiteral("failed"));
    EXPECT_EQ(outcomes(reply), QStringList({QStringLiteral("gone"), QStringLiteral("taken")}));
}

TEST_F(ThreatCommandsTest, RestoresOneThreatToAnotherPlace) {
    (void)answer("Quarantine", threats({identifier(0)}));
    QJsonObject arguments = threats({identifier(0)});
    arguments.insert(QStringLiteral("path"), QString::fromStdString(path("evidence")));
    EXPECT_EQ(code(answer("Restore", arguments)), QStringLiteral("arguments"));
    arguments.insert(QStringLiteral("threats"),
                     QJsonArray{static_cast<qint64>(m_requests[0].finding)});
    EXPECT_TRUE(answer("Restore", arguments).value(QStringLiteral("ok")).toBool());
    EXPECT_EQ(readFile(path("evidence")), "a bad program");
}

TEST_F(ThreatCommandsTest, ListsDeletedThreatsOnlyWhenAsked) {
    EXPECT_EQ(outcomes(answer("Delete", threats({identifier(2)}))),
              QStringList({QStringLiteral("deleted")}));
    EXPECT_EQ(answer("Threats").value(QStringLiteral("threats")).toArray().size(), 2);
    EXPECT_EQ(answer("Threats", {{QStringLiteral("all"), true}})
                  .value(QStringLiteral("threats"))
                  .toArray()
                  .size(),
              3);
}

TEST_F(ThreatCommandsTest, RefusesArgumentsThatAreNotAsDocumented) {
    const QString bad = QStringLiteral("arguments");
    EXPECT_EQ(code(answer("Quarantine")), bad);
    EXPECT_EQ(code(answer("Quarantine", {{QStringLiteral("threats"), 5}})), bad);
    QJsonObject relative = threats({identifier(0)});
    relative.insert(QStringLiteral("path"), QStringLiteral("evidence"));
    EXPECT_EQ(code(answer("Restore", relative)), bad);
    for (const QJsonValue& selector :
         {QJsonValue(QString()), QJsonValue(QStringLiteral("%")), QJsonValue(QStringLiteral("abc")),
          QJsonValue(999), QJsonValue(1e300), QJsonValue(-1), QJsonValue(true), QJsonValue(),
          QJsonValue(QJsonArray()), QJsonValue(QStringLiteral("/none")),
          QJsonValue(QStringLiteral("file:///a%00"))}) {
        EXPECT_EQ(code(answer("Delete", threats({selector}))), QStringLiteral("unknown"));
    }
    EXPECT_EQ(inFolder().size(), 3U);
}

} // namespace
} // namespace korvale::agent
