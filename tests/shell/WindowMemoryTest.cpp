#include "shell/WindowMemory.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace korvale {
namespace {

class WindowMemoryTest : public testing::Test {
protected:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("a/b.json")); }

    [[nodiscard]] WindowPlacement loadFrom(const QByteArray& content) const {
        QFile file(m_folder.filePath(QStringLiteral("given.json")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return WindowMemory(file.fileName()).load();
    }

private:
    QTemporaryDir m_folder;
};

const WindowPlacement somePlacement{
    QByteArray("\0\1geometry", 10),
    QStringLiteral("xcb"),
    {{QStringLiteral("eventsTable"), {120, 80, 300}}, {QStringLiteral("fileThreatsTable"), {90}}},
    {{QStringLiteral("eventsTable"),
      {{QStringLiteral("COL2"), QStringLiteral("COL1")}, {QStringLiteral("-COL2")}}}}};

TEST_F(WindowMemoryTest, IsEmptyAtFirst) {
    EXPECT_EQ(WindowMemory(path()).load(), WindowPlacement{});
}

TEST_F(WindowMemoryTest, GivesBackWhatAnEarlierRunSaved) {
    WindowMemory(path()).save(somePlacement); // its end waits for the write
    EXPECT_EQ(WindowMemory(path()).load(), somePlacement);
}

TEST_F(WindowMemoryTest, TheLastOfSeveralWritesCounts) {
    {
        WindowMemory memory(path());
        memory.save(WindowPlacement{QByteArray("1"), {}, {}, {}});
        memory.save(WindowPlacement{QByteArray("2"), {}, {}, {}});
        memory.save(somePlacement);
    }
    EXPECT_EQ(WindowMemory(path()).load(), somePlacement);
}

TEST_F(WindowMemoryTest, DoesNotWriteWhatItAlreadyHolds) {
    WindowMemory(path()).save(somePlacement);
    {
        WindowMemory memory(path());
        const WindowPlacement read = memory.load();
        QFile::remove(path());
        memory.save(read);
    }
    EXPECT_FALSE(QFile::exists(path()));
}

TEST_F(WindowMemoryTest, AFileThatCannotBeWrittenChangesNothing) {
    WindowMemory memory(QStringLiteral("/proc/none/window.json"));
    memory.save(somePlacement);
    EXPECT_EQ(memory.load(), WindowPlacement{});
}

TEST_F(WindowMemoryTest, DamagedFilesLeaveWhatIsDamagedEmpty) {
    for (const char* content : {"", "[]", "nonsense", R"({"geometry":5,"columns":[]})",
                                R"({"columns":{"a":5}})", R"({"columns":{"a":[100,-3]}})",
                                R"({"columns":{"a":[1e9]}})", R"({"columns":{"a":["wide"]}})"}) {
        EXPECT_EQ(loadFrom(content), WindowPlacement{}) << content;
    }
    EXPECT_EQ(loadFrom(R"({"geometry":5,"columns":{"a":[0],"b":[50,60]}})").columnWidths,
              (QMap<QString, QList<int>>{{QStringLiteral("b"), {50, 60}}}));
}

TEST_F(WindowMemoryTest, OrdersThatMakeNoSenseAreNone) {
    for (const char* order :
         {"5", "[]", R"({"columns":5})", R"({"columns":[5]})", R"({"columns":[""]})",
          R"({"columns":["a name of more than sixteen letters"]})", R"({"sort":[["COL1"]]})",
          R"({"sort":{"COL1":true}})",
          R"({"sort":["1","2","3","4","5","6","7","8","9","a","b","c","d","e","f","g","h"]})"}) {
        EXPECT_EQ(loadFrom(QByteArray(R"({"orders":{"a":)") + order + "}}"), WindowPlacement{})
            << order;
    }
    EXPECT_EQ(loadFrom(R"({"orders":{"a":{"columns":[0],"sort":["COL1"]}}})").orders,
              (QMap<QString, TableOrder>{{QStringLiteral("a"), {{}, {QStringLiteral("COL1")}}}}));
}

TEST_F(WindowMemoryTest, IsTheUsersAloneWhateverTheUmask) {
    const mode_t before = ::umask(0);
    WindowMemory(path()).save(somePlacement);
    ::umask(before);
    const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                      QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
    EXPECT_FALSE(QFile::permissions(path()) & others);
    EXPECT_FALSE(QFile::permissions(QFileInfo(path()).path()) & others);
}

TEST_F(WindowMemoryTest, AFolderInPlaceOfTheFileCountsAsEmpty) {
    EXPECT_EQ(WindowMemory(QStringLiteral("/tmp")).load(), WindowPlacement{});
}

} // namespace
} // namespace korvale
