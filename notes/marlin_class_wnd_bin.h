// The picture of the recycle bin on the notes pane: shows whether it is full, takes dropped notes, offers undo and
// emptying.
//
// It asks its parent with kWmCommand, wParam its id: lParam 1003 "a note was dropped here" (1 when one was removed),
// lParam 1023 "undo". It answers the drag commands 1020, 1021 and 1022, and its popup's 1034 and 1035. Keys, while it
// has the focus: Enter or Space do what a press does, the menu key opens the popup.
#pragma once

#include "notes/model/note_record.h"
#include "platform/desktop/cursor.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

inline constexpr int kBinDropped = 1003;
inline constexpr int kBinUndo = 1023;

class MarlinClassWndBin : public MarlinWnd {
public:
    MarlinClassWndBin(int id, Colour background, Colour frameColour, Colour markColour);

    // The slot's operations, with the picture following.
    void Remember(const NoteRecord& record);
    // 1 and the note, or 0 when the slot is empty.
    int Restore(NoteRecord& record) const;
    void Empty();

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnSetCursor(WndMessage& record) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnRButtonDown(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void CollectTabStops(TabStops& stops) override { stops.push_back(this); }
    bool UsesReturnKey() const override { return true; }
    void Describe(AccessibleDescription& description) override;

    // Where clicks count, and where drops count: the second reaches 5 pixels further to the left.
    Rect HotArea() const;
    Rect DropArea() const;

private:
    MessageParam OnDragOver(Point& screen);
    MessageParam OnDrop(Point& screen);
    void AskUndo();
    void OpenPopup(Point screen);

    int id;
    Colour background;
    Colour frameColour;
    Colour markColour;
    CursorId cursor = CursorId::Arrow;
};

}  // namespace jotlet
