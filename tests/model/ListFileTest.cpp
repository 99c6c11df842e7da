#include "model/ListFile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace korvale {
namespace {

class ListFileTest : public testing::Test {
protected:
    ListRead read(const QByteArray& content) {
        QFile file(m_folder.filePath(QStringLiteral("list.log")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        return readListFile(file.fileName(), m_last, m_parser);
    }
    /// Reads and remembers.
    ListState parse(const QByteArray& content) {
        const ListRead result = read(content);
        if (result.state == ListState::Changed) {
            m_last = result.checksum;
        }
        return result.state;
    }

    QTemporaryDir m_folder;
    JsonParser m_parser;
    ListChecksum m_last;
};

TEST_F(ListFileTest, AFirstListHasChanged) {
    const ListRead result = read(R"({"a":{"State":1}})");
    EXPECT_EQ(result.state, ListState::Changed);
    EXPECT_EQ(result.list["a"]["State"].utf8(), "1");
}

TEST_F(ListFileTest, TheSameBytesAreUnchanged) {
    ASSERT_EQ(parse(R"({"a":1})"), ListState::Changed);
    const ListRead again = read(R"({"a":1})");
    EXPECT_EQ(again.state, ListState::Unchanged);
    EXPECT_TRUE(again.checksum.sameBytes(m_last));
    EXPECT_TRUE(again.list.isNull());
}

TEST_F(ListFileTest, AListThatIsNotRememberedChangesEachTime) {
    EXPECT_EQ(read(R"({"a":1})").state, ListState::Changed);
    EXPECT_EQ(read(R"({"a":1})").state, ListState::Changed);
}

TEST_F(ListFileTest, OrderWhiteSpaceAndSpellingDoNotMatter) {
    ASSERT_EQ(parse(R"({"/a":{"State":1,"ID":"x"},"/b":{"State":2},"n":[1,0.5,null]})"),
              ListState::Changed);
    for (
        const char* same : {
            R"({"/b":{"State":2},"/a":{"ID":"x","State":1},"n":[1,0.5,null]})",
            "{ \"/a\" : {\n\"State\":1 , "
            "\"ID\":\"x\"},\t\"/b\":{\"State\":2},\"n\":[1,0.5,null]}\n",
            R"({"\/a":{"St\u0061te":1.0,"ID":"\u0078"},"/b":{"State":20e-1},"n":[10E-1,5e-1,null]})",
            R"({"/a":{"State":true,"ID":"x"},"/b":{"State":2},"n":[true,0.5,null]})",
            R"({"/a":5,"/a":{"State":7,"State":1,"ID":"x"},"/b":{"State":2},"n":[1,0.5,null]})",
        }) {
        const ListRead result = read(same);
        EXPECT_EQ(result.state, ListState::Unchanged) << same;
        EXPECT_FALSE(result.checksum.sameBytes(m_last));
        EXPECT_TRUE(result.checksum.sameContent(m_last));
    }
}

TEST_F(ListFileTest, EveryDifferenceOfAValueIsAChange) {
    ASSERT_EQ(parse(R"({"/a":{"State":1,"ID":"x"},"/b":{"State":2},"n":[1,2]})"),
              ListState::Changed);
    for (const char* other : {
             R"({"/a":{"State":2,"ID":"x"},"/b":{"State":1},"n":[1,2]})",
             R"({"/a":{"State":1,"ID":"y"},"/b":{"State":2},"n":[1,2]})",
             R"({"/a":{"State":1,"ID":"x"},"/c":{"State":2},"n":[1,2]})",
             R"({"/a":{"State":1,"ID":"x"},"/b":{"State":2},"n":[2,1]})",
             R"({"/a":{"State":1,"ID":"x"},"/b":{"State":"2"},"n":[1,2]})",
             R"({"/a":{"State":false,"ID":"x"},"/b":{"State":2},"n":[1,2]})",
             R"({"/a":{"State":1,"ID":"x"},"/b":{"State":2},"n":[1,2],"m":null})",
             R"({"/a":{"State":1,"ID":"x"},"n":[1,2]})",
             R"({"/a":{"State":1,"id":"x"},"/b":{"State":2},"n":[1,2]})",
         }) {
        EXPECT_EQ(read(other).state, ListState::Changed) << other;
    }
}

TEST_F(ListFileTest, AnEmptyListIsEmptyEachTimeAndForgetsNothing) {
    ASSERT_EQ(parse(R"({"a":1})"), ListState::Changed);
    EXPECT_EQ(read("{}").state, ListState::Empty);
    EXPECT_EQ(read("[]").state, ListState::Empty);
    EXPECT_EQ(read(" {\n} ").state, ListState::Empty);
    EXPECT_EQ(read(R"({"a":1})").state, ListState::Unchanged);
}

TEST_F(ListFileTest, AJsonListThatHoldsSomethingCanChange) {
    EXPECT_EQ(parse("[{\"State\":1}]"), ListState::Changed);
    EXPECT_EQ(parse("[ {\"State\":1} ]"), ListState::Unchanged);
    EXPECT_EQ(parse("[{\"State\":2}]"), ListState::Changed);
}

TEST_F(ListFileTest, OneWrongByteAnywhereMakesTheWholeListAbsent) {
    const QByteArray valid = R"({"/a":{"State":1,"Other":[true,"x"]},"/b":{"State":2}})";
    for (qsizetype at = 0; at < valid.size(); ++at) {
        QByteArray damaged = valid;
        damaged[at] = '\x01';
        const ListRead result = read(damaged);
        EXPECT_EQ(result.state, ListState::Absent) << at;
        EXPECT_TRUE(result.list.isNull());
    }
}

TEST_F(ListFileTest, ChecksumsOfDifferentFilesCompare) {
    ASSERT_EQ(parse(R"({"device":1})"), ListState::Changed);
    ASSERT_EQ(parse(R"({"process":1})"), ListState::Changed);
    ASSERT_EQ(parse(R"({"device":1})"), ListState::Changed);
    EXPECT_EQ(parse(R"({"device": 1})"), ListState::Unchanged);
}

} // namespace
} // namespace korvale
