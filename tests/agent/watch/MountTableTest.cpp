#include "agent/watch/MountTable.h"

#include <gmock/gmock.h>

namespace korvale::agent {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

constexpr const char* kTable = "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw\n"
                               "23 22 0:21 / /proc rw shared:12 - proc proc rw\n"
                               "24 22 8:2 / /home rw shared:2 - xfs /dev/sda2 rw\n"
                               "25 24 8:17 / /home/ada/My\\040stick rw - vfat /dev/sdb1 rw\n"
                               "26 22 0:50 / /home/ada/net rw - nfs4 server:/x rw\n"
                               "27 22 8:1 /srv/data /mnt/data rw - ext4 /dev/sda1 rw\n"
                               "not a line\n"
                               "28 22 8:1\n";

std::vector<std::string> pointsFor(const std::vector<std::string>& folders) {
    std::vector<std::string> points;
    for (const Mount& mount : mountsOf(parseMounts(kTable), folders)) {
        points.push_back(mount.point);
    }
    return points;
}

TEST(MountTableTest, LinesAreTakenApart) {
    const std::vector<Mount> mounts = parseMounts(kTable);
    ASSERT_EQ(mounts.size(), 6U);
    EXPECT_EQ(mounts[0], (Mount{"8:1", "/", "/", "ext4"}));
    EXPECT_EQ(mounts[3].point, "/home/ada/My stick");
    EXPECT_EQ(mounts[5], (Mount{"8:1", "/srv/data", "/mnt/data", "ext4"}));
}

TEST(MountTableTest, AFolderStandsForWhatItLiesOnAndWhatIsMountedInIt) {
    EXPECT_THAT(pointsFor({"/home"}),
                testing::UnorderedElementsAre("/home", "/home/ada/My stick", "/home/ada/net"));
    EXPECT_THAT(pointsFor({"/homes"}), ElementsAre("/")) << "no folder of that name's beginning";
    EXPECT_THAT(pointsFor({"/home/ada/My stick/x"}), ElementsAre("/home/ada/My stick"));
    EXPECT_THAT(pointsFor({}), IsEmpty());
}

TEST(MountTableTest, AFileSystemCountsOnceAndWholeIfThatIsThere) {
    EXPECT_THAT(pointsFor({"/mnt/data", "/srv", "/tmp"}), ElementsAre("/"));
    EXPECT_THAT(pointsFor({"/mnt/data"}), ElementsAre("/mnt/data"));
}

TEST(MountTableTest, WhatHoldsNoFilesIsLeftOut) {
    EXPECT_THAT(pointsFor({"/proc"}), IsEmpty());
    EXPECT_TRUE(isLocalType("ext4"));
    EXPECT_TRUE(isLocalType("fuseblk")) << "a disk is behind it";
    EXPECT_FALSE(isLocalType("nfs4"));
    EXPECT_FALSE(isLocalType("fuse.sshfs"));
}

TEST(MountTableTest, ALaterMountHidesAnEarlierOne) {
    const std::vector<Mount> mounts = parseMounts("1 0 8:1 / /data rw - ext4 a rw\n"
                                                  "2 0 8:2 / /data rw - ext4 b rw\n");
    EXPECT_THAT(mountsOf(mounts, {"/data"}), ElementsAre(Field(&Mount::device, "8:2")));
}

} // namespace
} // namespace korvale::agent
