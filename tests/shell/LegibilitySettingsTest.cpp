#include "shell/LegibilitySettings.h"

#include "fakes/FakeAppearance.h"
#include "fakes/FakeBusService.h"
#include "fakes/WaitUntil.h"
#include "shell/Resources.h"

#include <gtest/gtest.h>
#include <limits>

namespace korvale {
namespace {

using fakes::FakeBusService;
using fakes::PrivateSessionBus;

class LegibilitySettingsTest : public testing::Test {
protected:
    LegibilitySettingsTest() {
        portal.answer = [this](const QDBusMessage& call) {
            return call.arguments().value(1) == QStringLiteral("contrast")
                       ? call.createReply(QVariant::fromValue(QDBusVariant(contrast)))
                       : call.createErrorReply(
                             QStringLiteral("org.freedesktop.portal.Error.NotFound"),
                             QStringLiteral("no such setting"));
        };
    }
    void changeTo(const QVariant& value) {
        portal.emitSignal(QStringLiteral("SettingChanged"),
                          {QStringLiteral("org.freedesktop.appearance"), QStringLiteral("contrast"),
                           QVariant::fromValue(QDBusVariant(value))});
    }
    void start() {
        settingsPortal.start(bus.connect());
        settings.start();
    }
    bool waitForHighContrast(bool isHigh) {
        return waitUntil([&] { return resources.isHighContrast() == isHigh; });
    }

    PrivateSessionBus bus;
    QVariant contrast = 1U;
    FakeBusService portal{bus, QStringLiteral("org.freedesktop.portal.Desktop"),
                          QStringLiteral("/org/freedesktop/portal/desktop"),
                          QStringLiteral("org.freedesktop.portal.Settings")};
    fakes::FakeAppearance appearance;
    Resources resources{appearance, IconSet::Standard};
    SettingsPortal settingsPortal;
    LegibilitySettings settings{settingsPortal, resources};
};

TEST_F(LegibilitySettingsTest, HighContrastIsFollowed) {
    portal.appear();
    start();
    ASSERT_TRUE(waitForHighContrast(true));
    changeTo(0U);
    ASSERT_TRUE(waitForHighContrast(false));
    changeTo(1U);
    ASSERT_TRUE(waitForHighContrast(true));
    changeTo(QStringLiteral("high"));
    EXPECT_TRUE(waitForHighContrast(false)) << "a value of another kind";
}

TEST_F(LegibilitySettingsTest, APortalThatGoesTakesItAlong) {
    portal.appear();
    start();
    ASSERT_TRUE(waitForHighContrast(true));
    portal.vanish();
    EXPECT_TRUE(waitForHighContrast(false));
}

TEST(TextScale, IsWhatAPersonWouldSet) {
    EXPECT_EQ(textScaleOf(QVariant(1.25)), 1.25);
    EXPECT_EQ(textScaleOf(QVariant(2.0)), 2.0);
    EXPECT_EQ(textScaleOf(QVariant()), 1.0);
    EXPECT_EQ(textScaleOf(QVariant(QStringLiteral("2"))), 1.0);
    EXPECT_EQ(textScaleOf(QVariant(0.0)), 1.0);
    EXPECT_EQ(textScaleOf(QVariant(-1.0)), 1.0);
    EXPECT_EQ(textScaleOf(QVariant(1e9)), 1.0);
    EXPECT_EQ(textScaleOf(QVariant(std::numeric_limits<double>::quiet_NaN())), 1.0);
    EXPECT_EQ(textScaleOf(QVariant(std::numeric_limits<double>::infinity())), 1.0);
}

} // namespace
} // namespace korvale
