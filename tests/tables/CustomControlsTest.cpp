#include "tables/CustHeaderCell.h"
#include "tables/FixedTabView.h"
#include "tables/KvImageView.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace korvale {
namespace {

constexpr int height = 24;

QImage drawn(qreal width, bool highlighted, const QString& title = {}) {
    QImage image(200, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    QPainter painter(&image);
    CustHeaderCell(title).drawWithFrame(painter, QRectF(0, 0, width, height), highlighted);
    return image;
}

TEST(CustHeaderCell, ANarrowTitleIsHalfAPointNarrower) {
    EXPECT_DOUBLE_EQ(CustHeaderCell::gradientFrame(QRectF(10, 0, 159.9, height)).width(), 159.4);
    EXPECT_DOUBLE_EQ(CustHeaderCell::gradientFrame(QRectF(10, 0, 159.9, height)).left(), 10);
    EXPECT_DOUBLE_EQ(CustHeaderCell::gradientFrame(QRectF(10, 0, 160.0, height)).width(), 160.0);
    EXPECT_DOUBLE_EQ(CustHeaderCell::gradientFrame(QRectF(10, 0, 500, height)).width(), 500);
}

TEST(CustHeaderCell, TheTrimShowsAsHalfAPixel) {
    const QImage narrow = drawn(150, false);
    EXPECT_GT(narrow.pixelColor(149, 2).red(), narrow.pixelColor(149, 2).green() + 60);
    const QImage wide = drawn(160, false);
    EXPECT_EQ(wide.pixelColor(159, 2).red(), wide.pixelColor(159, 2).green());
    EXPECT_EQ(wide.pixelColor(160, 2), QColor(Qt::red));
}

TEST(CustHeaderCell, TheGradientRunsFromWhiteToGreyAboveTheSeparatorLine) {
    const QImage image = drawn(180, false);
    EXPECT_GT(image.pixelColor(20, 0).lightness(), 250);
    EXPECT_NEAR(image.pixelColor(20, height - 2).lightness(), 153, 4);  // grey 0.6
    EXPECT_EQ(image.pixelColor(20, height - 1), QColor(204, 204, 204)); // grey 0.8
    for (int y = 1; y < height - 1; ++y) {
        EXPECT_LT(image.pixelColor(20, y).lightness(), image.pixelColor(20, y - 1).lightness());
    }
}

TEST(CustHeaderCell, AHighlightDarkensTheGradientButNotTheSeparatorLine) {
    const QImage plain = drawn(180, false);
    const QImage pressed = drawn(180, true);
    for (const int y : {0, 10, height - 2}) {
        EXPECT_NEAR(pressed.pixelColor(20, y).lightness(),
                    plain.pixelColor(20, y).lightness() * 0.9, 2);
    }
    EXPECT_EQ(pressed.pixelColor(20, height - 1), plain.pixelColor(20, height - 1));
}

TEST(CustHeaderCell, DrawnWithoutAFlagItIsNotHighlighted) {
    QImage image(200, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::red);
    QPainter painter(&image);
    CustHeaderCell().drawWithFrame(painter, QRectF(0, 0, 180, height));
    painter.end();
    EXPECT_EQ(image, drawn(180, false));
}

TEST(CustHeaderCell, TheTitleStandsOnePointInFromTopAndBottomOfTheGradient) {
    EXPECT_EQ(CustHeaderCell::interiorFrame(QRectF(0, 0, 180, 24)), QRectF(0, 1, 180, 21));
    EXPECT_NE(drawn(180, false, QStringLiteral("Title")), drawn(180, false));
}

struct PaintedBehind : QWidget {
    void paintEvent(QPaintEvent* event) override { regions.push_back(event->region()); }
    std::vector<QRegion> regions;
};

struct OpaqueTabView : FixedTabView {
    using FixedTabView::FixedTabView;
    void paintEvent(QPaintEvent* event) override {
        behindPaintedBefore = behind()->regions.size();
        FixedTabView::paintEvent(event);
        behindPaintedAfter = behind()->regions.size();
    }
    [[nodiscard]] PaintedBehind* behind() const {
        return static_cast<PaintedBehind*>(parentWidget());
    }
    std::size_t behindPaintedBefore = 0;
    std::size_t behindPaintedAfter = 0;
};

TEST(FixedTabView, WhatLiesBehindIsDrawnAnewBeforeTheTabs) {
    PaintedBehind behind;
    behind.resize(400, 300);
    auto* tabs = new OpaqueTabView(&behind);
    tabs->setGeometry(20, 30, 300, 200);
    tabs->setAttribute(Qt::WA_OpaquePaintEvent); // Qt alone would not draw the parent then
    behind.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&behind));
    behind.regions.clear();
    tabs->repaint(10, 15, 40, 50);
    EXPECT_EQ(tabs->behindPaintedAfter, tabs->behindPaintedBefore + 1);
    ASSERT_FALSE(behind.regions.empty());
    EXPECT_EQ(behind.regions.back().boundingRect(), QRect(30, 45, 40, 50));
}

