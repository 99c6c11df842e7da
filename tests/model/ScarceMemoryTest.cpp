// What does not fit into memory counts as absent, and the program goes on.
#include "ScarceMemory.h"

#include "model/BatchFixture.h"
#include "model/CCCryptMessage.h"
#include "model/UpdaterCrypto.h"
#include "platform/SmallFile.h"

#include <gtest/gtest.h>
#include <vector>

namespace korvale {
namespace {

class ScarceMemoryTest : public BatchFixture {
protected:
    ScarceMemoryTest() { write("header.log", R"({"MessageMask": 2065})"); }

    /// 2000 records with this inside.
    void writeList(const char* name, const QByteArray& record) const {
        QByteArray list = "{";
        for (int i = 0; i < 2000; ++i) {
            list += (i == 0 ? "\"/" : ",\"/") + QByteArray::number(i) + "\":{" + record + "}";
        }
        write(name, list + "}");
    }

    /// One batch; what it made the tables do.
    QStringList pass() {
        calls.clear();
        messages.parseTimerAggregatedMessage();
        return calls;
    }
};

TEST_F(ScarceMemoryTest, AListTooLargeForItIsAbsentUntilThereIsMore) {
    writeList("file_states.log", "\"State\":1,\"ID\":\"x\"");
    {
        const ScarceMemory scarce(20'000);
        EXPECT_FALSE(hostCache.readFile(QStringLiteral("file_states.log")));
        EXPECT_EQ(pass(), QStringList({QStringLiteral("threats load nothing"),
                                       QStringLiteral("threats update")}));
        EXPECT_GT(ScarceMemory::refused(), 0);
        EXPECT_EQ(state.fileThreats, ListNews::Unreadable) << "or nothing found would be claimed";
    }
    EXPECT_EQ(pass(),
              QStringList({QStringLiteral("threats load 1"), QStringLiteral("threats update")}));
}

TEST_F(ScarceMemoryTest, WhereverItEndsListsAreAbsentAndComeBack) {
    writeList("file_states.log", "\"State\":1,\"ID\":[1,2]");
    writeList("process_states.log", "\"State\":0,\"PID\":7,\"Path\":\"/x\"");
    writeList("external_device_control_events.log", "\"When\":\"now\"");
    int refused = 0;
    int batches = 0;
    // The least that the header needs, and more than all lists need.
    for (std::size_t limit = 5000; limit < 400'000; limit += limit / 8) {
        remembered.lastFileStateCRC = {};
        const ScarceMemory scarce(limit);
        const QStringList done = pass();
        ++batches;
        EXPECT_TRUE(done.contains(QStringLiteral("threats load nothing")) ||
                    done.contains(QStringLiteral("threats load 1")))
            << limit << qPrintable(done.join(u' '));
        refused += ScarceMemory::refused();
    }
    EXPECT_GT(refused, 10);
    EXPECT_EQ(displays.shown.count(QStringLiteral("counters")), batches)
        << "each batch reaches its end";
    remembered.lastFileStateCRC = {};
    EXPECT_EQ(pass().first(), QStringLiteral("threats load 1"));
}

TEST_F(ScarceMemoryTest, ATextThatDoesNotFitIsNoValue) {
    const QByteArray text = "[\"" + QByteArray(50'000, 'x') + "\"]";
    write("large", text);
    const QString path = folder.filePath(QStringLiteral("large"));
    {
        const ScarceMemory scarce(20'000);
        EXPECT_FALSE(JsonValue::parse(text));
        EXPECT_FALSE(readSmallFile(path, 1 << 20));
    }
    EXPECT_TRUE(JsonValue::parse(text));
    EXPECT_TRUE(readSmallFile(path, 1 << 20));
}

TEST_F(ScarceMemoryTest, AMessageThatDoesNotFitIsNotDecrypted) {
    const std::vector<std::uint8_t> input(50'000 / 16 * 16);
    std::vector<std::uint8_t> output(input.size());
    const std::vector<std::uint8_t> key(cipherKeyLength);
    std::size_t length = output.size();
    // The cipher's library is loaded with the first message.
    (void)CCCrypt_Message(input.data(), 16, key.data(), key.size(), key.data(), output.data(),
                          &length, 0);
    const QString base64 =
        QString::fromLatin1(QByteArray(static_cast<qsizetype>(input.size()), 'x').toBase64());
    length = output.size();
    const ScarceMemory scarce(20'000);
    EXPECT_EQ(CCCrypt_Message(input.data(), input.size(), key.data(), key.size(), key.data(),
                              output.data(), &length, 0),
              -4302);
    EXPECT_EQ(UpdaterCrypto::decryptUpdaterMessage(base64, QDateTime::currentDateTime()),
              std::nullopt);
    EXPECT_EQ(ScarceMemory::refused(), 2);
}

} // namespace
} // namespace korvale
