// The stock controls of dialogs: the desktop's own widgets, made from a template's entries.
#pragma once

#include <QComboBox>
#include <QListWidget>
#include <QWidget>

#include "platform/desktop/dialog.h"
#include "platform/desktop/qt/native_widget.h"
#include "platform/desktop/qt/window_registry.h"

namespace jotlet {

// What the layer remembers of a control.
struct ControlState {
    ControlKind kind = ControlKind::Text;
    std::uint32_t style = 0;
    // The bytes last put in and how the control then read: while it still reads so, they are what it holds.
    std::string bytes;
    QString reading;
};

inline constexpr int kRowDataRole = Qt::UserRole + 1;
inline constexpr int kRowBytesRole = Qt::UserRole + 2;

// Makes the control, registers its handle and connects its notifications.
WindowHandle MakeControl(NativeWidget& dialog, const ControlTemplate& from);
// Ties labels to the controls they name, and radio buttons to their groups.
void TieControls(NativeWidget& dialog, const DialogTemplate& dialogTemplate, const std::vector<WindowHandle>& controls);
QRect ControlBounds(const NativeWidget& dialog, const ControlTemplate& from);

const WindowEntry* FindItem(WindowHandle dialog, int id);
void NotifyDialog(const QWidget& control, int code);

// Text with its bytes kept.
void PutText(const WindowEntry& entry, std::string_view bytes);
std::string TakeText(const WindowEntry& entry);

// Rows of list boxes and combo boxes alike. Null for other controls.
QAbstractItemModel* RowsOf(const WindowEntry& entry);

int DialogX(const NativeWidget& dialog, int units);
int DialogY(const NativeWidget& dialog, int units);

}  // namespace jotlet
