// MarlinSlideBar: a vertical bar with a thumb that the user drags over the positions 0 to `range` - 1. Posts its id
// with the new position to the parent; SetPosition and SetRange tell nobody.
#pragma once

#include "toolkit/marlin_wnd.h"

namespace jotlet {

class MarlinSlideBar : public MarlinWnd {
public:
    // `range` need not be whole: a partly filled last row counts.
    MarlinSlideBar(int id, double range, Colour colour) : id(id), colour(colour), range(range) {}

    // 1, or 0 when the position is negative or not less than the range.
    int SetPosition(int newPosition);
    int GetPosition() const { return position; }
    // The position is clamped to what is left.
    void SetRange(double newRange);
    void SetColours(Colour track, Colour thumb, Colour grip, Colour edge);
    Rect ThumbRect() const;
    bool IsDragging() const { return dragging; }

    void PrepareClass(WindowClass& windowClass) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnMouseMove(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnLButtonUp(WndMessage& record) override;
    void OnCaptureLost() override;
    void Describe(AccessibleDescription& description) override;
    void OnSetValue(double value) override;

    static constexpr int kThumbHeight = 20;

private:
    void Follow(int y);

    int id;
    Colour colour;
    int position = 0;
    double range;
    bool dragging = false;
    int dragY = -1;
    Colour trackColour = kNoColour;
    Colour thumbColour = kNoColour;
    Colour gripColour = kNoColour;
    Colour edgeColour = kNoColour;
};

}  // namespace jotlet
