// The picture of the first page.
#pragma once

#include "toolkit/marlin_wnd.h"

namespace jotlet {

class IntroPicture : public MarlinWnd {
public:
    void PrepareClass(WindowClass& windowClass) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    void Describe(AccessibleDescription& description) override;
};

}  // namespace jotlet
