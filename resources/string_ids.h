// The numbers of the program's texts that somebody asks for (string_table.h has the texts).
#pragma once

namespace jotlet {

inline constexpr int kStringIntro = 100;
inline constexpr int kStringPasswordsDiffer = 101;
inline constexpr int kStringNoPermission = 102;
inline constexpr int kStringWrongPassword = 103;
inline constexpr int kStringAskDeleteCategory = 104;
inline constexpr int kStringAskDeleteNote = 105;
inline constexpr int kStringBeingEdited = 106;
inline constexpr int kStringDateOrder = 107;
inline constexpr int kStringAskDeleteContact = 108;
inline constexpr int kStringItemPut = 110;
inline constexpr int kStringAskNotify = 111;
inline constexpr int kStringFileExists = 113;
inline constexpr int kStringCannotMakeFile = 114;

// Menus of the board.
inline constexpr int kStringCut = 117;
inline constexpr int kStringCopy = 118;
inline constexpr int kStringPaste = 119;
inline constexpr int kStringNewNote = 120;
inline constexpr int kStringEditNote = 121;
inline constexpr int kStringDeleteNote = 122;
inline constexpr int kStringInternetEvents = 123;
inline constexpr int kStringUndoDelete = 140;
inline constexpr int kStringOpenAttachment = 142;

// Twelve months, seven days and their letters from here on; a week begins with Sunday.
inline constexpr int kStringFirstMonth = 2010;
inline constexpr int kStringFirstDay = 2022;
inline constexpr int kStringFirstDayLetter = 2037;

// Tool bar.
inline constexpr int kStringBarNew = 3000;
inline constexpr int kStringBarEdit = 3001;
inline constexpr int kStringBarDelete = 3002;
inline constexpr int kStringBarFind = 3003;
inline constexpr int kStringBarFile = 3004;
inline constexpr int kStringBarHelp = 3005;

// Menus of the frame.
inline constexpr int kStringNewFile = 3006;
inline constexpr int kStringOpenFile = 3007;
inline constexpr int kStringOptions = 3008;
inline constexpr int kStringPasswords = 3009;
inline constexpr int kStringExit = 3010;
inline constexpr int kStringHelpContents = 3011;
inline constexpr int kStringAbout = 3012;
inline constexpr int kStringCompact = 3013;
inline constexpr int kStringContacts = 3014;
inline constexpr int kStringServerSetup = 3016;
inline constexpr int kStringSaveAs = 3019;
inline constexpr int kStringImport = 3050;
inline constexpr int kStringExport = 3051;
inline constexpr int kStringPrintReport = 3052;

// The example notes' titles and texts.
inline constexpr int kStringExampleSameTitle = 4018;
inline constexpr int kStringExampleSameText = 4019;
inline constexpr int kStringExampleColoursTitle = 4020;
inline constexpr int kStringExampleColoursText = 4021;
inline constexpr int kStringExampleAlarmTitle = 4022;
inline constexpr int kStringExampleAlarmText = 4023;
inline constexpr int kStringExampleTextsTitle = 4024;
inline constexpr int kStringExampleTextsText = 4025;

}  // namespace jotlet
