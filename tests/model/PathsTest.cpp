#include "model/Paths.h"

#include <gtest/gtest.h>
#include <ostream>

namespace korvale {
namespace {

struct PathCase {
    const char16_t* path;
    const char16_t* lastComponent;
    const char16_t* directory;
    const char16_t* extension;
};

void PrintTo(const PathCase& path, std::ostream* out) {
    *out << QString::fromUtf16(path.path).toStdString();
}

class PathParts : public testing::TestWithParam<PathCase> {};

TEST_P(PathParts, AreReadOffTheText) {
    const PathCase& expected = GetParam();
    const QStringView path(expected.path);
    EXPECT_EQ(lastPathComponent(path), QString::fromUtf16(expected.lastComponent));
    EXPECT_EQ(directoryOf(path), QString::fromUtf16(expected.directory));
    EXPECT_EQ(pathExtension(path), QString::fromUtf16(expected.extension));
}

INSTANTIATE_TEST_SUITE_P(Plain, PathParts,
                         testing::Values(PathCase{u"/usr/bin/tool", u"tool", u"/usr/bin", u""},
                                         PathCase{u"/a", u"a", u"/", u""},
                                         PathCase{u"a", u"a", u"", u""},
                                         PathCase{u"a/b.txt", u"b.txt", u"a", u"txt"},
                                         PathCase{u"/b.d/c", u"c", u"/b.d", u""}));

INSTANTIATE_TEST_SUITE_P(OnlySlashesOrNothing, PathParts,
                         testing::Values(PathCase{u"", u"", u"", u""},
                                         PathCase{u"/", u"/", u"/", u""},
                                         PathCase{u"///", u"/", u"/", u""}));

INSTANTIATE_TEST_SUITE_P(SlashesThatDoNotCount, PathParts,
                         testing::Values(PathCase{u"/a/b.c/", u"b.c", u"/a", u"c"},
                                         PathCase{u"a//", u"a", u"", u""},
                                         PathCase{u"//a", u"a", u"/", u""},
                                         PathCase{u"/a//b", u"b", u"/a", u""}));

INSTANTIATE_TEST_SUITE_P(Dots, PathParts,
                         testing::Values(PathCase{u"/a/.name", u".name", u"/a", u""},
                                         PathCase{u"/a/name.", u"name.", u"/a", u""},
                                         PathCase{u"/a/.x.y", u".x.y", u"/a", u"y"},
                                         PathCase{u"x.tar.gz", u"x.tar.gz", u"", u"gz"},
                                         PathCase{u"/a/.", u".", u"/a", u""},
                                         PathCase{u"/a/..", u"..", u"/a", u""}));

INSTANTIATE_TEST_SUITE_P(UnusualCharacters, PathParts,
                         testing::Values(PathCase{u"/a\nb/c\nd.e", u"c\nd.e", u"/a\nb", u"e"},
                                         PathCase{u"/ü/名.テ", u"名.テ", u"/ü", u"テ"},
                                         PathCase{u"/<b>/\u202Egpj.exe", u"\u202Egpj.exe", u"/<b>",
                                                  u"exe"}));

} // namespace
} // namespace korvale
