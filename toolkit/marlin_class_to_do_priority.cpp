#include "toolkit/marlin_class_to_do_priority.h"

#include <algorithm>

#include "skin/fonts.h"

namespace jotlet {

MarlinClassToDoPriority::MarlinClassToDoPriority(int id, int firstValue, int lastValue, Colour backColour,
                                                 const LetterBarColours& colours)
    : id(id),
      firstValue(firstValue),
      lastValue(lastValue),
      currentValue(firstValue),
      markedValue(firstValue),
      backColour(backColour),
      colours(colours)
{
}

void MarlinClassToDoPriority::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinClassToDoPriority";
    windowClass.background = Background::White;
}

void MarlinClassToDoPriority::SetValue(int value, int repaint)
{
    currentValue = value;
    markedValue = std::clamp(value, firstValue, lastValue);
    if (repaint == 1)
        RepaintNow();
}

int MarlinClassToDoPriority::CellsPerRow() const
{
    // A row ends at the first x that reaches the width less one cell.
    const int end = GetClientArea().Width() - kCellSize;
    return std::max((end + kCellSize - 1) / kCellSize, 1);
}

std::optional<Rect> MarlinClassToDoPriority::CellRect(int value) const
{
    if (value < firstValue || value > lastValue)
        return std::nullopt;
    const int perRow = CellsPerRow();
    const int index = value - firstValue;
    const int y = index / perRow * kCellSize;
    if (y >= GetClientArea().Height() - kCellSize)
        return std::nullopt;
    return Rect::At(index % perRow * kCellSize, y, kCellSize, kCellSize).Inset(1, 1);
}

void MarlinClassToDoPriority::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    dc.FillRect(GetClientArea(), backColour);
    const bool focused = FocusedWindow() == window;
    for (int value = firstValue; value <= lastValue; ++value) {
        const auto cell = CellRect(value);
        if (!cell)
            break;
        const bool current = value == currentValue;
        const Colour ink = current ? colours.selectedText : colours.text;
        dc.FillRect(*cell, current ? colours.selectedCell : colours.cell);
        dc.FrameRect(*cell, current ? colours.selectedFrame : colours.cellFrame);
        dc.DrawText(*cell, std::string(1, static_cast<char>(value)), SmallFont(400), ink,
                    kTextCentre | kTextVCentre | kTextSingleLine | kTextNoPrefix);
        if (focused && value == markedValue)
            dc.DrawFocusRect(cell->Inset(2, 2), ink);
    }
}

MessageParam MarlinClassToDoPriority::OnLButtonDown(WndMessage& record)
{
    for (int value = firstValue; value <= lastValue; ++value) {
        const auto cell = CellRect(value);
        if (cell && cell->Contains(MousePoint(record))) {
            Pick(value);
            break;
        }
    }
    return 0;
}

void MarlinClassToDoPriority::Pick(int value)
{
    currentValue = value;
    markedValue = value;
    RepaintNow();
    PostCommand(id, value);
    AccessibleChanged(window);
}

void MarlinClassToDoPriority::Mark(int value)
{
    if (value < firstValue || value > lastValue)
        return;
    markedValue = value;
    Invalidate(nullptr, 0);
    AccessibleChanged(window);
}

MessageParam MarlinClassToDoPriority::OnKeyDown(WndMessage& record)
{
    switch (record.wParam) {
        case kKeyLeft:
            Mark(markedValue - 1);
            return 0;
        case kKeyRight:
            Mark(markedValue + 1);
            return 0;
        case kKeyUp:
            Mark(markedValue - CellsPerRow());
            return 0;
        case kKeyDown:
            Mark(markedValue + CellsPerRow());
            return 0;
        case kKeyHome:
            Mark(firstValue);
            return 0;
        case kKeyEnd:
            Mark(lastValue);
            return 0;
        case kKeySpace:
        case kKeyReturn:
            Pick(markedValue);
            return 0;
        default:
            return DefaultHandler(record);
    }
}

MessageParam MarlinClassToDoPriority::OnChar(WndMessage& record)
{
    const auto value = static_cast<int>(record.wParam);
    if (value <= kKeySpace || value < firstValue || value > lastValue)
        return DefaultHandler(record);
    Pick(value);
    return 0;
}

void MarlinClassToDoPriority::OnFocusChanged(bool)
{
    Invalidate(nullptr, 0);
}

void MarlinClassToDoPriority::CollectTabStops(TabStops& stops)
{
    stops.push_back(this);
}

void MarlinClassToDoPriority::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::ToolBar;
    description.name = "Letters";
    const bool focused = FocusedWindow() == window;
    for (int value = firstValue; value <= lastValue; ++value) {
        const auto cell = CellRect(value);
        if (!cell)
            break;
        description.parts.push_back({AccessibleRole::Button, std::string(1, static_cast<char>(value)), *cell,
                                     value == currentValue, focused && value == markedValue, true});
    }
}

}  // namespace jotlet
