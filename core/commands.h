// The program's command numbers, as menus, keys, bars and panes send them.
#pragma once

namespace jotlet {

enum Command : int {
    kCmdFirstKey = 100,  // codes of the accelerator table
    kCmdLastKey = 116,
    kCmdKeyCut = 110,
    kCmdKeyShowSecondPane = 109,
    kCmdKeyReturn = 115,

    kCmdShowPane = 1000,
    kCmdNewNote = 1001,
    kCmdEditNote = 1002,
    kCmdDeleteNote = 1003,
    kCmdFind = 1004,
    kCmdFileMenu = 1005,
    kCmdNewFile = 1006,
    kCmdOpenFile = 1007,
    kCmdOptions = 1009,
    kCmdPasswords = 1010,
    kCmdCompact = 1011,
    kCmdExit = 1012,
    kCmdContacts = 1013,
    kCmdHelpMenu = 1014,
    kCmdAbout = 1016,
    kCmdUndoDelete = 1023,
    kCmdCut = 1024,
    kCmdCopy = 1025,
    kCmdPaste = 1026,
    kCmdEvents = 1027,
    kCmdServerSetup = 1028,
    kCmdSaveAs = 1031,
    kCmdSuiteWeb = 1032,
    kCmdOpenAttachment = 1033,
    kCmdPrintReport = 1036,
    kCmdImport = 1037,
    kCmdExport = 1038,
    kCmdHelpContents = 1039,
    kCmdOffer = 1040,
    kCmdCompanyWeb = 1041,
    kCmdSkins = 1042,
    kCmdWhoHasFile = 1049,

    kCmdFirstSkin = 1500,
    kCmdLastSkin = 1999,
};

}  // namespace jotlet
