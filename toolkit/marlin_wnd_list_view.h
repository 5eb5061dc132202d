// MarlinWndListView: the one list of the program, a grid of equal cells beside its own scroll bar.
//
// It holds no item data: a subclass draws each cell, by its index.
//
// Owns:    grid and bar.
// Tells:   the parent, posted: codes 21, 22, 23 of marlin_wnd_list.h with the item.
// Threads: one.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "toolkit/marlin_class_wnd_scroll_bar.h"
#include "toolkit/marlin_wnd_list.h"

namespace jotlet {

inline constexpr int kScrollBarLeft = 1;  // any other side: right
// `state` of the drawing hook.
inline constexpr int kItemPlain = 0;
inline constexpr int kItemSelected = 1;
inline constexpr int kListEmpty = -1;  // once, with index -1 and the whole grid

class MarlinWndListView : public MarlinWnd {
public:
    // 0 columns count as 1.
    MarlinWndListView(int id, int itemCount, int itemHeight, int columns, Colour oddColour, Colour evenColour,
                      int scrollSide, Colour arrowColour, Colour thumbColour);
    ~MarlinWndListView() override;

    // Selection cleared, top row moved up where it would lie past the end.
    void SetCount(int count);
    void SetScrollColours(Colour face, Colour glyph, Colour frame, Colour track, Colour thumb, Colour grip,
                          Colour edge);
    void EnableDrag();

    int GetSelected() const { return list->selected; }
    int GetCount() const { return list->ItemCount(); }
    // Selects and brings into view: an item of the first page always scrolls to the top, any other comes to the middle.
    // 1, or 0 when there is no such item. Tells nobody.
    int SelectItem(int index);
    void SetTopRow(int row);
    int GetTopRow() const { return list->topRow; }

    // For the drawing hook, when the state is kItemSelected: a dotted edge, hard while the list has the focus.
    void DrawSelectionFrame(DeviceContext& dc, const Rect& rect, Colour colour);

    // The cell of an item in screen coordinates, cut to what is on view: where a popup opened by the keyboard goes.
    // Nothing when the item is not on view.
    std::optional<Rect> GetItemRect(int index) const;
    // True when the last notification 23 came from the menu key and not from the mouse.
    bool MenuByKey() const { return menuByKey; }
    // Where that popup opens, in screen coordinates: in the item's cell after the menu key, else at the cursor.
    Point PopupPoint(int index) const;
    // The grid: what takes the focus, and what a drag starts from.
    MarlinWndList& Grid() { return *list; }

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnSize(WndMessage& record) override;
    void CollectTabStops(TabStops& stops) override;

    // Hooks, for a subclass.
    virtual void DrawItem(DeviceContext&, Colour /*background*/, int /*index*/, int /*state*/, const Rect&) {}
    // An item became the selected one, by whatever way; -1: none is.
    virtual void OnChosen(int /*index*/) {}
    // A key moved the selection; the parent is not told of that.
    virtual void OnKeySelected(int /*index*/) {}
    // Enter, where TakeReturnKey gives it to the grid; -1: nothing is selected.
    virtual void OnReturnKey(int /*selected*/) {}
    // A key that the grid has no use for.
    virtual void OnOtherKey(int /*virtualKey*/) {}
    // A character was typed; no control character and no blank.
    virtual void OnCharacter(char32_t /*character*/) {}
    // What a screen reader says for an item; and for the list itself.
    virtual std::string ItemName(int index);
    // What else its cell shows: colours, marks.
    virtual std::string ItemDetail(int /*index*/) { return {}; }
    virtual std::string ListName() { return {}; }
    // What to do while the list has no items.
    virtual std::string EmptyHint() { return {}; }

    static constexpr int kBarWidth = 20;
    static constexpr int kBarId = 10;

protected:
    int id;
    std::unique_ptr<MarlinClassWndScrollBar> scrollBar;
    std::unique_ptr<MarlinWndList> list;

private:
    friend class MarlinWndList;

    void ScrollTo(int row);
    void OnBarMoved(int row);

    int scrollSide;
    bool menuByKey = false;
};

}  // namespace jotlet
