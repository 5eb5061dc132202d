// Where the cells of a grid lie: what painting, clicks and screen readers all ask. Pure functions.
//
// Units: client pixels of the grid; item indexes run left to right, then down. `topRow` is the first row on view.
#pragma once

#include "platform/desktop/geometry.h"

namespace jotlet {

struct ListGeometry {
    Size client;
    int columns = 1;
    int itemHeight = 1;
    int topRow = 0;

    // Rows of which at least one pixel is on view, from topRow on.
    int VisibleRows() const;
    // The cell of an item, on view or not; its height is always itemHeight.
    Rect CellRect(int index) const;
    // The index of the cell that holds the point, whether an item has it or not; -1 outside the grid.
    int CellAt(Point p) const;
};

// Scrolling and selecting, shared by the grid, its bar and the keys. `rows` is item count over columns, not rounded: a
// partly filled last row counts.

// The number of items that `rows` stands for.
int ItemCountOf(double rows, int columns);
bool IsValidRow(int row, double rows);
// The row itself where it is valid; else the last whole row, or 0 when there is none.
int ClampRow(int row, double rows);

}  // namespace jotlet
