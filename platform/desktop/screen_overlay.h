// Figures over the whole screen that take no input and leave no trace: what the rubber-band animations are drawn with.
#pragma once

#include <memory>
#include <span>

#include "platform/desktop/geometry.h"

namespace jotlet {

struct ScreenLine {
    Point from;
    Point to;
};

// Skips everything on a display that cannot place such a window (Available() is then false).
class ScreenOverlay {
public:
    ScreenOverlay();
    ~ScreenOverlay();
    ScreenOverlay(const ScreenOverlay&) = delete;
    ScreenOverlay& operator=(const ScreenOverlay&) = delete;

    bool Available() const;
    // Replaces what is shown; on the screen when the call returns.
    void Show(std::span<const ScreenLine> lines);
    void Clear();

    struct Data;

private:
    std::unique_ptr<Data> data;
};

}  // namespace jotlet
