#include <vector>

#include "resources/dialogs/dialogs.h"

namespace jotlet {

std::span<const DialogTemplate> FrameDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {};
    return dialogs;
}

}  // namespace jotlet
