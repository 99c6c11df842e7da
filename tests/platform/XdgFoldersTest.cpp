#include "platform/XdgFolders.h"

#include <QDir>

#include <gtest/gtest.h>

namespace korvale {
namespace {

struct Folder {
    const char* variable;
    QString (*folder)();
    QString belowHome;
};
class XdgFolders : public testing::TestWithParam<Folder> {};

TEST_P(XdgFolders, AreTheEnvironmentsElseBelowTheHomeFolder) {
    const auto& [variable, folder, belowHome] = GetParam();
    qputenv(variable, "/data");
    EXPECT_EQ(folder(), QStringLiteral("/data"));
    for (const char* unusable : {"", "relative", "~/x"}) {
        qputenv(variable, unusable);
        EXPECT_EQ(folder(), QDir::homePath() + belowHome) << unusable;
    }
    qunsetenv(variable);
}

INSTANTIATE_TEST_SUITE_P(
    All, XdgFolders,
    testing::Values(Folder{"XDG_CONFIG_HOME", userConfigFolder, QStringLiteral("/.config")},
                    Folder{"XDG_DATA_HOME", applicationSupportFolder,
                           QStringLiteral("/.local/share")},
                    Folder{"XDG_STATE_HOME", userStateFolder, QStringLiteral("/.local/state")}),
    [](const auto& instance) { return instance.param.variable; });

} // namespace
} // namespace korvale
