#include "agent/engine/ClamdAnswer.h"

#include <gtest/gtest.h>

using namespace korvale::agent;

namespace {

struct Case {
    const char* reply;
    Verdict verdict;
    const char* name;
};

class ClamdAnswer : public testing::TestWithParam<Case> {};

TEST_P(ClamdAnswer, MeansWhatItSays) {
    const Judgement judgement = judgementOf(GetParam().reply);
    EXPECT_EQ(judgement.verdict, GetParam().verdict) << GetParam().reply;
    EXPECT_EQ(judgement.name, GetParam().name) << GetParam().reply;
    EXPECT_EQ(judgement.reason.empty(), isJudged(judgement.verdict));
}

INSTANTIATE_TEST_SUITE_P(
    Replies, ClamdAnswer,
    testing::Values(
        Case{"fd[11]: OK", Verdict::Clean, ""},
        Case{"fd[11]: Win.Test.A-1 FOUND", Verdict::Unsafe, "Win.Test.A-1"},
        Case{"fd[11]: Korvale.Bad.UNOFFICIAL FOUND", Verdict::Unsafe, "Korvale.Bad.UNOFFICIAL"},
        Case{"fd[11]: Heuristics.Phishing.Email FOUND", Verdict::Abnormal,
             "Heuristics.Phishing.Email"},
        Case{"fd[11]: PUA.Win.Packer FOUND", Verdict::Abnormal, "PUA.Win.Packer"},
        Case{"fd[11]: PUAX.Win FOUND", Verdict::Unsafe, "PUAX.Win"},
        Case{"fd[11]: Heuristics.Limits.Exceeded.MaxFileSize FOUND", Verdict::NotScanned, ""},
        Case{"fd[11]: Heuristics.Limits.Exceeded FOUND", Verdict::NotScanned, ""},
        Case{"fd[11]: Eicar(44d88612fea8a8f36de82e1278abb02f:68) FOUND", Verdict::Unsafe, "Eicar"},
        Case{"fd[11]: Odd(name) FOUND", Verdict::Unsafe, "Odd(name)"},
        Case{"fd[11]: (44d88612fea8a8f36de82e1278abb02f:68) FOUND", Verdict::NoAnswer, ""},
        Case{"fd[11]: Not a regular file ERROR", Verdict::NotScanned, ""},
        Case{"fd[11]: Can't allocate memory ERROR", Verdict::NotScanned, ""},
        Case{"No file descriptor received. ERROR", Verdict::NotScanned, ""},
        Case{"Command invalid inside IDSESSION. ERROR", Verdict::NotScanned, ""},
        Case{"fd[11]: maybe", Verdict::NoAnswer, ""}, Case{"fd[11]: OK ", Verdict::NoAnswer, ""},
        Case{"fd[11]:  FOUND", Verdict::NoAnswer, ""}, Case{"OK", Verdict::NoAnswer, ""},
        Case{"", Verdict::NoAnswer, ""}, Case{"PONG", Verdict::NoAnswer, ""},
        Case{"fd[11]: a\x01\xff"
             "b FOUND",
             Verdict::Unsafe, "a\\x01\\xffb"}));

} // namespace
