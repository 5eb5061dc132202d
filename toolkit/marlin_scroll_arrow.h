// MarlinScrollArrow: one of the two arrows of a scroll bar, up for id 1, down for id 2.
#pragma once

#include "toolkit/marlin_spin_button.h"

namespace jotlet {

inline constexpr int kScrollArrowUp = 1;
inline constexpr int kScrollArrowDown = 2;

class MarlinScrollArrow : public MarlinSpinButton {
public:
    MarlinScrollArrow(int id, Colour colour) : MarlinSpinButton(0, colour, id) {}
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
};

}  // namespace jotlet
