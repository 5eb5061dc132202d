#include "toolkit/marlin_class_wnd_scroll_bar.h"

#include "toolkit/list_geometry.h"

namespace jotlet {

MarlinClassWndScrollBar::MarlinClassWndScrollBar(int id, double rows, Colour arrowColour, Colour thumbColour)
    : id(id),
      upArrow(std::make_unique<MarlinScrollArrow>(kScrollArrowUp, arrowColour)),
      downArrow(std::make_unique<MarlinScrollArrow>(kScrollArrowDown, arrowColour)),
      slide(std::make_unique<MarlinSlideBar>(kSlideId, rows, thumbColour)),
      rows(rows)
{
}

MarlinClassWndScrollBar::~MarlinClassWndScrollBar() = default;

void MarlinClassWndScrollBar::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinClassWndScrollBar";
    windowClass.background = Background::White;
}

MessageParam MarlinClassWndScrollBar::OnCreate(WndMessage&)
{
    upArrow->Create(this);
    downArrow->Create(this);
    slide->Create(this);
    return 0;
}

MessageParam MarlinClassWndScrollBar::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    upArrow->Move(0, 0, client.Width(), kArrowHeight, 1);
    downArrow->Move(0, client.Height() - kArrowHeight, client.Width(), kArrowHeight, 1);
    slide->Move(0, kArrowHeight, client.Width(), client.Height() - 2 * kArrowHeight, 1);
    return 0;
}

MessageParam MarlinClassWndScrollBar::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kScrollArrowUp:
            if (position >= 1)
                Step(-1);
            break;
        case kScrollArrowDown:
            if (rows - 1 > position)
                Step(1);
            break;
        case kSlideId:
            if (IsValidRow(static_cast<int>(record.lParam), rows)) {
                position = static_cast<int>(record.lParam);
                PostCommand(id, position);
            }
            break;
        default:
            break;
    }
    return 0;
}

void MarlinClassWndScrollBar::Step(int by)
{
    position += by;
    slide->SetPosition(position);
    PostCommand(id, position);
}

int MarlinClassWndScrollBar::SetPosition(int row)
{
    if (!IsValidRow(row, rows))
        return 0;
    position = row;
    slide->SetPosition(row);
    upArrow->Invalidate(nullptr, 0);
    downArrow->Invalidate(nullptr, 0);
    return 1;
}

void MarlinClassWndScrollBar::SetRows(double count)
{
    rows = count;
    position = ClampRow(position, rows);
    slide->SetRange(rows);
}

void MarlinClassWndScrollBar::SetColours(Colour face, Colour glyph, Colour frame, Colour track, Colour thumb,
                                         Colour grip, Colour edge)
{
    upArrow->SetColours(face, glyph, frame);
    downArrow->SetColours(face, glyph, frame);
    slide->SetColours(track, thumb, grip, edge);
}

}  // namespace jotlet
