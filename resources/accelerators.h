// The keys that become commands wherever no text is being edited.
#pragma once

#include <span>

namespace jotlet {

struct Accelerator {
    int key = 0;  // virtual key
    bool control = false;
    bool alt = false;
    int command = 0;
};

// The table "ACC" of the main window.
std::span<const Accelerator> MainAccelerators();

}  // namespace jotlet
