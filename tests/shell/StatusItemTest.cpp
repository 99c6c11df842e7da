#include "shell/StatusItem.h"

#include "fakes/FakeAppearance.h"
#include "fakes/FakeTexts.h"
#include "shell/Resources.h"

#include <gtest/gtest.h>
#include <vector>

namespace korvale {
namespace {

class StatusItemTest : public testing::Test {
protected:
    void SetUp() override {
        resources.initialize();
        state.customName = QStringLiteral("host %@");
        QObject::connect(&item, &StatusItem::shownPictureSet, &item, [this] { ++pictures; });
        QObject::connect(&item, &StatusItem::toolTipChanged, &item, [this] { ++toolTips; });
        QObject::connect(&item, &StatusItem::titleBarPictureChanged, &item,
                         [this](int index) { titleBars.push_back(index); });
        item.create();
        toolTips = 0;
    }
    void expectPictures(int normal, int alternate) {
        EXPECT_EQ(item.shownPicture().cacheKey(), resources.getImage(normal).cacheKey());
        item.setMenuOpen(true);
        EXPECT_EQ(item.shownPicture().cacheKey(), resources.getImage(alternate).cacheKey());
        item.setMenuOpen(false);
    }

    FakeTexts texts{{"ProductEP", QStringLiteral("Product")},
                    {"Safe", QStringLiteral("safe")},
                    {"Unsafe", QStringLiteral("unsafe")},
                    {"OfflineMode", QStringLiteral("offline")}};
    fakes::FakeAppearance appearance;
    Resources resources{appearance, IconSet::Standard};
    AppState state;
    StatusItem item{state, resources};
    int pictures = 0;
    int toolTips = 0;
    std::vector<int> titleBars;
};

TEST_F(StatusItemTest, StartsWithTheProductsName) {
    EXPECT_EQ(item.toolTip(), QStringLiteral("Product"));
    EXPECT_EQ(item.titleBarImage(), std::nullopt);
}

TEST_F(StatusItemTest, AFirstRequestForRedLeavesToolTipAndTitleBarAlone) {
    item.setIconDispColor(IconColor::Red);
    expectPictures(4, 5);
    EXPECT_EQ(item.toolTip(), QStringLiteral("Product"));
    EXPECT_EQ(item.titleBarImage(), std::nullopt);
    EXPECT_EQ(state.curIconDispColor, IconColor::Red);
}

struct Look {
    IconColor before;
    IconColor color;
    int picture;
    int alternate;
    int titleBar;
    const char* toolTip;
};
class Looks : public StatusItemTest, public testing::WithParamInterface<Look> {};

TEST_P(Looks, FollowTheColor) {
    const Look& look = GetParam();
    state.curIconDispColor = look.before;
    item.setIconDispColor(look.color);
    expectPictures(look.picture, look.alternate);
    EXPECT_EQ(item.titleBarImage(), look.titleBar);
    EXPECT_EQ(titleBars, std::vector{look.titleBar});
    EXPECT_EQ(item.toolTip(), QString::fromUtf8(look.toolTip));
    EXPECT_EQ(state.curIconDispColor, look.color);
}

INSTANTIATE_TEST_SUITE_P(
    All, Looks,
    testing::Values(
        Look{IconColor::Green, IconColor::Red, 4, 5, 12, "Product\nhost %@: unsafe"},
        Look{IconColor::Red, IconColor::Yellow, 2, 3, 14, "Product\noffline"},
        Look{IconColor::Red, IconColor::Green, 0, 1, 13, "Product\nhost %@: safe"},
        Look{IconColor::Red, static_cast<IconColor>(3), 0, 1, 13, "Product\nhost %@: safe"},
        Look{IconColor::Red, static_cast<IconColor>(-1), 0, 1, 13, "Product\nhost %@: safe"}));

TEST_F(StatusItemTest, AMissingDriverIsRedWhateverIsAskedFor) {
    state.driverConnected = false;
    state.statusState = StatusState::Inspecting;
    state.curIconDispColor = IconColor::Green;
    item.setIconDispColor(IconColor::Green);
    expectPictures(4, 5);
    EXPECT_EQ(item.toolTip(), QStringLiteral("Product\nhost %@: unsafe"));
    EXPECT_EQ(state.curIconDispColor, IconColor::Red);
}

TEST_F(StatusItemTest, AMissingDriverAtFirstIsRedWithoutAToolTip) {
    state.driverConnected = false;
    state.statusState = StatusState::Inspecting;
    item.setIconDispColor(IconColor::Green);
    expectPictures(4, 5);
    EXPECT_EQ(item.toolTip(), QStringLiteral("Product"));
}

TEST_F(StatusItemTest, AMissingDriverIsNotForcedWhileTheAgentDoesNotRun) {
    state.driverConnected = false;
    state.statusState = StatusState::NotRunning;
    item.setIconDispColor(IconColor::Yellow);
    expectPictures(2, 3);
    EXPECT_EQ(item.toolTip(), QStringLiteral("Product\noffline"));
}

TEST_F(StatusItemTest, ASecondRequestForTheSameColorSetsThePicturesAlone) {
    item.setIconDispColor(IconColor::Green);
    state.customName = QStringLiteral("renamed");
    item.setIconDispColor(IconColor::Green);
    EXPECT_EQ(item.toolTip(), QStringLiteral("Product\nhost %@: safe"));
    EXPECT_EQ(titleBars, std::vector{13});
    EXPECT_EQ(toolTips, 1);
    EXPECT_EQ(pictures, 2) << "pictures are set at every request";
}

TEST_F(StatusItemTest, GreenOfAnotherNumberIsSetAgain) {
    item.setIconDispColor(static_cast<IconColor>(3));
    item.setIconDispColor(IconColor::Green);
    item.setIconDispColor(static_cast<IconColor>(3));
    EXPECT_EQ(titleBars, (std::vector{13, 13, 13}));
    EXPECT_EQ(state.curIconDispColor, static_cast<IconColor>(3));
    EXPECT_EQ(pictures, 3);
}

TEST_F(StatusItemTest, ADarkDesktopShowsTheInvertedPictures) {
    appearance.set(QStringLiteral("Dark"));
    for (const auto& [color, inverted] :
         {std::pair{IconColor::Red, 5}, {IconColor::Yellow, 3}, {IconColor::Green, 1}}) {
        item.setIconDispColor(color);
        expectPictures(inverted, inverted);
    }
}

TEST_F(StatusItemTest, AnAppearanceThatFlipsChangesThePictureAlone) {
    item.setIconDispColor(IconColor::Yellow);
    state.customName = QStringLiteral("renamed");
    pictures = toolTips = 0;
    titleBars.clear();
    appearance.set(QStringLiteral("Dark"));
    EXPECT_EQ(item.shownPicture().cacheKey(), resources.getImage(3).cacheKey());
    EXPECT_EQ(pictures, 1);
    EXPECT_EQ(toolTips, 0);
    EXPECT_TRUE(titleBars.empty());
    EXPECT_EQ(state.curIconDispColor, IconColor::Yellow);
}

TEST_F(StatusItemTest, AFlipBeforeTheItemExistsIsHarmless) {
    AppState early;
    const StatusItem none(early, resources);
    appearance.set(QStringLiteral("Dark"));
    EXPECT_EQ(early.curIconDispColor, IconColor::Red);
    EXPECT_EQ(none.toolTip(), QString());
}

TEST_F(StatusItemTest, TheMenuShowsTheAlternatePictureWhileItIsOpen) {
    item.setIconDispColor(IconColor::Green);
    pictures = 0;
    item.setMenuOpen(true);
    item.setMenuOpen(true);
    EXPECT_EQ(pictures, 1);
    item.setIconDispColor(IconColor::Yellow);
    EXPECT_EQ(item.shownPicture().cacheKey(), resources.getImage(3).cacheKey());
    item.setMenuOpen(false);
    EXPECT_EQ(item.shownPicture().cacheKey(), resources.getImage(2).cacheKey());
    EXPECT_EQ(pictures, 3);
}

TEST_F(StatusItemTest, TellsWhetherThereIsATray) {
    std::vector<bool> told;
    QObject::connect(&item, &StatusItem::trayAvailabilityChanged, &item,
                     [&told](bool isThere) { told.push_back(isThere); });
    EXPECT_TRUE(item.isTrayAvailable());
    item.setTrayAvailable(true);
    item.setTrayAvailable(false);
    item.setTrayAvailable(false);
    item.setTrayAvailable(true);
    EXPECT_EQ(told, (std::vector{false, true}));
}

} // namespace
} // namespace korvale
