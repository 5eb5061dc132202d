// Paints what of the main window is not its children: the margin with title and caption buttons, and the coloured bands
// about the pane.
#pragma once

#include <array>
#include <string_view>

#include "core/frame_geometry.h"
#include "platform/desktop/device_context.h"
#include "toolkit/marlin_pane.h"

namespace jotlet {

// How a caption button looks; the numbers are the positions of the skin's pictures.
enum class ButtonLook { Normal = 0, UnderMouse = 1, Pressed = 2 };
// By CaptionButton.
using ButtonLooks = std::array<ButtonLook, 3>;

// `dc` is of the whole window.
void PaintFrameMargin(DeviceContext& dc, Size window, std::string_view title, const ButtonLooks& looks);
void PaintCaptionButtons(DeviceContext& dc, Size window, const ButtonLooks& looks);
// `dc` is of the client area.
void PaintFrameRings(DeviceContext& dc, Size client, const PaneColours& colours);

}  // namespace jotlet
