#include "resources/dialog_template.h"

#include <array>

#include "resources/dialogs/dialogs.h"

namespace jotlet {

const DialogTemplate* FindDialogTemplate(int id)
{
    for (const auto makeTemplates : kDialogSets) {
        for (const DialogTemplate& one : makeTemplates()) {
            if (one.id == id)
                return &one;
        }
    }
    return nullptr;
}

}  // namespace jotlet
