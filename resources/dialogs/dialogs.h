// The sets of dialog templates, one file a subject. A new set is declared and listed here.
#pragma once

#include <array>
#include <span>

#include "resources/dialog_template.h"

namespace jotlet {

std::span<const DialogTemplate> FrameDialogs();        // splash, about, progress, skins
std::span<const DialogTemplate> DocumentDialogs();     // new file, passwords, options
std::span<const DialogTemplate> NoteDialogs();         // editor, attachment, categories
std::span<const DialogTemplate> AlarmDialogs();        // alarm, fired alarm, date, time
std::span<const DialogTemplate> FindDialogs();         // find
std::span<const DialogTemplate> InterchangeDialogs();  // report, export, import
std::span<const DialogTemplate> NetDialogs();          // events, server, contact book

inline constexpr std::array<std::span<const DialogTemplate> (*)(), 7> kDialogSets = {
    FrameDialogs, DocumentDialogs, NoteDialogs, AlarmDialogs, FindDialogs, InterchangeDialogs, NetDialogs,
};

}  // namespace jotlet
