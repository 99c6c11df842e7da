#include "agent/fakes/Needs.h"
#include "agent/quarantine/VaultFixture.h"

#include <fcntl.h>
#include <unistd.h>

namespace korvale::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kBad = "a bad program";

/// All that is known of a file but its inode and the time of its last change.
struct Seen {
    std::string content;
    mode_t mode;
    uid_t owner;
    gid_t group;
    timespec accessed;
    timespec modified;
    std::map<std::string, std::string> attributes;
};

Seen see(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    Seen seen{{}, status.st_mode, status.st_uid, status.st_gid, status.st_atim, status.st_mtim, {}};
    std::string names(65536, '\0');
    const ssize_t size = ::listxattr(path.c_str(), names.data(), names.size());
    for (std::size_t begin = 0; size > 0 && begin < static_cast<std::size_t>(size);) {
        const std::string name = names.c_str() + begin;
        begin += name.size() + 1;
        std::string value(65536, '\0');
        const ssize_t length = ::getxattr(path.c_str(), name.c_str(), value.data(), value.size());
        EXPECT_GE(length, 0) << name;
        seen.attributes[name] = value.substr(0, static_cast<std::size_t>(length));
    }
    seen.content = readFile(path);
    return seen;
}

void expectSame(const Seen& now, const Seen& before) {
    EXPECT_EQ(now.content, before.content);
    EXPECT_EQ(now.mode, before.mode);
    EXPECT_EQ(now.owner, before.owner);
    EXPECT_EQ(now.group, before.group);
    EXPECT_EQ(now.accessed.tv_sec, before.accessed.tv_sec);
    EXPECT_EQ(now.accessed.tv_nsec, before.accessed.tv_nsec);
    EXPECT_EQ(now.modified.tv_sec, before.modified.tv_sec);
    EXPECT_EQ(now.modified.tv_nsec, before.modified.tv_nsec);
    EXPECT_EQ(now.attributes, before.attributes);
}

/// "user::rw-, user:1234:r--, group::---, mask::r--, other::---" as the kernel keeps it.
std::string accessList() {
    const std::array<std::array<unsigned int, 3>, 5> entries{{{0x01, 6, 0xFFFFFFFF},
                                                              {0x02, 4, 1234},
                                                              {0x04, 0, 0xFFFFFFFF},
                                                              {0x10, 4, 0xFFFFFFFF},
                                                              {0x20, 0, 0xFFFFFFFF}}};
    std::string bytes("\2\0\0\0", 4);
    for (const auto& [tag, permissions, id] : entries) {
        for (const auto& [value, size] :
             {std::pair(tag, 2), std::pair(permissions, 2), std::pair(id, 4)}) {
            for (int i = 0; i < size; ++i) {
                bytes += static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
            }
        }
    }
    return bytes;
}

class RestoreTest : public VaultTest {
protected:
    void SetUp() override {
        VaultTest::SetUp();
        if (canGoOn()) {
            writeFile(path("bad"), kBad);
        }
    }

    std::string take(const std::string& name = "bad") {
        const TakeResult result = m_vault->take(judged(name));
        EXPECT_EQ(result.outcome, TakeOutcome::Taken) << result.reason;
        return result.id;
    }
    void expectStillInVault(const std::string& id) {
        EXPECT_THAT(inVault(), ElementsAre(id + ".kvq"));
        EXPECT_EQ(m_vault->list().size(), 1U);
    }
};

