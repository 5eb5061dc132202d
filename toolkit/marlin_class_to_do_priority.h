// MarlinClassToDoPriority: a bar of small square cells, one for each value of a range of characters; the board's
// letters a to z. Posts its id with the value picked to the parent.
//
// Keys: the arrows and Home and End move the mark, Space or Enter picks the marked value, a typed character of the
// range picks itself.
#pragma once

#include <optional>

#include "toolkit/marlin_wnd.h"

namespace jotlet {

struct LetterBarColours {
    Colour cell = 0xFFFFFF;
    Colour text = 0;
    Colour selectedText = 0xFFFFFF;
    Colour cellFrame = 0x808080;
    Colour selectedCell = 0x0000D4;
    Colour selectedFrame = 0;
};

class MarlinClassToDoPriority : public MarlinWnd {
public:
    MarlinClassToDoPriority(int id, int firstValue, int lastValue, Colour backColour,
                            const LetterBarColours& colours = {});

    int GetValue() const { return currentValue; }
    // `repaint` 1: at once. Tells nobody.
    void SetValue(int value, int repaint);

    // The square of a value less one pixel on every side; nothing when the bar has no room for it.
    std::optional<Rect> CellRect(int value) const;

    void PrepareClass(WindowClass& windowClass) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnKeyDown(WndMessage& record) override;
    MessageParam OnChar(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void CollectTabStops(TabStops& stops) override;
    void Describe(AccessibleDescription& description) override;

    static constexpr int kCellSize = 19;

private:
    int CellsPerRow() const;
    void Pick(int value);
    void Mark(int value);

    int id;
    int firstValue;
    int lastValue;
    int currentValue;
    int markedValue;  // where the keyboard stands
    Colour backColour;
    LetterBarColours colours;
};

}  // namespace jotlet
