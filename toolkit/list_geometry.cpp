#include "toolkit/list_geometry.h"

#include <cmath>

namespace jotlet {

int ListGeometry::VisibleRows() const
{
    return client.height <= 0 ? 0 : (client.height + itemHeight - 1) / itemHeight;
}

Rect ListGeometry::CellRect(int index) const
{
    const int row = index / columns - topRow;
    const int column = index % columns;
    const double width = static_cast<double>(client.width) / columns;
    // Summed up as a row is walked, so that neighbours share their edge.
    double x = 0;
    for (int i = 0; i < column; ++i)
        x += width;
    const int right = column == columns - 1 ? client.width : static_cast<int>(x + width);
    return {static_cast<int>(x), row * itemHeight, right, row * itemHeight + itemHeight};
}

int ListGeometry::CellAt(Point p) const
{
    if (!Rect::At(0, 0, client.width, client.height).Contains(p))
        return -1;
    const int first = (topRow + p.y / itemHeight) * columns;
    for (int i = 0; i < columns; ++i) {
        if (CellRect(first + i).Contains(p))
            return first + i;
    }
    return -1;
}

int ItemCountOf(double rows, int columns)
{
    // The product of a rounded quotient may miss the whole number by a hair; a hair is no item.
    constexpr double kHair = 1e-6;
    const double count = std::ceil(rows * columns - kHair);
    return count > 0 ? static_cast<int>(count) : 0;
}

bool IsValidRow(int row, double rows)
{
    return row >= 0 && row < rows;
}

int ClampRow(int row, double rows)
{
    if (!(row < rows))
        row = static_cast<int>(rows - 1);
    return row < 0 ? 0 : row;
}

}  // namespace jotlet
