#include "toolkit/list_geometry.h"

#include <gtest/gtest.h>

namespace jotlet {
namespace {

TEST(ListGeometryTest, CellsOfARowShareTheirEdgesAndReachTheRightOne)
{
    const ListGeometry grid{{100, 60}, 3, 20, 0};
    EXPECT_EQ(grid.CellRect(0), (Rect{0, 0, 33, 20}));
    EXPECT_EQ(grid.CellRect(1), (Rect{33, 0, 66, 20}));
    EXPECT_EQ(grid.CellRect(2), (Rect{66, 0, 100, 20}));
    EXPECT_EQ(grid.CellRect(3), (Rect{0, 20, 33, 40}));
}

TEST(ListGeometryTest, NoWidthLeavesAGapOrAddsACell)
{
    for (int columns = 1; columns <= 7; ++columns) {
        for (int width = columns; width < 400; ++width) {
            const ListGeometry grid{{width, 10}, columns, 10, 0};
            for (int x = 0; x < width; ++x) {
                const int cell = grid.CellAt({x, 5});
                ASSERT_TRUE(cell >= 0 && cell < columns) << width << " wide, " << columns << " columns, x " << x;
            }
        }
    }
}

TEST(ListGeometryTest, PointsFindTheirCellBelowTheTopRow)
{
    const ListGeometry grid{{90, 50}, 3, 20, 4};
    EXPECT_EQ(grid.VisibleRows(), 3);
    EXPECT_EQ(grid.CellAt({0, 0}), 12);
    EXPECT_EQ(grid.CellAt({89, 49}), 20);
    EXPECT_EQ(grid.CellAt({90, 10}), -1);
    EXPECT_EQ(grid.CellAt({10, 50}), -1);
    EXPECT_EQ(grid.CellAt({10, -1}), -1);
    EXPECT_EQ(grid.CellRect(12), (Rect{0, 0, 30, 20}));
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
    EXPECT_TRUE(IsValidRow(2, 7 / 3.0)) << "a partly filled row is a row";
    EXPECT_FALSE(IsValidRow(3, 7 / 3.0));
    EXPECT_FALSE(IsValidRow(-1, 7 / 3.0));
    EXPECT_FALSE(IsValidRow(0, 0));
    EXPECT_EQ(ClampRow(2, 7 / 3.0), 2);
    EXPECT_EQ(ClampRow(9, 7 / 3.0), 1);
    EXPECT_EQ(ClampRow(9, 4), 3);
    EXPECT_EQ(ClampRow(5, 0), 0);
    EXPECT_EQ(ClampRow(-3, 4), 0);
}

}  // namespace
}  // namespace jotlet
