#include "shell/WindowActivation.h"

#include "fakes/WaitUntil.h"
#include "shell/X11Activation.h"

#include <QGuiApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace korvale {
namespace {

TEST(WindowActivation, OnlyWaylandReadsTheTokenFromTheEnvironment) {
    EXPECT_TRUE(readsTokenFromEnvironment(u"wayland"));
    EXPECT_TRUE(readsTokenFromEnvironment(u"wayland-egl"));
    EXPECT_FALSE(readsTokenFromEnvironment(u"xcb"));
    EXPECT_FALSE(readsTokenFromEnvironment(u"offscreen"));
}

TEST(WindowActivation, HoweverOftenAWindowWasClosedAChangeOfFocusInItIsToldOnce) {
    QWidget window;
    QVBoxLayout layout(&window);
    QLineEdit first;
    QLineEdit second;
    layout.addWidget(&first);
    layout.addWidget(&second);
    for (int opening = 0; opening < 5; ++opening) {
        window.close();
        bringToFront(window, {});
        ASSERT_TRUE(waitUntil([&window] { return window.isActiveWindow(); }));
    }
    first.setFocus();
    QSignalSpy changes(qApp, &QGuiApplication::focusObjectChanged);
    second.setFocus();
    EXPECT_EQ(changes.count(), 1);
}

struct StartupId {
    const char* id;
    std::optional<std::uint32_t> time;
};
class StartupIds : public testing::TestWithParam<StartupId> {};

TEST_P(StartupIds, TellWhenTheUserAsked) {
    EXPECT_EQ(timeOfStartupId(GetParam().id), GetParam().time);
}

INSTANTIATE_TEST_SUITE_P(
    Forms, StartupIds,
    testing::Values(StartupId{"panel-12-host_TIME4711", 4711U},
                    StartupId{"a_TIME1_TIME4294967295", 4294967295U},
                    StartupId{"a_TIME4294967296", std::nullopt}, StartupId{"a_TIME", std::nullopt},
                    StartupId{"a_TIME-1", std::nullopt}, StartupId{"a_TIME7x", std::nullopt},
                    StartupId{"token", std::nullopt}, StartupId{"", std::nullopt}));

} // namespace
} // namespace korvale
