// MarlinClassWndScrollBar: two arrows and a slide over rows. Posts its id with the new position to its parent whenever
// the user moved it; SetPosition and SetRows tell nobody.
#pragma once

#include <memory>

#include "toolkit/marlin_scroll_arrow.h"
#include "toolkit/marlin_slide_bar.h"

namespace jotlet {

class MarlinClassWndScrollBar : public MarlinWnd {
public:
    MarlinClassWndScrollBar(int id, double rows, Colour arrowColour, Colour thumbColour);
    ~MarlinClassWndScrollBar() override;

    int GetPosition() const { return position; }
    // 1 when the row is valid and the bar now stands there, else 0.
    int SetPosition(int row);
    // The position is clamped to what is left.
    void SetRows(double count);
    // Three colours of both arrows, four of the slide.
    void SetColours(Colour face, Colour glyph, Colour frame, Colour track, Colour thumb, Colour grip, Colour edge);

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnSize(WndMessage& record) override;

    static constexpr int kArrowHeight = 20;
    static constexpr int kSlideId = 6;

private:
    void Step(int by);

    int id;
    std::unique_ptr<MarlinScrollArrow> upArrow;
    std::unique_ptr<MarlinScrollArrow> downArrow;
    std::unique_ptr<MarlinSlideBar> slide;
    int position = 0;
    double rows;
};

}  // namespace jotlet