TEST_P(RestoreTest, PutsContentModeAndTimesBackAsTheyWere) {
    ASSERT_EQ(::chmod(path("bad").c_str(), 0741), 0);
    const timespec times[2] = {{-3, 999'999'999}, {1'000'000'000, 123'456'789}};
    ASSERT_EQ(::utimensat(AT_FDCWD, path("bad").c_str(), times, 0), 0);
    // Looked at without reading, which would change the time of access.
    Seen before = see(path("bad"));
    ASSERT_EQ(::utimensat(AT_FDCWD, path("bad").c_str(), times, 0), 0);
    const TakeRequest request = judged("bad");
    const TakeResult taken = m_vault->take(request);
    ASSERT_EQ(taken.outcome, TakeOutcome::Taken) << taken.reason;
    RestoreOptions options;
    options.finding = FindingState::Waived;
    const RestoreResult result = m_vault->restore(taken.id, options);
    ASSERT_EQ(result.outcome, RestoreOutcome::Restored) << result.reason;
    EXPECT_EQ(result.path, path("bad"));
    EXPECT_EQ(result.reason, "");
    expectSame(see(path("bad")), before);
    EXPECT_THAT(inVault(), IsEmpty());
    EXPECT_THAT(m_store->records(), IsEmpty());
    EXPECT_EQ(stateOf(request), FindingState::Waived);
}

TEST_P(RestoreTest, PutsOwnerAccessListCapabilitiesAndAttributesBack) {
    KORVALE_NEEDS(root()); // only root may give a file to another user
    const auto give = [&](const char* name, const std::string& value) {
        return ::setxattr(path("bad").c_str(), name, value.data(), value.size(), 0) == 0;
    };
    ASSERT_EQ(::chown(path("bad").c_str(), 1001, 1002), 0);
    ASSERT_EQ(::chmod(path("bad").c_str(), 06755), 0);
    ASSERT_TRUE(give("system.posix_acl_access", accessList()));
    // cap_net_raw in the permitted set, version 2
    ASSERT_TRUE(
        give("security.capability", std::string("\1\0\0\2\0\x20\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 20)));
    ASSERT_TRUE(give("user.comment", std::string("\0every\xff", 7)));
    ASSERT_TRUE(give("trusted.note", ""));
    const Seen before = see(path("bad"));
    ASSERT_EQ(before.attributes.size(), 4U);
    const std::string id = take();
    const RestoreResult result = m_vault->restore(id);
    ASSERT_EQ(result.outcome, RestoreOutcome::Restored) << result.reason;
    EXPECT_EQ(result.reason, "");
    const Seen after = see(path("bad"));
    EXPECT_EQ(after.attributes, before.attributes);
    EXPECT_EQ(after.mode, before.mode);
    EXPECT_EQ(after.owner, 1001U);
    EXPECT_EQ(after.group, 1002U);
}

TEST_P(RestoreTest, NeverReplacesAFileThatHasTheNameNow) {
    const std::string id = take();
    writeFile(path("bad"), "my thesis");
    const RestoreResult result = m_vault->restore(id);
    EXPECT_EQ(result.outcome, RestoreOutcome::NameTaken);
    EXPECT_EQ(readFile(path("bad")), "my thesis");
    EXPECT_THAT(inFolder(), ElementsAre("bad"));
    expectStillInVault(id);

    RestoreOptions beside;
    beside.beside = true;
    const RestoreResult second = m_vault->restore(id, beside);
    EXPECT_EQ(second.outcome, RestoreOutcome::Restored) << second.reason;
    EXPECT_EQ(second.path, path("bad (restored 1)"));
    EXPECT_EQ(readFile(second.path), kBad);
    EXPECT_EQ(readFile(path("bad")), "my thesis");
}

TEST_P(RestoreTest, NeverReplacesAFileThatGetsTheNameAtTheLastMoment) {
    const std::string id = take();
    m_vault->onStep([&](VaultStep step) {
        if (step == VaultStep::Written) {
            std::filesystem::create_symlink("elsewhere", path("bad"));
        }
    });
    EXPECT_EQ(m_vault->restore(id).outcome, RestoreOutcome::NameTaken);
    EXPECT_THAT(inFolder(), ElementsAre("bad"));
    EXPECT_FALSE(std::filesystem::exists(path("elsewhere")));
    expectStillInVault(id);
}

TEST_P(RestoreTest, PutsAFileElsewhere) {
    const std::string id = take();
    std::filesystem::create_directory(m_scratch / "elsewhere");
    RestoreOptions options;
    options.path = m_scratch / "elsewhere/evidence";
    const RestoreResult result = m_vault->restore(id, options);
    ASSERT_EQ(result.outcome, RestoreOutcome::Restored) << result.reason;
    EXPECT_EQ(readFile(options.path), kBad);
}

TEST_P(RestoreTest, IsNotLedElsewhereByALinkInThePath) {
    const std::string id = take();
    std::filesystem::rename(m_folder, m_folder + "-moved");
    EXPECT_EQ(m_vault->restore(id).outcome, RestoreOutcome::NoFolder);
    std::filesystem::create_directory(m_scratch / "secret");
    std::filesystem::create_directory_symlink(m_scratch / "secret", m_folder);
    const RestoreResult result = m_vault->restore(id);
    EXPECT_EQ(result.outcome, RestoreOutcome::NoFolder);
    EXPECT_THAT(result.reason, HasSubstr("link"));
    EXPECT_THAT(namesIn(m_scratch / "secret"), IsEmpty());
    expectStillInVault(id);
}

TEST_P(RestoreTest, NoticesADamagedCopy) {
    const std::string id = take();
    const std::string copy = m_vaultPath + '/' + id + ".kvq";
    const std::string good = readFile(copy);
    std::string flipped = good;
    flipped.back() = static_cast<char>(flipped.back() ^ 1);
    for (const std::string& bad : {flipped, good.substr(0, good.size() - 1), good + 'x',
                                   good.substr(0, 20), std::string(), 'x' + good.substr(1)}) {
        writeFile(copy, bad);
        EXPECT_EQ(m_vault->restore(id).outcome, RestoreOutcome::Damaged);
        EXPECT_THAT(inFolder(), IsEmpty());
        expectStillInVault(id);
    }
    writeFile(copy, good);
    EXPECT_EQ(m_vault->restore(id).outcome, RestoreOutcome::Restored);
    EXPECT_EQ(m_vault->restore(id).outcome, RestoreOutcome::NoRecord);
}

TEST_P(RestoreTest, DeletesACopyForEver) {
    const TakeRequest request = judged("bad");
    const TakeResult taken = m_vault->take(request);
    std::string error;
    EXPECT_FALSE(m_vault->remove("none", error));
    EXPECT_FALSE(error.empty());
    ASSERT_TRUE(m_vault->remove(taken.id, error)) << error;
    EXPECT_THAT(inVault(), IsEmpty());
    EXPECT_THAT(inFolder(), IsEmpty());
    EXPECT_EQ(stateOf(request), FindingState::Deleted);
    EXPECT_FALSE(m_vault->remove(taken.id, error));
    EXPECT_EQ(m_vault->restore(taken.id).outcome, RestoreOutcome::NoRecord);
}

KORVALE_ON_EVERY_FILE_SYSTEM(RestoreTest);

TEST(VaultOpenTest, RefusesAFolderThatOthersCanEnter) {
    const ScratchFolder scratch;
    std::string error;
    const auto store = Store::open(scratch / "findings.db", error);
    ASSERT_NE(store, nullptr);
    std::filesystem::create_directory(scratch / "vault");
    std::filesystem::permissions(scratch / "vault", std::filesystem::perms(0750));
    EXPECT_EQ(Vault::open(scratch / "vault", *store, error), nullptr);
    EXPECT_THAT(error, HasSubstr("0700"));
    EXPECT_EQ(Vault::open(scratch / "none/vault", *store, error), nullptr);
    EXPECT_THAT(error, HasSubstr("none/vault"));
    std::filesystem::create_directory_symlink(scratch.path(), scratch / "link");
    EXPECT_EQ(Vault::open(scratch / "link", *store, error), nullptr);
    EXPECT_NE(Vault::open(scratch / "new", *store, error), nullptr);
}

} // namespace
} // namespace korvale::agent
