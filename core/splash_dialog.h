// SplashDialog: the program's picture, for less than a second, before the main window comes.
#pragma once

#include "platform/desktop/bitmap.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class SplashDialog : public MarlinDialog {
public:
    static constexpr Size kSize{261, 226};

    MessageParam OnInitDialog(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    MessageParam OnTimer(WndMessage& record) override;
    // A click lets an impatient user in at once.
    MessageParam OnLButtonDown(WndMessage& record) override;

private:
    Bitmap picture;
};

}  // namespace jotlet
