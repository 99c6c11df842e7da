#include "agent/store/Store.h"

#include "agent/fakes/ScratchFolder.h"

#include <gmock/gmock.h>

namespace korvale::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kId(64, 'a');
const std::string kOtherId = std::string(63, 'a') + 'b';

Finding found(const std::string& id, const std::string& path, std::int64_t when = 1000) {
    return {0,    id,   path, "Test-Signature", ThreatKind::Unsafe, FindingState::Detected, when,
            when, 1000, 68};
}

QuarantineRecord recordOf(std::int64_t finding) {
    QuarantineRecord record;
    record.id = std::string(32, 'c');
    record.finding = finding;
    record.path = "/home/a\xff\n/x";
    record.sha256 = kId;
    record.judged = {~0ULL, ~1ULL, 68, -5, 7'000'000'000};
    record.mode = 06755;
    record.owner = 0xFFFFFFFF;
    record.group = 1000;
    record.accessedNs = -1;
    record.modifiedNs = 1;
    record.inodeFlags = 0x10;
    record.attributes = {{"user.comment", std::string("\0\xff", 2)}, {"user.empty", ""}};
    record.otherNames = 2;
    record.since = 1700000000;
    return record;
}

class StoreTest : public ::testing::Test {
protected:
    std::unique_ptr<Store> open() {
        std::string error;
        auto store = Store::open(path(), error);
        EXPECT_NE(store, nullptr) << error;
        return store;
    }
    [[nodiscard]] std::string path() const { return m_folder / "findings.db"; }

    ScratchFolder m_folder;
};

TEST_F(StoreTest, KeepsAFindingWithEveryByteOfItsPath) {
    std::string name = "/every/";
    for (int byte = 1; byte < 256; ++byte) {
        name += static_cast<char>(byte);
    }
    Finding expected = found(kId, name);
    expected.kind = ThreatKind::Abnormal;
    expected.number = open()->add(expected).number;
    EXPECT_GT(expected.number, 0);
    EXPECT_THAT(open()->findings(), ElementsAre(expected));
}

TEST_F(StoreTest, FindsTheSameContentAtTheSamePathOnlyOnce) {
    const auto store = open();
    const std::int64_t first = store->add(found(kId, "/a", 1000)).number;
    const Finding again = store->add(found(kId, "/a", 2000));
    EXPECT_EQ(again.number, first);
    EXPECT_EQ(again.firstSeen, 1000);
    EXPECT_EQ(again.lastSeen, 2000);
    EXPECT_NE(store->add(found(kId, "/b")).number, first);
    EXPECT_NE(store->add(found(kOtherId, "/a")).number, first);
    EXPECT_EQ(store->findings().size(), 3U);
}

TEST_F(StoreTest, DetectsAQuarantinedContentThatCameBack) {
    const auto store = open();
    const std::int64_t number = store->add(found(kId, "/a")).number;
    ASSERT_TRUE(store->setState(number, FindingState::Quarantined));
    EXPECT_EQ(store->finding(number)->state, FindingState::Quarantined);
    EXPECT_EQ(store->add(found(kId, "/a")).state, FindingState::Detected);
}

TEST_F(StoreTest, WaivesAContentWhereverItIsFound) {
    const auto store = open();
    store->add(found(kId, "/a"));
    const Waive waive{kId, 5, 1000, "our own tool"};
    ASSERT_TRUE(store->waive(waive));
    EXPECT_TRUE(store->isWaived(kId));
    EXPECT_FALSE(store->isWaived(kOtherId));
    EXPECT_THAT(store->waives(), ElementsAre(waive));
    EXPECT_EQ(store->findings().front().state, FindingState::Waived);
    EXPECT_EQ(store->add(found(kId, "/b")).state, FindingState::Waived);
    EXPECT_EQ(store->add(found(kOtherId, "/c")).state, FindingState::Detected);
    ASSERT_TRUE(store->endWaive(kId));
    EXPECT_THAT(store->waives(), IsEmpty());
    EXPECT_THAT(store->findings(), ::testing::Each(Field(&Finding::state, FindingState::Detected)));
}

TEST_F(StoreTest, FindsByTheBeginningOfAnIdentifier) {
    const auto store = open();
    store->add(found(kId, "/a"));
    store->add(found(kOtherId, "/b"));
    EXPECT_EQ(store->findingsLike("aaaaaaaa").size(), 2U);
    EXPECT_THAT(store->findingsLike(kOtherId), ElementsAre(Field(&Finding::path, "/b")));
    EXPECT_THAT(store->findingsLike("%"), IsEmpty());
}

TEST_F(StoreTest, KeepsAQuarantineRecordAsItIs) {
    const QuarantineRecord expected = recordOf(7);
    ASSERT_TRUE(open()->addRecord(expected));
    EXPECT_THAT(open()->records(), ElementsAre(expected));
    EXPECT_EQ(open()->record(expected.id), expected);
    EXPECT_EQ(open()->record("none"), std::nullopt);
}

TEST_F(StoreTest, SettlesARecordTogetherWithItsFinding) {
    const auto store = open();
    const std::int64_t number = store->add(found(kId, "/a")).number;
    const QuarantineRecord record = recordOf(number);
    ASSERT_TRUE(store->addRecord(record));
    ASSERT_TRUE(store->settleRecord(record.id, QuarantineState::Taken, FindingState::Quarantined));
    EXPECT_EQ(store->record(record.id)->state, QuarantineState::Taken);
    EXPECT_EQ(store->finding(number)->state, FindingState::Quarantined);
    EXPECT_FALSE(store->settleRecord("none", QuarantineState::Taken, std::nullopt));
}

TEST_F(StoreTest, ForgetsOnlyWhatWasDeletedLongAgo) {
    const auto store = open();
    const std::int64_t old = store->add(found(kId, "/a", 1000)).number;
    const std::int64_t young = store->add(found(kId, "/b", 3000)).number;
    store->add(found(kId, "/c", 1000));
    store->setState(old, FindingState::Deleted);
    store->setState(young, FindingState::Deleted);
    EXPECT_EQ(store->forgetDeleted(2000), 1U);
    EXPECT_THAT(store->findings(),
                ElementsAre(Field(&Finding::path, "/b"), Field(&Finding::path, "/c")));
}

TEST_F(StoreTest, BeginsAnewBesideADamagedFile) {
    writeFile(path(), std::string(8192, 'x'));
    const auto store = open();
    EXPECT_THAT(store->notice(), HasSubstr(path() + ".damaged-"));
    EXPECT_GT(store->add(found(kId, "/a")).number, 0);
    std::size_t asides = 0;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.path())) {
        asides += entry.path().string().find(".damaged-") != std::string::npos ? 1U : 0U;
    }
    EXPECT_EQ(asides, 1U);
}

TEST_F(StoreTest, FindsDamageInTheMiddleOfTheFile) {
    {
        const auto store = open();
        for (int i = 0; i < 500; ++i) {
            store->add(found(kId, "/path/" + std::to_string(i)));
        }
    }
    std::fstream file(path(), std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(3 * 4096);
    file << std::string(4096, 'x');
    file.close();
    EXPECT_THAT(open()->notice(), HasSubstr(".damaged-"));
}

TEST_F(StoreTest, SaysWhyItCannotOpen) {
    std::string error;
    EXPECT_EQ(Store::open(m_folder / "none/findings.db", error), nullptr);
    EXPECT_THAT(error, HasSubstr("none/findings.db"));
}

TEST_F(StoreTest, KeepsItsFileFromOthers) {
    const auto store = open();
    store->add(found(kId, "/a"));
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.path())) {
        EXPECT_EQ(entry.status().permissions() & std::filesystem::perms::all,
                  std::filesystem::perms::owner_read | std::filesystem::perms::owner_write)
            << entry.path();
    }
}

} // namespace
} // namespace korvale::agent
