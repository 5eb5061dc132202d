// Commands of the notes pane, as menus, keys and the tool bar send them.
#pragma once

namespace jotlet {

inline constexpr int kCommandNewNote = 1001;
inline constexpr int kCommandEditNote = 1002;
inline constexpr int kCommandDeleteNote = 1003;
inline constexpr int kCommandFind = 1004;
inline constexpr int kCommandUndoDelete = 1023;
inline constexpr int kCommandCut = 1024;
inline constexpr int kCommandCopy = 1025;
inline constexpr int kCommandPaste = 1026;
inline constexpr int kCommandInternetEvents = 1027;
inline constexpr int kCommandOpenAttachment = 1033;
// From the board's own keys alone: Ctrl+D and Ctrl+Shift+D.
inline constexpr int kCommandMoveToDay = 1043;
inline constexpr int kCommandCopyToDay = 1044;
inline constexpr int kCommandTyped = 1045;  // a character, in lParam: on to the first title that begins with it

// Texts of the string table that the commands say.
inline constexpr int kNoPermissionString = 102;
inline constexpr int kAskDeleteNoteString = 105;
inline constexpr int kBeingEditedString = 106;
inline constexpr int kAskNotifyString = 111;

}  // namespace jotlet
