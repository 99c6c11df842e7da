#include "tables/CellPool.h"

#include <gtest/gtest.h>

namespace korvale {
namespace {

using namespace Qt::StringLiterals;

std::unique_ptr<CellView> cellShowing(const QString& text) {
    auto cell = std::make_unique<CellView>();
    cell->setText(text);
    return cell;
}

TEST(CellPool, TheLatestCellPutBackIsTakenFirst) {
    CellPool pool;
    pool.put(cellShowing(u"first"_s));
    pool.put(cellShowing(u"second"_s));
    EXPECT_EQ(pool.take(CellView::reuseIdentifier)->text(), u"second"_s);
    EXPECT_EQ(pool.take(CellView::reuseIdentifier)->text(), u"first"_s);
    EXPECT_EQ(pool.take(CellView::reuseIdentifier), nullptr);
}

TEST(CellPool, OnlyCellsOfTheSameIdentifierAreTaken) {
    CellPool pool;
    pool.put(cellShowing(u"ours"_s));
    pool.put(std::make_unique<CellView>(QLatin1String("other")));
    EXPECT_EQ(pool.take(CellView::reuseIdentifier)->text(), u"ours"_s);
    EXPECT_EQ(pool.size(), 1U);
}

TEST(CellPool, CellsAreCalledFPView) {
    EXPECT_EQ(CellView().identifier(), QLatin1String("__FPView"));
}

} // namespace
} // namespace korvale