struct MovingImageView : KvImageView {
    bool startWindowMove() override {
        ++moves;
        return true;
    }
    int moves = 0;
};

struct KvImageViewTest : testing::Test {
    MovingImageView view;
    QSignalSpy clicks{&view, &KvImageView::clicked};

    void SetUp() override {
        QPixmap picture(64, 64);
        picture.fill(Qt::green);
        view.setImage(QIcon(picture));
        view.resize(48, 48);
        view.show();
    }
};

TEST_F(KvImageViewTest, DraggingMovesTheWindowOnceAndIsNoClick) {
    QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseMove(&view, QPoint(30, 30));
    QTest::mouseMove(&view, QPoint(40, 40));
    QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(40, 40));
    EXPECT_EQ(view.moves, 1);
    EXPECT_EQ(clicks.count(), 0);
}

TEST_F(KvImageViewTest, AClickWithoutDraggingIsReported) {
    QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseMove(&view, QPoint(6, 6)); // a trembling hand
    QTest::mouseRelease(&view, Qt::LeftButton, {}, QPoint(6, 6));
    EXPECT_EQ(clicks.count(), 1);
    EXPECT_EQ(view.moves, 0);
}

TEST_F(KvImageViewTest, OnlyTheLeftButtonClicksAndDrags) {
    QTest::mouseClick(&view, Qt::RightButton);
    QTest::mousePress(&view, Qt::MiddleButton, {}, QPoint(5, 5));
    QTest::mouseMove(&view, QPoint(40, 40));
    QTest::mouseRelease(&view, Qt::MiddleButton, {}, QPoint(40, 40));
    EXPECT_EQ(clicks.count(), 0);
    EXPECT_EQ(view.moves, 0);
}

TEST_F(KvImageViewTest, OnlyAClickableOneIsReachedAndPressedFromTheKeyboard) {
    EXPECT_EQ(view.focusPolicy(), Qt::NoFocus);
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_EQ(clicks.count(), 0);
    view.setClickable(true);
    EXPECT_EQ(view.focusPolicy(), Qt::TabFocus);
    QTest::keyClick(&view, Qt::Key_Space);
    QTest::keyClick(&view, Qt::Key_Return);
    EXPECT_EQ(clicks.count(), 2);
}

TEST_F(KvImageViewTest, ItShowsItsPictureAtItsSize) {
    EXPECT_EQ(view.pixmap().deviceIndependentSize(), QSizeF(24, 24));
    view.setImageSize({48, 48});
    EXPECT_EQ(view.pixmap().deviceIndependentSize(), QSizeF(48, 48));
    view.setImage(QIcon());
    EXPECT_TRUE(view.pixmap().isNull());
}

TEST(KvImageView, WithoutAWindowADragMovesNothing) {
    KvImageView view; // never shown: there is no window to move
    QTest::mousePress(&view, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseMove(&view, QPoint(60, 60));
    EXPECT_EQ(view.pos(), QPoint(0, 0));
}

} // namespace
} // namespace korvale
