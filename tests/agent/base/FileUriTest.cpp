#include "agent/base/FileUri.h"

#include <gtest/gtest.h>

namespace korvale::agent {
namespace {

TEST(FileUriTest, KeepsEveryByteOfAPath) {
    std::string path = "/home/";
    for (int byte = 1; byte < 256; ++byte) {
        path += static_cast<char>(byte);
    }
    const std::string uri = fileUri(path);
    EXPECT_EQ(uri.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"
                                    "-._~/%:"),
              std::string::npos);
    EXPECT_EQ(pathOfUri(uri), path);
    EXPECT_EQ(fileUri("/a b\xff"), "file:///a%20b%FF");
}

TEST(FileUriTest, RefusesWhatIsNoLocalPath) {
    for (const std::string_view uri :
         {"", "/a", "http://a/b", "file://", "file://host/a", "file:///a%", "file:///a%4",
          "file:///a%GG", "file:///a%00b", "FILE:///a"}) {
        EXPECT_EQ(pathOfUri(uri), std::nullopt) << uri;
    }
    EXPECT_EQ(pathOfUri("file:///a%4a"), "/aJ");
}

} // namespace
} // namespace korvale::agent
