#include "toolkit/marlin_wnd_list_view.h"

#include <algorithm>

#include "skin/drawing.h"

namespace jotlet {
namespace {

constexpr int kSelectionPatternId = 2010;
constexpr int kSelectionSoftness = 40;

double RowsOf(int count, int columns)
{
    return static_cast<double>(count) / columns;
}

}  // namespace

MarlinWndListView::~MarlinWndListView() = default;

MarlinWndListView::MarlinWndListView(int id, int itemCount, int itemHeight, int columns, Colour oddColour,
                                     Colour evenColour, int scrollSide, Colour arrowColour, Colour thumbColour)
    : id(id), scrollSide(scrollSide)
{
    columns = std::max(columns, 1);
    const double rows = RowsOf(itemCount, columns);
    list = std::make_unique<MarlinWndList>(*this, rows, itemHeight, columns, oddColour, evenColour);
    scrollBar = std::make_unique<MarlinClassWndScrollBar>(kBarId, rows, arrowColour, thumbColour);
}

void MarlinWndListView::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinWndListView";
    windowClass.background = Background::White;
}

MessageParam MarlinWndListView::OnCreate(WndMessage&)
{
    list->Create(this);
    scrollBar->Create(this);
    FocusWindow(list->window);
    return 0;
}

MessageParam MarlinWndListView::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    const bool barLeft = scrollSide == kScrollBarLeft;
    const int gridWidth = std::max(client.Width() - kBarWidth, 0);
    scrollBar->Move(barLeft ? 0 : gridWidth, 0, kBarWidth, client.Height(), 1);
    list->Move(barLeft ? kBarWidth : 0, 0, gridWidth, client.Height(), 1);
    return 0;
}

MessageParam MarlinWndListView::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    switch (command) {
        case kBarId:
            OnBarMoved(static_cast<int>(record.lParam));
            break;
        case kListScrolled:
            scrollBar->SetPosition(static_cast<int>(record.lParam));
            break;
        case kListItemPressed:
            PostCommand(id, record.lParam, command);
            break;
        case kListItemDoubleClicked:
        case kListItemRightClicked:
            RequestCommand(id, record.lParam, command);
            break;
        default:
            break;
    }
    return 0;
}

void MarlinWndListView::OnBarMoved(int row)
{
    if (row == list->topRow || !(row < list->rows))
        return;
    list->topRow = row;
    list->Invalidate(nullptr, 0);
    AccessibleChanged(list->window);
}

void MarlinWndListView::SetCount(int count)
{
    const double rows = RowsOf(std::max(count, 0), list->Columns());
    list->rows = rows;
    list->selected = -1;
    list->topRow = ClampRow(list->topRow, rows);
    scrollBar->SetRows(rows);
    list->Invalidate(nullptr, 1);
    scrollBar->Invalidate(nullptr, 1);
    AccessibleChanged(list->window);
}

void MarlinWndListView::SetScrollColours(Colour face, Colour glyph, Colour frame, Colour track, Colour thumb,
                                         Colour grip, Colour edge)
{
    scrollBar->SetColours(face, glyph, frame, track, thumb, grip, edge);
}

void MarlinWndListView::EnableDrag()
{
    list->dragEnabled = true;
}

int MarlinWndListView::SelectItem(int index)
{
    if (!list->IsItem(index))
        return 0;
    const int visible = list->GetClientArea().Height() / list->ItemHeight();
    const int row = index / list->Columns();
    list->Choose(index);
    ScrollTo(row < visible ? 0 : std::max(row - visible / 2, 0));
    return 1;
}

void MarlinWndListView::SetTopRow(int row)
{
    if (IsValidRow(row, list->rows) || row == 0)
        ScrollTo(row);
}

void MarlinWndListView::ScrollTo(int row)
{
    list->topRow = row;
    list->Invalidate(nullptr, 0);
    scrollBar->SetPosition(row);
    scrollBar->Invalidate(nullptr, 0);
    AccessibleChanged(list->window);
}

void MarlinWndListView::DrawSelectionFrame(DeviceContext& dc, const Rect& rect, Colour colour)
{
    Bitmap pattern = Bitmap::FromResource(kSelectionPatternId);
    const Colour soft = colour == kNoColour ? 0x808080 : Darken(colour, kSelectionSoftness);
    if (!pattern) {
        dc.FrameRect(rect, list->hasFocus ? 0 : soft);
        return;
    }
    if (colour != kNoColour)
        ReplaceColour(pattern, 0xFFFFFF, colour);
    if (!list->hasFocus)
        ReplaceColour(pattern, 0, soft);
    dc.FrameRectPattern(rect, pattern);
}

std::optional<Rect> MarlinWndListView::GetItemRect(int index) const
{
    if (!list->IsItem(index))
        return std::nullopt;
    const Rect client = list->GetClientArea();
    Rect cell = list->Geometry().CellRect(index);
    cell = {std::max(cell.left, client.left), std::max(cell.top, client.top), std::min(cell.right, client.right),
            std::min(cell.bottom, client.bottom)};
    if (cell.Empty())
        return std::nullopt;
    const Point corner = ClientToScreen(list->window, {cell.left, cell.top});
    return Rect::At(corner.x, corner.y, cell.Width(), cell.Height());
}

Point MarlinWndListView::PopupPoint(int index) const
{
    if (!menuByKey)
        return CursorPosition();
    if (const auto cell = GetItemRect(index))
        return {cell->left + cell->Width() / 2, cell->top + cell->Height() / 2};
    return ClientToScreen(list->window, {0, 0});
}

void MarlinWndListView::CollectTabStops(TabStops& stops)
{
    list->CollectTabStops(stops);
}

std::string MarlinWndListView::ItemName(int)
{
    return {};
}

}  // namespace jotlet
