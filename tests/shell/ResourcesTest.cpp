#include "shell/Resources.h"

#include "fakes/FakeAppearance.h"
#include "shell/Pictures.h"

#include <QPainter>
#include <QPixmap>

#include <gtest/gtest.h>

namespace korvale {
namespace {

class ResourcesTest : public testing::TestWithParam<IconSet> {
protected:
    void initialize(Resources& resources) {
        QObject::connect(&resources, &Resources::darkModeFlipped, &resources,
                         [this] { ++redraws; });
        resources.initialize();
    }
    static qint64 keyOf(const Resources& resources, int index) {
        return resources.getImage(index).cacheKey();
    }
    static QImage imageOf(const QIcon& icon, int size = 48) {
        return icon.pixmap(QSize(size, size), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    }
    static QImage imageNamed(const char* name) { return imageOf(pictureNamed(name)); }

    fakes::FakeAppearance appearance;
    Resources standard{appearance, IconSet::Standard};
    Resources vexa{appearance, IconSet::Vexa};
    int redraws = 0;
};

TEST_F(ResourcesTest, IndexesWithoutAPictureAreNull) {
    initialize(standard);
    for (const int index : {9, 15, 16, -1, 1000, -1000}) {
        EXPECT_TRUE(standard.getImage(index).isNull()) << index;
    }
}

struct NamedIndex {
    int index;
    const char* light;
    const char* dark;
};

constexpr NamedIndex standardNames[] = {
    {0, "Agent-Icon-Normal", "Agent-Icon-Inverted-Normal"},
    {1, "Agent-Icon-Inverted-Normal", "Agent-Icon-Inverted-Normal"},
    {2, "Agent-Icon-Offline", "Agent-Icon-Inverted-Offline"},
    {3, "Agent-Icon-Inverted-Offline", "Agent-Icon-Inverted-Offline"},
    {4, "Agent-Icon-Threat", "Agent-Icon-Inverted-Threat"},
    {5, "Agent-Icon-Inverted-Threat", "Agent-Icon-Inverted-Threat"},
    {6, "NSStatusAvailable", "NSStatusAvailable"},
    {7, "NSStatusUnavailable", "NSStatusUnavailable"},
    {8, "NSStatusPartiallyAvailable", "NSStatusPartiallyAvailable"},
    {10, "logo", "logo"},
    {11, "Agent-Icon-Normal", "Agent-Icon-Normal"},
    {12, "TitleBar-Red", "TitleBar-Red"},
    {13, "TitleBar-Green", "TitleBar-Green"},
    {14, "TitleBar-Yellow", "TitleBar-Yellow"},
};

constexpr NamedIndex vexaNames[] = {
    {0, "icon_20X20", "icon_20X20_Inverted"},
    {1, "icon_20X20_Inverted", "icon_20X20_Inverted"},
    {2, "icon_yellow_20X20", "icon_yellow_20X20_Inverted"},
    {3, "icon_yellow_20X20_Inverted", "icon_yellow_20X20_Inverted"},
    {4, "icon_red_20X20", "icon_red_20X20_Inverted"},
    {5, "icon_red_20X20_Inverted", "icon_red_20X20_Inverted"},
    {10, "logo", "logo"},
    {11, "logo_sentrawardnet_clr@4x.png", "logo_sentrawardnet_clr@4x.png"},
    {12, "icon_red_20X20", "icon_red_20X20"},
    {13, "icon_20X20", "icon_20X20"},
    {14, "icon_yellow_20X20", "icon_yellow_20X20"},
};

TEST_F(ResourcesTest, EveryIndexHasThePictureOfItsName) {
    initialize(standard);
    initialize(vexa);
    for (const bool isDark : {false, true}) {
        appearance.set(isDark ? QVariant(QStringLiteral("Dark")) : QVariant());
        for (const NamedIndex& row : standardNames) {
            EXPECT_EQ(imageOf(standard.getImage(row.index)),
                      imageNamed(isDark ? row.dark : row.light))
                << row.index;
        }
        for (const NamedIndex& row : vexaNames) {
            EXPECT_EQ(imageOf(vexa.getImage(row.index)), imageNamed(isDark ? row.dark : row.light))
                << row.index;
        }
    }
}

TEST_F(ResourcesTest, TheVexaTitleBarWearsTheVeryPicturesOfTheStatusItem) {
    initialize(vexa);
    EXPECT_EQ(keyOf(vexa, 13), keyOf(vexa, 0));
    EXPECT_EQ(keyOf(vexa, 14), keyOf(vexa, 2));
    EXPECT_EQ(keyOf(vexa, 12), keyOf(vexa, 4));
    EXPECT_NE(keyOf(vexa, 11), keyOf(vexa, 0));
}

TEST_F(ResourcesTest, TheStandardApplicationPictureIsTheVeryGreenOne) {
    initialize(standard);
    EXPECT_EQ(keyOf(standard, 11), keyOf(standard, 0));
    EXPECT_NE(keyOf(standard, 13), keyOf(standard, 0));
    const qint64 green = keyOf(standard, 0);
    appearance.set(QStringLiteral("Dark"));
    EXPECT_EQ(keyOf(standard, 11), green) << "the same in both appearances";
    EXPECT_NE(keyOf(standard, 0), green);
}

/// Which of the shield's colours a picture has, were it only in one pixel.
bool hasColorOfAState(const QImage& picture) {
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor color = picture.pixelColor(x, y);
            const bool isBlue = color.hsvHue() > 180 && color.hsvHue() < 270;
            if (color.alpha() > 32 && color.hsvSaturation() > 64 && !isBlue) {
                return true;
            }
        }
    }
    return false;
}

TEST_F(ResourcesTest, TheProgramsOwnPictureTellsNoState) {
    initialize(standard);
    initialize(vexa);
    constexpr int states[] = {0, 1, 2, 3, 4, 5, 12, 13, 14};
    for (const Resources* resources : {&standard, &vexa}) {
        for (const int size : {16, 22, 24, 32, 48, 64, 128}) {
            const QImage picture = imageOf(resources->programIcon(), size);
            ASSERT_EQ(picture.size(), QSize(size, size));
            EXPECT_FALSE(hasColorOfAState(picture)) << size;
            for (const int state : states) {
                const QImage other = imageOf(resources->getImage(state), size);
                EXPECT_TRUE(hasColorOfAState(other)) << state;
                EXPECT_NE(picture.convertToFormat(QImage::Format_Grayscale8),
                          other.convertToFormat(QImage::Format_Grayscale8))
                    << state << " without colour at " << size;
            }
        }
    }
}

TEST_F(ResourcesTest, TheProgramsOwnPictureIsTheInstalledOneInBothAppearances) {
    initialize(standard);
    EXPECT_EQ(imageOf(standard.programIcon()), imageNamed("com.korvale.ui"));
    const qint64 key = standard.programIcon().cacheKey();
    appearance.set(QStringLiteral("Dark"));
    EXPECT_EQ(standard.programIcon().cacheKey(), key);
}

TEST_F(ResourcesTest, TheAppearanceAtStartIsTaken) {
    appearance.entry = QStringLiteral("Dark");
    initialize(standard);
    EXPECT_TRUE(standard.isDark());
}

struct Style {
    QVariant entry;
    bool isDark;
};
class Styles : public testing::TestWithParam<Style> {};

TEST_P(Styles, AreDarkWhenTheTextSaysSo) {
    fakes::FakeAppearance appearance;
    appearance.entry = GetParam().entry;
    Resources resources(appearance, IconSet::Standard);
    resources.initialize();
    EXPECT_EQ(resources.isDark(), GetParam().isDark) << GetParam().entry.typeName();
}

INSTANTIATE_TEST_SUITE_P(
    AllKinds, Styles,
    testing::Values(Style{QStringLiteral("Dark"), true}, Style{QStringLiteral("DARK"), true},
                    Style{QStringLiteral("dark"), true}, Style{QStringLiteral(" dark"), false},
                    Style{QStringLiteral("Light"), false}, Style{QString(), false},
                    Style{QVariant(), false}, Style{QVariant(1), false},
                    Style{QVariant(true), false}, Style{QByteArray("Dark"), false}));

TEST_F(ResourcesTest, OnlyAnotherAppearanceAsksForARedraw) {
    initialize(standard);
    EXPECT_EQ(redraws, 0);
    appearance.set(QStringLiteral("Light"));
    EXPECT_EQ(redraws, 0);
    appearance.set(QStringLiteral("Dark"));
    appearance.set(QStringLiteral("dark"));
    EXPECT_EQ(redraws, 1);
    appearance.set(QVariant());
    EXPECT_EQ(redraws, 2);
}

TEST(Pictures, AMissingOneIsNull) {
    EXPECT_TRUE(pictureNamed("no such picture").isNull());
}

TEST(Pictures, AreDrawnAtExactlyTheSizeAskedFor) {
    for (const Picture& picture : compiledPictures()) {
        const QIcon icon = pictureNamed(picture.name);
        for (const int size : {16, 22, 37, 48, 500}) {
            const QImage image = icon.pixmap(QSize(2000, size), 1.0).toImage();
            EXPECT_EQ(image.height(), size) << picture.name;
            const double proportion = static_cast<double>(picture.rasters.back().width) /
                                      static_cast<double>(picture.rasters.back().height);
            EXPECT_NEAR(image.width(), size * proportion, 1.0) << picture.name;
        }
    }
}

/// A large picture made of a small one would have no edges as sharp as this.
TEST(Pictures, LargeSizesAreDrawnAndNotEnlarged) {
    const QImage image = pictureNamed("icon_20X20")
                             .pixmap(QSize(1024, 1024), 1.0)
                             .toImage()
                             .convertToFormat(QImage::Format_ARGB32);
    int edgePixels = 0;
    for (int x = 0; x < image.width(); ++x) {
        const int alpha = qAlpha(image.pixel(x, 512));
        edgePixels += alpha > 0 && alpha < 255 ? 1 : 0;
    }
    EXPECT_GT(qAlpha(image.pixel(512, 512)), 250);
    EXPECT_LE(edgePixels, 4);
}

TEST(Pictures, FollowTheScaleOfTheScreen) {
    QImage screen(64, 64, QImage::Format_ARGB32_Premultiplied);
    screen.fill(Qt::transparent);
    screen.setDevicePixelRatio(2);
    QPainter painter(&screen);
    pictureNamed("Agent-Icon-Normal").paint(&painter, QRect(0, 0, 32, 32));
    painter.end();
    screen.setDevicePixelRatio(1);
    const QImage expected = pictureNamed("Agent-Icon-Normal").pixmap(QSize(64, 64), 1.0).toImage();
    EXPECT_EQ(screen.convertToFormat(QImage::Format_ARGB32),
              expected.convertToFormat(QImage::Format_ARGB32));
}

/// In shades of grey, as some people see them: the states differ by far more than by a tint.
TEST(Pictures, StatesDifferByShape) {
    const auto outline = [](const char* name) {
        const QImage image = pictureNamed(name)
                                 .pixmap(QSize(22, 22), 1.0)
                                 .toImage()
                                 .convertToFormat(QImage::Format_ARGB32);
        std::vector<bool> bright;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = image.pixel(x, y);
                bright.push_back(qAlpha(pixel) > 128 && qBlue(pixel) > 150);
            }
        }
        return bright;
    };
    const auto difference = [](const std::vector<bool>& a, const std::vector<bool>& b) {
        int count = 0;
        for (std::size_t i = 0; i < a.size(); ++i) {
            count += a[i] != b[i] ? 1 : 0;
        }
        return count;
    };
    const auto normal = outline("Agent-Icon-Normal");
    const auto threat = outline("Agent-Icon-Threat");
    EXPECT_GE(difference(normal, threat), 20) << "check mark against exclamation mark";

    const auto alphaInside = [](const char* name) {
        return qAlpha(pictureNamed(name).pixmap(QSize(48, 48), 1.0).toImage().pixel(14, 17));
    };
    EXPECT_EQ(alphaInside("Agent-Icon-Normal"), 255);
    EXPECT_LT(alphaInside("Agent-Icon-Offline"), 128) << "offline is hollow";
}

} // namespace
} // namespace korvale
