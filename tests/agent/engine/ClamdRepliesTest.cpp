#include "agent/engine/ClamdReplies.h"

#include <gtest/gtest.h>
#include <string>

using namespace korvale::agent;
using namespace std::string_literals;

namespace {

TEST(ClamdReplies, AreTakenFromOnePieceInAnyOrder) {
    ClamdReplies parser;
    std::vector<ClamdReply> replies;
    EXPECT_TRUE(parser.feed("4: fd[9]: OK\0002: PONG\0001: fd[10]: A B FOUND\0"s, replies));
    const std::vector<ClamdReply> expected{{4, "fd[9]: OK"}, {2, "PONG"}, {1, "fd[10]: A B FOUND"}};
    EXPECT_EQ(replies, expected);
}

TEST(ClamdReplies, AreTheSameHoweverTheirBytesArrive) {
    const std::string bytes = "1: fd[9]: OK\0002: fd[9]: \xff\n FOUND\0"s;
    for (std::size_t piece = 1; piece < bytes.size(); ++piece) {
        ClamdReplies parser;
        std::vector<ClamdReply> replies;
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            EXPECT_TRUE(parser.feed(std::string_view(bytes).substr(at, piece), replies));
        }
        const std::vector<ClamdReply> expected{{1, "fd[9]: OK"}, {2, "fd[9]: \xff\n FOUND"}};
        EXPECT_EQ(replies, expected) << piece;
    }
}

TEST(ClamdReplies, WithoutTheirEndAreNone) {
    ClamdReplies parser;
    std::vector<ClamdReply> replies;
    EXPECT_TRUE(parser.feed("1: fd[9]: OK", replies));
    EXPECT_TRUE(replies.empty());
}

TEST(ClamdReplies, OfNoSuchFormBreakTheSessionForGood) {
    for (const std::string& wrong : {"COMMAND READ TIMED OUT\n\0"s, "\0"s, "0: OK\0"s, "-1: OK\0"s,
                                     "1 OK\0"s, "1:OK\0"s, "99999999999: OK\0"s, " 1: OK\0"s,
                                     std::string(5000, 'x'), "1: "s + std::string(5000, 'x')}) {
        ClamdReplies parser;
        std::vector<ClamdReply> replies;
        EXPECT_FALSE(parser.feed("1: fd[9]: OK\0"s + wrong, replies)) << wrong;
        EXPECT_EQ(replies.size(), 1U) << wrong;
        EXPECT_FALSE(parser.fault().empty());
        EXPECT_FALSE(parser.feed("2: fd[9]: OK\0"s, replies)) << wrong;
        EXPECT_EQ(replies.size(), 1U) << wrong;
    }
}

} // namespace
