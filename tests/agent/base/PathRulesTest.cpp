#include "agent/base/PathRules.h"

#include <gtest/gtest.h>

using namespace korvale::agent;

namespace {

struct Case {
    const char* rule;
    const char* path;
    bool applies;
};

class PathRulesTest : public testing::TestWithParam<Case> {};

TEST_P(PathRulesTest, ApplyToWhatTheyNameAndEverythingBeneath) {
    PathRules rules;
    std::string error;
    ASSERT_TRUE(rules.add(GetParam().rule, error)) << error;
    EXPECT_EQ(rules.match(GetParam().path) != nullptr, GetParam().applies)
        << GetParam().rule << " and " << GetParam().path;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PathRulesTest,
    testing::Values(Case{"/srv/data", "/srv/data", true}, Case{"/srv/data", "/srv/data/x/y", true},
                    Case{"/srv/data/", "/srv/data/x", true},
                    Case{"/srv/data", "/srv/database", false}, Case{"/srv/data", "/srv", false},
                    Case{"/", "/anything", true}, Case{"/", "/", true},
                    Case{"/home/*/cache", "/home/a/cache/file", true},
                    Case{"/home/*/cache", "/home/a/b/cache", false},
                    Case{"/home/*/cache", "/home/cache", false}, Case{"/home/*", "/home", false},
                    Case{"/home/*", "/home/a", true}, Case{"/*/x*y*", "/q/x1y2", true},
                    Case{"/*/x*y*", "/q/xy/deep", true}, Case{"/*/x*y", "/q/x1y2", false},
                    Case{"/a?", "/ab", true}, Case{"/a?", "/a", false}, Case{"/a?", "/a/b", false},
                    Case{"/*.iso", "/x.iso", true}, Case{"/*.iso", "/x.is", false},
                    Case{"/caf\xc3\xa9", "/caf\xc3\xa9/x", true}, Case{"/\xff*", "/\xff\xfe", true},
                    Case{"/a*a*a*a*a*a*a*a*a*b",
                         "/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", false}));

TEST(PathRules, SayWhichOneApplies) {
    PathRules rules;
    std::string error;
    EXPECT_TRUE(rules.isEmpty());
    ASSERT_TRUE(rules.add("/one", error));
    ASSERT_TRUE(rules.add("/t*/", error));
    EXPECT_EQ(*rules.match("/two/x"), "/t*");
    EXPECT_EQ(rules.match("/three"), rules.match("/two"));
    EXPECT_EQ(rules.match("/four"), nullptr);
}

TEST(PathRules, AreRefusedWhenTheyAreNone) {
    for (const std::string& wrong :
         {std::string(), std::string("relative"), std::string("*"), std::string("/a//b"),
          std::string("/a/../b"), std::string("/./a"), std::string("/a\0b", 4)}) {
        PathRules rules;
        std::string error;
        EXPECT_FALSE(rules.add(wrong, error)) << wrong;
        EXPECT_FALSE(error.empty());
        EXPECT_TRUE(rules.isEmpty());
    }
}

} // namespace
