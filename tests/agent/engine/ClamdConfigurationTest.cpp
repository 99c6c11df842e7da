#include "agent/engine/ClamdConfiguration.h"

#include "agent/fakes/ScratchFolder.h"

#include <gtest/gtest.h>

using namespace korvale::agent;

namespace {

TEST(ClamdConfiguration, TakesLimitsAndPlacesAsClamdReadsThem) {
    const ClamdConfiguration read = parseClamdConfiguration("# MaxFileSize 1M\n"
                                                            "MaxFileSize 30M\r\n"
                                                            "  MaxScanSize\t400k  \n"
                                                            "LocalSocket \"/run/c.ctl\"\n"
                                                            "DatabaseDirectory /srv/signatures\n"
                                                            "MaxFileSize 31M\n"
                                                            "Nonsense\n\n"
                                                            "MaxFileSizeX 1");
    EXPECT_EQ(read.maxFileSize, 31 << 20);
    EXPECT_EQ(read.maxScanSize, 400 << 10);
    EXPECT_EQ(read.localSocket, "/run/c.ctl");
    EXPECT_EQ(read.databaseFolder, "/srv/signatures");
    EXPECT_EQ(read.largestFile(), 400 << 10);
}

TEST(ClamdConfiguration, ThatIsNotUnderstoodKeepsTheCarefulDefaults) {
    const ClamdConfiguration defaults;
    for (const char* text :
         {"", "MaxFileSize", "MaxFileSize -1", "MaxFileSize 5G", "MaxFileSize 1MM", "MaxFileSize M",
          "MaxFileSize 99999999999999999999", "MaxFileSize 9223372036854775807M",
          "LocalSocket relative", "maxfilesize 1"}) {
        EXPECT_EQ(parseClamdConfiguration(text), defaults) << text;
    }
    EXPECT_EQ(defaults.largestFile(), 25 << 20);
}

TEST(ClamdConfiguration, KnowsWhereAndWhetherClamdUnpacks) {
    for (const char* const no : {"no", "No", "false", "0"}) {
        EXPECT_FALSE(parseClamdConfiguration(std::string("ScanArchive ") + no).scanArchives) << no;
    }
    EXPECT_TRUE(parseClamdConfiguration("ScanArchive yes").scanArchives);
    EXPECT_EQ(parseClamdConfiguration("TemporaryDirectory /var/tmp").temporaryFolder, "/var/tmp");
    EXPECT_EQ(parseClamdConfiguration("TemporaryDirectory tmp").temporaryFolder, "/tmp");
    EXPECT_EQ(parseClamdConfiguration("User clamav").user, "clamav");
}

TEST(ClamdConfiguration, WithoutLimitsStillHasClamdsOwn) {
    const auto unlimited = parseClamdConfiguration("MaxFileSize 0\nMaxScanSize 0");
    EXPECT_EQ(unlimited.largestFile(), 0x7fffffff - 2);
    EXPECT_EQ(parseClamdConfiguration("MaxFileSize 9000M\nMaxScanSize 0").largestFile(),
              0x7fffffff - 2);
}

TEST(ClamdConfiguration, ThatCannotBeReadIsTheDefault) {
    const ScratchFolder folder;
    EXPECT_EQ(readClamdConfiguration(folder / "none"), ClamdConfiguration());
    EXPECT_EQ(readClamdConfiguration(folder.path()), ClamdConfiguration());
    writeFile(folder / "long", std::string(300 << 10, '\n') + "MaxFileSize 1");
    EXPECT_EQ(readClamdConfiguration(folder / "long"), ClamdConfiguration());
    writeFile(folder / "good", "MaxFileSize 1");
    EXPECT_EQ(readClamdConfiguration(folder / "good").maxFileSize, 1);
}

} // namespace
