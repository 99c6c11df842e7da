#include "agent_sim/FileFaults.h"

#include "agent/publish/HostCacheWriter.h"
#include "fakes/TestFolder.h"

namespace korvale::sim {
namespace {

class FileFaultsTest : public testing::Test {
protected:
    QString place(const char* kind) {
        return placeFaultyFile(m_writer, m_name, QLatin1String(kind));
    }
    [[nodiscard]] QJsonParseError::ParseError parse() const {
        QJsonParseError error{};
        QJsonDocument::fromJson(m_folder.read(m_name), &error);
        return error.error;
    }

    TestFolder m_folder;
    HostCacheWriter m_writer{m_folder.path()};
    QString m_name = QStringLiteral("file_states.log");
};

TEST_F(FileFaultsTest, EveryKindCanBePlacedOverEveryOther) {
    for (const QString& kind : faultyFileKinds()) {
        EXPECT_EQ(placeFaultyFile(m_writer, m_name, kind), QString()) << kind.toStdString();
    }
}

TEST_F(FileFaultsTest, BrokenTextsDoNotParse) {
    for (const char* kind : {"truncated", "not-json", "empty", "deep", "invalid-utf8"}) {
        ASSERT_EQ(place(kind), QString());
        EXPECT_NE(parse(), QJsonParseError::NoError) << kind;
    }
}

TEST_F(FileFaultsTest, WrongContentsParse) {
    for (const char* kind : {"wrong-types", "list", "empty-object", "duplicate"}) {
        ASSERT_EQ(place(kind), QString());
        EXPECT_EQ(parse(), QJsonParseError::NoError) << kind;
    }
}

TEST_F(FileFaultsTest, TheLargeFileIsLargerThan256MebibytesAndTakesNoRoom) {
    ASSERT_EQ(place("too-large"), QString());
    EXPECT_EQ(QFileInfo(m_folder.path(m_name)).size(), (qint64{256} << 20) + 1);
}

TEST_F(FileFaultsTest, AnAbsentFileIsGone) {
    ASSERT_EQ(place("empty"), QString());
    ASSERT_EQ(place("absent"), QString());
    EXPECT_EQ(m_folder.names(), QStringList());
}

TEST_F(FileFaultsTest, AnUnknownKindIsRefused) {
    EXPECT_TRUE(place("nonsense").contains(QStringLiteral("truncated")));
    EXPECT_EQ(m_folder.names(), QStringList());
}

} // namespace
} // namespace korvale::sim
