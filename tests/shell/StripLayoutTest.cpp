#include "shell/StripLayout.h"

#include <QHBoxLayout>
#include <QSpacerItem>
#include <QWidget>

#include <gtest/gtest.h>

namespace korvale {
namespace {

class Counted final : public QSpacerItem {
public:
    explicit Counted(int& gone) : QSpacerItem(1, 1), m_gone(gone) {}
    ~Counted() override { ++m_gone; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

private:
    int& m_gone;
};

TEST(StripLayoutTest, WhatStandsBehindALayoutInsideGoesWithTheRest) {
    int gone = 0;
    {
        QWidget widget;
        auto* strip = new StripLayout(1);
        widget.setLayout(strip);
        strip->add(StripLayout::Group::Controls, *new QHBoxLayout);
        strip->addItem(new Counted(gone));
    }
    EXPECT_EQ(gone, 1);
}

} // namespace
} // namespace korvale
