#include "agent/watch/FileEvents.h"

#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <sys/fanotify.h>

namespace korvale::agent {
namespace {

/// Bytes as the kernel lays them out.
class Buffer {
public:
    Buffer& event(std::uint64_t mask, const std::string& records, int descriptor = FAN_NOFD) {
        fanotify_event_metadata head{};
        head.event_len = static_cast<std::uint32_t>(sizeof head + records.size());
        head.vers = FANOTIFY_METADATA_VERSION;
        head.metadata_len = sizeof head;
        head.mask = mask;
        head.fd = descriptor;
        head.pid = 77;
        m_bytes.append(static_cast<const char*>(static_cast<const void*>(&head)), sizeof head);
        m_bytes += records;
        return *this;
    }
    /// A record of a folder's handle ("HANDLE!!") and a name.
    static std::string record(const std::string& name, std::uint8_t type = 2) {
        std::string bytes;
        const auto put = [&](const auto& value) {
            bytes.append(static_cast<const char*>(static_cast<const void*>(&value)), sizeof value);
        };
        std::string body =
            std::string("FILESYST") + std::string("\x08\0\0\0\x01\0\0\0HANDLE!!", 16) + name + '\0';
        while ((body.size() + 4) % 4 != 0) {
            body += '\0';
        }
        put(type);
        put(std::uint8_t{0});
        put(static_cast<std::uint16_t>(body.size() + 4));
        return bytes + body;
    }
    [[nodiscard]] FileEvents parsed() const { return parseFileEvents(m_bytes); }
    [[nodiscard]] const std::string& bytes() const { return m_bytes; }

private:
    std::string m_bytes;
};

TEST(FileEventsTest, AFolderAndANameAreRead) {
    const FileEvents found = Buffer()
                                 .event(FAN_CLOSE_WRITE, Buffer::record("new file"))
                                 .event(FAN_MOVED_TO | FAN_ONDIR, Buffer::record("folder"))
                                 .parsed();
    ASSERT_EQ(found.events.size(), 2U);
    const FileEvent& written = found.events[0];
    EXPECT_EQ(written.name, "new file");
    EXPECT_EQ(written.process, 77);
    EXPECT_FALSE(written.isFolder);
    EXPECT_EQ(std::memcmp(&written.fileSystem, "FILESYST", 8), 0);
    EXPECT_EQ(std::string(written.folder.end() - 8, written.folder.end()), "HANDLE!!");
    EXPECT_TRUE(found.events[1].isFolder);
    EXPECT_FALSE(found.overflow);
}

TEST(FileEventsTest, AnOverflowIsNoticed) {
    const FileEvents found =
        Buffer().event(FAN_Q_OVERFLOW, {}).event(FAN_CLOSE_WRITE, Buffer::record("a")).parsed();
    EXPECT_TRUE(found.overflow);
    EXPECT_EQ(found.events.size(), 1U);
}

TEST(FileEventsTest, DescriptorsArePassedOn) {
    const FileEvents found = Buffer().event(FAN_CLOSE_WRITE, {}, 9).parsed();
    ASSERT_EQ(found.events.size(), 1U);
    EXPECT_EQ(found.events[0].descriptor, 9);
}

TEST(FileEventsTest, NamesThatLeadElsewhereAreDropped) {
    for (const char* const name : {"", ".", "..", "a/b", "/etc/passwd"}) {
        EXPECT_TRUE(Buffer().event(FAN_MOVED_TO, Buffer::record(name)).parsed().events.empty())
            << name;
    }
    EXPECT_TRUE(Buffer().event(FAN_MOVED_TO, Buffer::record("x", 3)).parsed().events.empty())
        << "a record of another kind";
}

TEST(FileEventsTest, EveryCutBufferIsHarmless) {
    const std::string whole = Buffer()
                                  .event(FAN_CLOSE_WRITE, Buffer::record("first"))
                                  .event(FAN_MOVED_TO, Buffer::record("second"))
                                  .bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        // Of its own size, so that a read beyond it is seen by the sanitizer.
        const std::vector<char> cut(whole.begin(),
                                    whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_LE(parseFileEvents(cut).events.size(), 1U);
    }
}

TEST(FileEventsTest, LengthsThatLieEndTheBuffer) {
    std::string bytes = Buffer().event(FAN_CLOSE_WRITE, Buffer::record("a")).bytes();
    for (const std::uint32_t length : {0U, 1U, 23U, 100'000U, 0xFFFFFFFFU}) {
        std::memcpy(bytes.data(), &length, sizeof length);
        EXPECT_TRUE(parseFileEvents(bytes).events.empty()) << length;
    }
}

} // namespace
} // namespace korvale::agent
