// The cursors the program uses, by name.
#pragma once

namespace jotlet {

enum class CursorId {
    None,
    Arrow,
    Wait,
    SizeNwse,      // diagonal, over the grip
    Hand,          // "CUR_HAND1"
    DragTrue,      // "CUR_DRAG_TRUE"
    DragTrueCopy,  // "CUR_DRAG_TRUE_COPY"
    DragStop,      // "CUR_DRAG_STOP"
};

// The wait cursor of the whole program; one memory, no nesting.
void ShowWaitCursor();
void RestoreCursor();
bool IsWaitCursorShown();

}  // namespace jotlet
