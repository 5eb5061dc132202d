#include "toolkit/marlin_wnd_list.h"

#include <algorithm>

#include "skin/drawing.h"
#include "toolkit/drag_commands.h"
#include "toolkit/marlin_wnd_list_view.h"

namespace jotlet {
namespace {

constexpr int kFocusTimerId = 101;
constexpr Milliseconds kFocusPoll{200};
constexpr int kWheelNotch = 120;

bool ControlHeld(const WndMessage& record)
{
    return (record.wParam & kMouseControl) != 0;
}

bool Intersect(const Rect& a, const Rect& b)
{
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

}  // namespace

MarlinWndList::MarlinWndList(MarlinWndListView& owner, double rows, int itemHeight, int columns, Colour oddColour,
                             Colour evenColour)
    : rows(rows), owner(owner), itemHeight(itemHeight), columns(columns), oddColour(oddColour), evenColour(evenColour)
{
}

void MarlinWndList::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinWndList";
    windowClass.background = Background::White;
    windowClass.style |= kClassDblClks;
    windowClass.cursor = CursorId::None;
}

MessageParam MarlinWndList::OnCreate(WndMessage&)
{
    StartTimer(window, kFocusTimerId, kFocusPoll);
    return 0;
}

MessageParam MarlinWndList::OnClose(WndMessage&)
{
    StopTimer(window, kFocusTimerId);
    return 0;
}

ListGeometry MarlinWndList::Geometry() const
{
    const Rect client = GetClientArea();
    return {{client.Width(), client.Height()}, columns, itemHeight, topRow};
}

int MarlinWndList::ItemAt(Point p) const
{
    const int index = Geometry().CellAt(p);
    return IsItem(index) ? index : -1;
}

void MarlinWndList::OnPaint(DeviceContext& dc, const PaintInfo& paint)
{
    const ListGeometry geometry = Geometry();
    const Rect client = GetClientArea();
    const Rect wanted = paint.invalid.Empty() ? client : paint.invalid;
    const int first = topRow * columns;
    const int end = first + geometry.VisibleRows() * columns;
    for (int index = first; index < end; ++index) {
        const Rect cell = geometry.CellRect(index);
        if (Intersect(cell, wanted))
            PaintCell(dc, index, cell);
    }
    if (!(rows > 0))
        owner.DrawItem(dc, oddColour, -1, kListEmpty, client);
    // With an item selected its frame tells where the keyboard is.
    if (hasFocus && !IsItem(selected))
        dc.DrawFocusRect(client.Inset(1, 1), Darken(evenColour, 120));
}

void MarlinWndList::PaintCell(DeviceContext& dc, int index, const Rect& cell)
{
    const Colour ground = index % 2 ? oddColour : evenColour;
    dc.FillRect(cell, ground);
    if (IsItem(index))
        owner.DrawItem(dc, ground, index, index == selected ? kItemSelected : kItemPlain, cell);
}

MessageParam MarlinWndList::OnTimer(WndMessage& record)
{
    if (record.wParam != kFocusTimerId || !IsItem(selected))
        return 0;
    const bool focused = FocusedWindow() == window;
    if (focused != hasFocus) {
        hasFocus = focused;
        Invalidate(nullptr, 0);
    }
    return 0;
}

void MarlinWndList::OnFocusChanged(bool focused)
{
    if (focused == hasFocus)
        return;
    hasFocus = focused;
    Invalidate(nullptr, 0);
}

void MarlinWndList::SetCursorTo(CursorId wanted)
{
    cursor = wanted;
    SetCursorNow(wanted);
}

MessageParam MarlinWndList::OnSetCursor(WndMessage&)
{
    SetCursorNow(cursor);
    return 1;
}

void MarlinWndList::PostToOwner(int code, int value)
{
    // These two open something.
    if (code == kListItemDoubleClicked || code == kListItemRightClicked)
        RequestCommand(code, value);
    else
        PostCommand(code, value);
}

void MarlinWndList::SelectByPointer(int index, int code)
{
    Choose(index);
    if (code != kListItemDoubleClicked)
        PostToOwner(kListScrolled, topRow);
    PostToOwner(code, index);
    RepaintNow();
    AccessibleChanged(window);
}

MessageParam MarlinWndList::OnLButtonDown(WndMessage& record)
{
    FocusWindow(window);
    const int index = ItemAt(MousePoint(record));
    if (index < 0)
        return 0;
    SelectByPointer(index, kListItemPressed);
    dragArmed = dragEnabled;
    return 0;
}

MessageParam MarlinWndList::OnRButtonUp(WndMessage& record)
{
    FocusWindow(window);
    owner.menuByKey = false;
    const int index = ItemAt(MousePoint(record));
    if (index < 0)
        PostToOwner(kListItemRightClicked, -1);
    else
        SelectByPointer(index, kListItemRightClicked);
    return 0;
}

MessageParam MarlinWndList::OnLButtonDblClk(WndMessage& record)
{
    FocusWindow(window);
    const int index = ItemAt(MousePoint(record));
    if (index < 0)
        PostToOwner(kListItemDoubleClicked, -1);
    else
        SelectByPointer(index, kListItemDoubleClicked);
    return 0;
}

// From the message and not from the platform: while the mouse is captured the message is the one that always knows.
Point MarlinWndList::OnScreen(const WndMessage& record) const
{
    return ClientToScreen(window, MousePoint(record));
}

MessageParam MarlinWndList::OnMouseMove(WndMessage& record)
{
    if (dragging) {
        UpdateDragCursor(OnScreen(record), ControlHeld(record));
        return 0;
    }
    if ((record.wParam & kMouseLeft) && dragArmed) {
        CaptureMouse(window);
        dragging = true;
        return 0;
    }
    SetCursorTo(ItemAt(MousePoint(record)) < 0 ? CursorId::Arrow : CursorId::Hand);
    return 0;
}

MessageParam MarlinWndList::OnLButtonUp(WndMessage& record)
{
    if (dragging) {
        // The capture goes first: who takes the drop may ask something in a box of its own.
        EndDrag();
        Drop(OnScreen(record), ControlHeld(record));
        return 0;
    }
    if (!dragArmed)
        return 0;
    dragArmed = false;
    if (const int index = ItemAt(MousePoint(record)); index >= 0)
        Choose(index);
    return 0;
}

void MarlinWndList::UpdateDragCursor(Point screen, bool copy)
{
    const WindowHandle target = WindowFromScreenPoint(screen);
    bool taken = target == window;
    if (target && !taken) {
        Point p = screen;
        taken = SendTo(target, kWmCommand, kDragOver, reinterpret_cast<MessageParam>(&p)) == 1;
    }
    SetCursorTo(!taken ? CursorId::DragStop : copy ? CursorId::DragTrueCopy : CursorId::DragTrue);
}

void MarlinWndList::EndDrag()
{
    dragArmed = false;
    dragging = false;
    SetCursorTo(CursorId::Arrow);
    ReleaseMouse();
}

void MarlinWndList::OnCaptureLost()
{
    if (dragging)
        EndDrag();
    dragArmed = false;
}

void MarlinWndList::Drop(Point screen, bool copy)
{
    const WindowHandle target = WindowFromScreenPoint(screen);
    if (!target || target == window)
        return;
    SendTo(target, kWmCommand, copy ? kDragCopyDrop : kDragMoveDrop, reinterpret_cast<MessageParam>(&screen));
}

MessageParam MarlinWndList::OnMouseWheel(WndMessage& record)
{
    // The platform delivers whole notches.
    const int delta = static_cast<std::int16_t>(HighWord(record.wParam));
    int row = topRow;
    if (delta >= kWheelNotch && topRow >= 1)
        --row;
    else if (delta < kWheelNotch && rows - 1 > topRow)
        ++row;
    if (row != topRow) {
        topRow = row;
        RepaintNow();
        PostToOwner(kListScrolled, topRow);
        AccessibleChanged(window);
    }
    return DefaultHandler(record);
}

std::optional<int> MarlinWndList::ItemForKey(int key) const
{
    const int last = ItemCount() - 1;
    const int page = std::max(1, GetClientArea().Height() / itemHeight) * columns;
    switch (key) {
        case kKeyRight:
        case kKeyDown:
            return selected + 1 <= last ? std::optional(selected + 1) : std::nullopt;
        case kKeyLeft:
        case kKeyUp:
            return selected - 1 >= 0 ? std::optional(selected - 1) : std::nullopt;
        case kKeyHome:
            return last >= 1 && selected >= 1 ? std::optional(0) : std::nullopt;
        case kKeyEnd:
            return selected != last ? std::optional(last) : std::nullopt;
        case kKeyPageDown:
            return selected < last ? std::optional(std::min(std::max(selected, 0) + page, last)) : std::nullopt;
        case kKeyPageUp:
            return selected > 0 ? std::optional(std::max(selected - page, 0)) : std::nullopt;
        default:
            return std::nullopt;
    }
}

MessageParam MarlinWndList::OnKeyDown(WndMessage& record)
{
    if (FocusedWindow() != window)
        return 0;
    switch (const int key = static_cast<int>(record.wParam)) {
        case kKeyEscape:
            if (dragging)
                EndDrag();
            else if (selected >= 0)
                ClearSelection();
            else
                return DefaultHandler(record);
            return 0;
        case kKeyMenu:
            OpenMenuByKey();
            return 0;
        case kKeyReturn:
            owner.OnReturnKey(selected);
            [[fallthrough]];
        case kKeyTab:
            return DefaultHandler(record);  // a dialog's
        default:
            if (const auto item = ItemForKey(key))
                SelectByKey(*item);
            else
                owner.OnOtherKey(key);
            return 0;
    }
}

MessageParam MarlinWndList::OnChar(WndMessage& record)
{
    constexpr MessageParam kDelete = 127;
    if (FocusedWindow() != window || record.wParam <= kKeySpace || record.wParam == kDelete)
        return DefaultHandler(record);
    owner.OnCharacter(static_cast<char32_t>(record.wParam));
    return 0;
}

void MarlinWndList::SelectByKey(int index)
{
    if (!IsItem(index) || !GetParentWnd())
        return;
    owner.SelectItem(index);
    owner.OnKeySelected(index);
}

void MarlinWndList::OpenMenuByKey()
{
    owner.menuByKey = true;
    PostToOwner(kListItemRightClicked, IsItem(selected) ? selected : -1);
}

void MarlinWndList::Choose(int index)
{
    selected = index;
    owner.OnChosen(index);
}

void MarlinWndList::ClearSelection()
{
    selected = -1;
    Invalidate(nullptr, 0);
    AccessibleChanged(window);
}

void MarlinWndList::CollectTabStops(TabStops& stops)
{
    stops.push_back(this);
}

void MarlinWndList::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::List;
    description.name = owner.ListName();
    if (ItemCount() == 0)
        description.hint = owner.EmptyHint();
    const ListGeometry geometry = Geometry();
    const int end = std::min((topRow + geometry.VisibleRows()) * columns, ItemCount());
    for (int index = topRow * columns; index < end; ++index) {
        const bool isSelected = index == selected;
        description.parts.push_back({AccessibleRole::ListItem, owner.ItemName(index), geometry.CellRect(index),
                                     isSelected, isSelected && hasFocus, true, owner.ItemDetail(index)});
    }
}

}  // namespace jotlet
