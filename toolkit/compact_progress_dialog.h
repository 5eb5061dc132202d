// CompactProgressDialog: the small modeless window that shows how far a long file operation is.
#pragma once

#include "platform/base/progress_display.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class CompactProgressDialog : public MarlinDialog, public ProgressDisplay {
public:
    // `frame`: its parent, which gets the focus back; null: none.
    explicit CompactProgressDialog(MarlinWnd* frame) : frame(frame) {}
    ~CompactProgressDialog() override;

    void Open(const std::string& title, int steps) override;
    void Step() override;
    void Close() override;  // of the display and of the window
    void ShowText(const std::string& text) override;

    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;

private:
    int BarEnd() const;
    void DrawBar(DeviceContext& dc) const;

    MarlinWnd* frame;
    int stepCount = 0;
    int stepsDone = 0;
    int shownEnd = 0;  // right end of the bar as it stands on the screen
};

}  // namespace jotlet
