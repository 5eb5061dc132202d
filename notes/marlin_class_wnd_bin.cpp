#include "notes/marlin_class_wnd_bin.h"

#include "notes/bin_slot.h"
#include "platform/desktop/menu.h"
#include "resources/command_ids.h"
#include "skin/drawing.h"
#include "skin/sound.h"
#include "skin/window_helpers.h"
#include "toolkit/drag_commands.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

// Half the width of the hot area, and how far the drop area reaches to the left.
constexpr int kHotHalf = 20;
constexpr int kDropLeft = 25;
// Both pictures of the bin have this size.
constexpr Size kPicture{42, 41};

Rect AboutCentre(const Rect& client, int left, int right)
{
    const int centre = client.Width() / 2;
    return {centre - left, client.bottom - kPicture.height, centre + right, client.bottom};
}

}  // namespace

MarlinClassWndBin::MarlinClassWndBin(int id, Colour background, Colour frameColour, Colour markColour)
    : id(id), background(background), frameColour(frameColour), markColour(markColour)
{
}

void MarlinClassWndBin::Remember(const NoteRecord& record)
{
    RememberDeletedNote(record);
    Invalidate(nullptr, 0);
}

int MarlinClassWndBin::Restore(NoteRecord& record) const
{
    return RestoreDeletedNote(record) ? 1 : 0;
}

void MarlinClassWndBin::Empty()
{
    BinSlot().Clear();
    Invalidate(nullptr, 0);
}

void MarlinClassWndBin::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinClassWndBin";
    windowClass.background = Background::White;
    windowClass.cursor = CursorId::None;
}

Rect MarlinClassWndBin::HotArea() const
{
    return AboutCentre(GetClientArea(), kHotHalf, kHotHalf);
}

Rect MarlinClassWndBin::DropArea() const
{
    return AboutCentre(GetClientArea(), kDropLeft, kHotHalf);
}

MessageParam MarlinClassWndBin::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kDragOver:
            return OnDragOver(*reinterpret_cast<Point*>(record.lParam));
        case kDragMoveDrop:
            return OnDrop(*reinterpret_cast<Point*>(record.lParam));
        case kCommandEmptyBin:
            Empty();
            return 0;
        case kCommandBinUndo:
            AskUndo();
            return 0;
        default:
            return 0;
    }
}

MessageParam MarlinClassWndBin::OnDragOver(Point& screen)
{
    if (!IsMainWindowForeground())
        return 0;
    screen = ScreenToClient(window, screen);
    return DropArea().Contains(screen) ? 1 : 0;
}

MessageParam MarlinClassWndBin::OnDrop(Point& screen)
{
    if (!OnDragOver(screen))
        return 0;
    if (SendCommand(id, kBinDropped) == 1) {
        PlaySoundFile("bindel.wav");
        Invalidate(nullptr, 0);
    }
    return 1;
}

void MarlinClassWndBin::AskUndo()
{
    SendCommand(id, kBinUndo);
    Invalidate(nullptr, 0);
}

void MarlinClassWndBin::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    const Rect client = GetClientArea();
    dc.FillRect(client, background);
    const int x = client.Width() / 2 - kPicture.width / 2;
    DrawResourceBitmap(dc, x, client.bottom - kPicture.height, BinSlot().IsEmpty() ? "recicle1.bmp" : "recicle2.bmp");
    if (FocusedWindow() == window)
        dc.DrawFocusRect(HotArea().Inset(-3, -3, -3, 0), 0);
}

MessageParam MarlinClassWndBin::OnSetCursor(WndMessage&)
{
    SetCursorNow(cursor);
    return 1;
}

MessageParam MarlinClassWndBin::OnMouseMove(WndMessage& record)
{
    cursor = HotArea().Contains(MousePoint(record)) ? CursorId::Hand : CursorId::Arrow;
    SetCursorNow(cursor);
    return 0;
}

MessageParam MarlinClassWndBin::OnLButtonDown(WndMessage& record)
{
    if (!HotArea().Contains(MousePoint(record)))
        return 0;
    if (BinSlot().IsEmpty()) {
        ShowTextMessage(MainWindow(), "Bin is empty.");
        Invalidate(nullptr, 0);
        return 0;
    }
    AskUndo();
    return 0;
}

MessageParam MarlinClassWndBin::OnRButtonDown(WndMessage& record)
{
    if (HotArea().Contains(MousePoint(record)))
        OpenPopup(ClientToScreen(window, MousePoint(record)));
    return 0;
}

void MarlinClassWndBin::OpenPopup(Point screen)
{
    const bool empty = BinSlot().IsEmpty();
    TrackPopupMenu(window, {{"&Undo delete", kCommandBinUndo, empty}, {}, {"&Empty bin", kCommandEmptyBin, empty}},
                   screen);
}

MessageParam MarlinClassWndBin::OnKeyDown(WndMessage& record)
{
    const Rect hot = HotArea();
    WndMessage press = record;
    press.lParam = MakeParam(hot.left, hot.top);
    switch (record.wParam) {
        case kKeyReturn:
        case kKeySpace:
            return OnLButtonDown(press);
        case kKeyMenu:
            OpenPopup(ClientToScreen(window, {hot.left, hot.top}));
            return 0;
        default:
            return MarlinWnd::OnKeyDown(record);
    }
}

void MarlinClassWndBin::OnFocusChanged(bool)
{
    Invalidate(nullptr, 0);
}

void MarlinClassWndBin::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Button;
    description.name = BinSlot().IsEmpty() ? "Recycle bin, empty" : "Recycle bin, undo delete";
    description.hint = BinSlot().IsEmpty() ? "Drop a note here to delete it." : "Click to bring back the deleted note.";
    description.press = HotArea();
}

}  // namespace jotlet
