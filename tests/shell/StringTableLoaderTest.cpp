#include "shell/StringTableLoader.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using Table = std::map<QString, QString>;

Table tableOf(const char* document) {
    StringTableLoader loader;
    QXmlStreamReader reader(QString::fromUtf8(document));
    loader.load(reader);
    return loader.strings();
}

TEST(StringTableLoader, ReadsOneTextPerData) {
    EXPECT_EQ(
        tableOf("<root>lost<data name='a'> lost <value>one &amp; two</value></data>"
                "<data name='b'><comment>lost</comment><value>2<i>3</i></value></data></root>"),
        (Table{{QStringLiteral("a"), QStringLiteral("one & two")},
               {QStringLiteral("b"), QStringLiteral("23")}}));
}

TEST(StringTableLoader, TheLastOfEqualNamesCounts) {
    EXPECT_EQ(tableOf("<r><data name='a'><value>1</value></data>"
                      "<data name='a'><value>2</value></data></r>"),
              (Table{{QStringLiteral("a"), QStringLiteral("2")}}));
}

TEST(StringTableLoader, DataWithoutAValueRemovesItsKey) {
    EXPECT_EQ(tableOf("<r><data name='a'><value>1</value></data><data name='a'/></r>"), Table{});
    EXPECT_EQ(tableOf("<r><data name='a'><value/></data></r>"),
              (Table{{QStringLiteral("a"), QString()}}));
}

TEST(StringTableLoader, TheKeyIsKeptUntilTheNextData) {
    EXPECT_EQ(tableOf("<r><data name='a'><value>1</value><data><value>2</value></data></data></r>"),
              Table{})
        << "the inner data has no name, so neither end of data has a key";
}

TEST(StringTableLoader, AnotherValueReplacesTheFirst) {
    EXPECT_EQ(tableOf("<r><data name='a'><value>1</value><value>2</value>3</data></r>"),
              (Table{{QStringLiteral("a"), QStringLiteral("23")}}));
}

TEST(StringTableLoader, ABrokenDocumentIsReadAsFarAsItGoes) {
    EXPECT_EQ(tableOf("<r><data name='a'><value>1</value></data><data name='b'><value>2"),
              (Table{{QStringLiteral("a"), QStringLiteral("1")}}));
    EXPECT_EQ(tableOf(""), Table{});
}

} // namespace
} // namespace korvale
