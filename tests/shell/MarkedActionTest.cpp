#include "shell/MarkedAction.h"

#include <QActionEvent>

#include <gtest/gtest.h>
#include <vector>

namespace korvale {
namespace {

/// What the menu takes note of: the item's mark at each change that comes through.
class MarkedActionTest : public testing::Test {
protected:
    MarkedActionTest() { menu.addAction(&action); }

    MarkedMenu menu;
    MarkedAction action{&menu};
};

TEST_F(MarkedActionTest, AClickTriggersAndLeavesTheMark) {
    int triggered = 0;
    std::vector<bool> marks;
    QObject::connect(&action, &QAction::triggered, &action, [&] {
        ++triggered;
        marks.push_back(action.isChecked());
    });
    action.trigger();
    action.setMark(true);
    action.trigger();
    EXPECT_EQ(triggered, 2);
    EXPECT_EQ(marks, (std::vector{false, true}));
    EXPECT_TRUE(action.isChecked());
}

TEST_F(MarkedActionTest, TheProgramMaySetTheMarkWhileItIsClicked) {
    QObject::connect(&action, &QAction::triggered, &action,
                     [&] { action.setMark(!action.mark()); });
    action.trigger();
    EXPECT_TRUE(action.isChecked());
    action.trigger();
    EXPECT_FALSE(action.isChecked());
}

} // namespace
} // namespace korvale
