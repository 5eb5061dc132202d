#include <vector>

#include "resources/dialogs/dialogs.h"

namespace jotlet {

std::span<const DialogTemplate> NetDialogs()
{
    static const std::vector<DialogTemplate> dialogs = {};
    return dialogs;
}

}  // namespace jotlet
