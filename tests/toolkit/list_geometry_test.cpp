#include "toolkit/list_geometry.h"

#include <gtest/gtest.h>

namespace jotlet {
namespace {

// Cells share their edges, leave no gap and reach the right one.
TEST(ListGeometryTest, EveryPointIsInTheCellWhoseRectangleHoldsIt)
{
    for (int columns = 1; columns <= 7; ++columns) {
        for (int width = columns; width < 300; width += columns < 3 ? 7 : 1) {
            const ListGeometry grid{{width, 50}, columns, 20, 4};
            ASSERT_EQ(grid.VisibleRows(), 3);
            for (int x = 0; x < width; ++x) {
                const int cell = grid.CellAt({x, x % 50});
                ASSERT_EQ(cell / columns, 4 + x % 50 / 20);
                ASSERT_TRUE(grid.CellRect(cell).Contains({x, x % 50})) << width << ", " << columns << ", x " << x;
                ASSERT_EQ(grid.CellRect(cell).top, x % 50 / 20 * 20);
            }
            for (const Point outside : {Point{width, 10}, {-1, 10}, {0, 50}, {0, -1}})
                ASSERT_EQ(grid.CellAt(outside), -1);
        }
    }
}

TEST(ListGeometryTest, RowsGiveBackTheirItemsForEveryCountAndColumns)
{
    for (int columns = 1; columns <= 60; ++columns) {
        for (int count = 0; count <= 3000; ++count)
            ASSERT_EQ(ItemCountOf(static_cast<double>(count) / columns, columns), count) << columns << " columns";
    }
}

TEST(ListGeometryTest, ARowPastTheEndBecomesTheLastWholeOne)
{
    const struct {
        int row;
        double rows;
        bool isValid;
        int clamped;
    } cases[] = {{2, 7 / 3.0, true, 2}, {3, 7 / 3.0, false, 1}, {-1, 7 / 3.0, false, 0},
                 {9, 4, false, 3},      {0, 0, false, 0},       {5, 0, false, 0}};
    for (const auto& [row, rows, isValid, clamped] : cases) {
        EXPECT_EQ(IsValidRow(row, rows), isValid) << row << " of " << rows;
        EXPECT_EQ(ClampRow(row, rows), clamped) << row << " of " << rows;
    }
}

}  // namespace
}  // namespace jotlet
