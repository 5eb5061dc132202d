// The program's command numbers, as menus, keys, bars and panes send them.
#pragma once

namespace jotlet {

// Codes of the accelerator table, which the frame turns into what stands below.
inline constexpr int kCommandKeyNew = 100;
inline constexpr int kCommandKeyFind = 101;
inline constexpr int kCommandKeyNewFile = 102;
inline constexpr int kCommandKeyOpenFile = 103;
inline constexpr int kCommandKeyPrintReport = 104;
inline constexpr int kCommandKeyHelp = 105;
inline constexpr int kCommandKeyFileMenu = 106;
inline constexpr int kCommandKeyHelpMenu = 107;
inline constexpr int kCommandKeyShowFirstPane = 108;
inline constexpr int kCommandKeyShowSecondPane = 109;
inline constexpr int kCommandKeyCut = 110;
inline constexpr int kCommandKeyCopy = 111;
inline constexpr int kCommandKeyPaste = 112;
inline constexpr int kCommandKeyUndoDelete = 113;
inline constexpr int kCommandKeyOpenAttachment = 114;
inline constexpr int kCommandKeyReturn = 115;
inline constexpr int kCommandKeyDelete = 116;

inline constexpr int kCommandShowPane = 1000;  // lParam: the index of the pane
inline constexpr int kCommandNewNote = 1001;
inline constexpr int kCommandEditNote = 1002;
inline constexpr int kCommandDeleteNote = 1003;
inline constexpr int kCommandFind = 1004;
inline constexpr int kCommandFileMenu = 1005;
inline constexpr int kCommandNewFile = 1006;
inline constexpr int kCommandOpenFile = 1007;
inline constexpr int kCommandOptions = 1009;
inline constexpr int kCommandPasswords = 1010;
inline constexpr int kCommandCompact = 1011;
inline constexpr int kCommandExit = 1012;
inline constexpr int kCommandContacts = 1013;
inline constexpr int kCommandHelpMenu = 1014;
inline constexpr int kCommandAbout = 1016;
inline constexpr int kCommandUndoDelete = 1023;
inline constexpr int kCommandCut = 1024;
inline constexpr int kCommandCopy = 1025;
inline constexpr int kCommandPaste = 1026;
inline constexpr int kCommandInternetEvents = 1027;
inline constexpr int kCommandServerSetup = 1028;
inline constexpr int kCommandSaveAs = 1031;
inline constexpr int kCommandSuiteWeb = 1032;
inline constexpr int kCommandOpenAttachment = 1033;
inline constexpr int kCommandEmptyBin = 1034;  // the bin's menu
inline constexpr int kCommandBinUndo = 1035;   // the bin's menu
inline constexpr int kCommandPrintReport = 1036;
inline constexpr int kCommandImport = 1037;
inline constexpr int kCommandExport = 1038;
inline constexpr int kCommandHelpContents = 1039;
inline constexpr int kCommandOffer = 1040;
inline constexpr int kCommandCompanyWeb = 1041;
inline constexpr int kCommandSkins = 1042;
inline constexpr int kCommandMoveToDay = 1043;  // the board's own keys: Ctrl+D
inline constexpr int kCommandCopyToDay = 1044;  // Ctrl+Shift+D
inline constexpr int kCommandTyped = 1045;      // a character, in lParam: on to the first title that begins with it
inline constexpr int kCommandWhoHasFile = 1049;

// A skin of the menu, by its place in the list.
inline constexpr int kCommandFirstSkin = 1500;
inline constexpr int kCommandLastSkin = 1999;

}  // namespace jotlet
