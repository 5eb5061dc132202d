// Dialogs from templates, and the stock controls in them.
//
// A dialog is a window whose procedure is the dialog procedure given here; its controls are the desktop's own widgets,
// each with a handle of its own, so that input methods, clipboard, undo, screen readers and Tab work as everywhere.
// Controls tell the dialog by kWmCommand: id in the low half of wParam, a notification code in the high half, the
// control in lParam. Enter presses the default button, Escape and the close box send the command 2.
//
// Text limits count bytes of UTF-8 and never split a character; an edit refuses further typing at its limit.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop/native_window.h"
#include "resources/dialog_template.h"

namespace jotlet {

// Makes the dialog window with its controls, hidden, and sends kWmInitDialog; a result of 1 leaves the focus on the
// first control that takes it, 0 where the handler put it. `userWord` is set before the first message. Sizes and places
// come from the template in dialog units, by the metrics of the dialog font. 0 when it cannot be made.
WindowHandle CreateDialogWindow(const DialogTemplate& dialogTemplate, WindowHandle owner, WindowProcedure procedure,
                                void* userWord);

// Controls by id.
WindowHandle DialogItem(WindowHandle dialog, int id);
std::string ItemText(WindowHandle dialog, int id);
void SetItemTextOf(WindowHandle dialog, int id,
                   std::string_view text);  // no change notification from the caller's own text
void LimitItemText(WindowHandle dialog, int id, int bytes);
void EnableItem(WindowHandle dialog, int id, bool enabled);
void ShowItem(WindowHandle dialog, int id, bool visible);
void FocusItem(WindowHandle dialog, int id);
void SetItemFont(WindowHandle dialog, int id, std::string_view face, int height, int weight);
bool IsItemChecked(WindowHandle dialog, int id);
void CheckItem(WindowHandle dialog, int id, bool checked);  // a radio button unchecks the others of its group
Rect ItemRect(WindowHandle dialog, int id);                 // client coordinates of the dialog
void MoveItem(WindowHandle dialog, int id, const Rect& bounds);
// The height at which a multi-line edit shows its whole text at its present width; 0 for other controls.
int ItemTextHeight(WindowHandle dialog, int id);
int DialogUnitsX(WindowHandle dialog, int units);
int DialogUnitsY(WindowHandle dialog, int units);

// List boxes and combo boxes share these. Indexes from 0; -1: none. A sorted box places added rows itself.
int AddRow(WindowHandle dialog, int id, std::string_view text, std::intptr_t data = 0);
void RemoveRow(WindowHandle dialog, int id, int index);
void ClearRows(WindowHandle dialog, int id);
int RowCount(WindowHandle dialog, int id);
std::string RowText(WindowHandle dialog, int id, int index);
// What a screen reader says for a row that is drawn by the dialog and has no text.
void NameRow(WindowHandle dialog, int id, int index, std::string_view name);
void SetRowText(WindowHandle dialog, int id, int index, std::string_view text);
std::intptr_t RowData(WindowHandle dialog, int id, int index);
int SelectedRow(WindowHandle dialog, int id);
void SelectRow(WindowHandle dialog, int id, int index);
int SelectRowByPrefix(WindowHandle dialog, int id,
                      std::string_view prefix);  // first row that begins with it, any case; -1

// Owner-drawn rows: kWmMeasureItem and kWmDrawItem reach the dialog with these in lParam.
struct MeasureItemInfo {
    int controlId = 0;
    int height = 0;  // set by the handler
};
enum DrawAction : int { kDrawEntire = 1, kDrawSelect = 2, kDrawFocus = 4 };
struct DrawItemInfo {
    int controlId = 0;
    int index = -1;
    int action = kDrawEntire;
    bool selected = false;
    DeviceContext* dc = nullptr;
    Rect area;
    std::string text;
    std::intptr_t data = 0;
};

}  // namespace jotlet
