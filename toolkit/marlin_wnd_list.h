// MarlinWndList: the grid of a list view. It knows cells and the selection, and draws nothing itself but their ground;
// what stands in a cell comes from the hooks of its MarlinWndListView, which also gets its notifications, posted as
// commands 20 (scrolled or clicked, lParam the top row), 21 (press), 22 (double click) and 23 (right release), these
// with the item, or -1 off the items.
//
// The drag: capture the mouse, ask the window under the cursor whether it takes a drop, and at release tell it to move
// or, with Ctrl, to copy (toolkit/drag_commands.h). Escape gives it up.
//
// Keys: the arrows go item by item, Home and End to the ends, Page Up and Page Down by a screenful; Escape selects
// nothing; the menu key acts as a right click on the selected item. Only the last tells the parent.
#pragma once

#include <optional>

#include "toolkit/list_geometry.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

class MarlinWndListView;

// Commands of the grid to its list view, and codes of the list view to its parent.
inline constexpr int kListScrolled = 20;
inline constexpr int kListItemPressed = 21;
inline constexpr int kListItemDoubleClicked = 22;
inline constexpr int kListItemRightClicked = 23;

class MarlinWndList : public MarlinWnd {
public:
    MarlinWndList(MarlinWndListView& owner, double rows, int itemHeight, int columns, Colour oddColour,
                  Colour evenColour);

    double rows = 0;  // item count over columns, not rounded
    int topRow = 0;
    int selected = -1;
    bool dragEnabled = false;
    bool dragging = false;
    bool hasFocus = false;  // what the last look at the focus saw

    int ItemCount() const { return ItemCountOf(rows, columns); }
    bool IsItem(int index) const { return index >= 0 && index < ItemCount(); }
    ListGeometry Geometry() const;
    // The item at a client point, -1 off the items.
    int ItemAt(Point p) const;
    int Columns() const { return columns; }
    int ItemHeight() const { return itemHeight; }

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnClose(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnTimer(WndMessage& record) override;
    MessageParam OnSetCursor(WndMessage& record) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnLButtonUp(WndMessage& record) override;
    void OnCaptureLost() override;
    MessageParam OnLButtonDblClk(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnRButtonUp(WndMessage& record) override;
    MessageParam OnMouseWheel(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    MessageParam OnChar(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void CollectTabStops(TabStops& stops) override;
    void Describe(AccessibleDescription& description) override;

private:
    friend class MarlinWndListView;
    void Choose(int index);
    void PaintCell(DeviceContext& dc, int index, const Rect& cell);
    void SelectByPointer(int index, int code);
    void SelectByKey(int index);
    std::optional<int> ItemForKey(int key) const;
    void ClearSelection();
    void UpdateDragCursor(Point screen, bool copy);
    void EndDrag();
    void Drop(Point screen, bool copy);
    Point OnScreen(const WndMessage& record) const;
    void OpenMenuByKey();
    void SetCursorTo(CursorId wanted);
    void PostToOwner(int code, int value);

    MarlinWndListView& owner;
    int itemHeight;
    int columns;
    Colour oddColour;
    Colour evenColour;
    CursorId cursor = CursorId::Arrow;
    bool dragArmed = false;
};

}  // namespace jotlet
