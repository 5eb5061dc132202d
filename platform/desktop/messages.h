// The messages that windows receive: four words and their numbers.
#pragma once

#include <cstdint>

#include "platform/desktop/geometry.h"
#include "resources/dialog_ids.h"  // kIdOk, kIdCancel

namespace jotlet {

// A window, by a number that is never given out twice in a process: a stale handle is harmless. 0: no window.
using WindowHandle = std::uintptr_t;

// Parameters are as wide as a pointer, for the messages that carry one.
using MessageParam = std::intptr_t;

struct WndMessage {
    WindowHandle window = 0;
    std::uint32_t message = 0;
    // In a command: control or command id in the low 16 bits, notification code in the high 16 bits.
    MessageParam wParam = 0;
    // In a client-area mouse message: x in the low 16 bits, y in the high 16 bits, signed, in client pixels.
    MessageParam lParam = 0;
};

constexpr int LowWord(MessageParam v)
{
    return static_cast<int>(v & 0xFFFF);
}
constexpr int HighWord(MessageParam v)
{
    return static_cast<int>(v >> 16 & 0xFFFF);
}
constexpr MessageParam MakeParam(int low, int high)
{
    return static_cast<MessageParam>(static_cast<std::uint32_t>(low & 0xFFFF) |
                                     static_cast<std::uint32_t>(high & 0xFFFF) << 16);
}
// The point of a mouse message; coordinates may be negative under capture.
constexpr Point MousePoint(const WndMessage& m)
{
    return {static_cast<std::int16_t>(LowWord(m.lParam)), static_cast<std::int16_t>(HighWord(m.lParam))};
}

// Message numbers. Fixed; widgets of other processes' copies never see them, but commands and tests do.
enum Message : std::uint32_t {
    kWmCreate = 1,
    kWmDestroy = 2,
    kWmMove = 3,
    kWmSize = 5,
    kWmActivate = 6,
    kWmSetFocus = 7,
    kWmKillFocus = 8,
    kWmEnable = 10,
    kWmSetText = 12,
    kWmPaint = 15,
    kWmClose = 16,
    kWmQuit = 18,
    kWmEraseBkgnd = 20,
    kWmTimeChange = 30,
    kWmSetCursor = 32,
    kWmGetMinMaxInfo = 36,
    kWmDrawItem = 43,
    kWmMeasureItem = 44,
    kWmDescribe = 61,  // lParam: AccessibleDescription* to fill (platform/desktop/accessible.h)
    kWmSetValue = 62,  // lParam: const double*, what a reader sets a slider to (AccessibleValue)
    kWmNcHitTest = 132,
    kWmNcPaint = 133,
    kWmNcActivate = 134,
    kWmNcLButtonDown = 161,
    kWmNcLButtonUp = 162,
    kWmNcLButtonDblClk = 163,
    kWmNcRButtonDown = 164,
    kWmNcRButtonUp = 165,
    kWmKeyDown = 256,
    kWmKeyUp = 257,
    kWmChar = 258,
    kWmSysKeyDown = 260,
    kWmSysKeyUp = 261,
    kWmInitDialog = 272,
    kWmCommand = 273,
    kWmSysCommand = 274,
    kWmTimer = 275,
    kWmCtlColorMsgBox = 306,
    kWmCtlColorEdit = 307,
    kWmCtlColorListBox = 308,
    kWmCtlColorBtn = 309,
    kWmCtlColorDlg = 310,
    kWmCtlColorStatic = 312,
    kWmMouseMove = 512,
    kWmLButtonDown = 513,
    kWmLButtonUp = 514,
    kWmLButtonDblClk = 515,
    kWmRButtonDown = 516,
    kWmRButtonUp = 517,
    kWmMouseWheel = 522,
    kWmCaptureLost = 533,  // the mouse that was captured or pressed here is somebody else's now; no release follows
    kWmQueryNewPalette = 783,
    kWmPaletteChanged = 785,
    kWmCreated = 4000,  // posted once to each new window
};

// Flags in wParam of client-area mouse messages.
inline constexpr MessageParam kMouseLeft = 1;
inline constexpr MessageParam kMouseRight = 2;
inline constexpr MessageParam kMouseShift = 4;
inline constexpr MessageParam kMouseControl = 8;

// Virtual keys, in wParam of key messages. Letters and digits are their upper-case ASCII codes.
enum VirtualKey : int {
    kKeyBack = 8,
    kKeyTab = 9,
    kKeyReturn = 13,
    kKeyShift = 16,
    kKeyControl = 17,
    kKeyAlt = 18,
    kKeyEscape = 27,
    kKeySpace = 32,
    kKeyPageUp = 33,
    kKeyPageDown = 34,
    kKeyEnd = 35,
    kKeyHome = 36,
    kKeyLeft = 37,
    kKeyUp = 38,
    kKeyRight = 39,
    kKeyDown = 40,
    kKeyInsert = 45,
    kKeyDelete = 46,
    kKeyMenu = 93,  // the context-menu key; Shift+F10 arrives as it too
    kKeyF1 = 112,
};

// Window styles.
inline constexpr std::uint32_t kStyleChild = 0x40000000;
inline constexpr std::uint32_t kStyleVisible = 0x10000000;
inline constexpr std::uint32_t kStyleBorder = 0x00800000;
inline constexpr std::uint32_t kStyleTabStop = 0x00010000;                   // child of a dialog: Tab stops at it
inline constexpr std::uint32_t kStyleDefault = kStyleChild | kStyleVisible;  // 0x50000000
inline constexpr std::uint32_t kStyleOverlapped = 0x00CF0000;  // top-level frame that paints its own margin

// Window class styles.
inline constexpr std::uint32_t kClassVRedraw = 1;
inline constexpr std::uint32_t kClassDblClks = 8;
inline constexpr std::uint32_t kClassSaveBits = 2048;

// Answers to kWmNcHitTest.
enum HitTest : int {
    kHitNowhere = 0,
    kHitClient = 1,
    kHitCaption = 2,
    kHitLeft = 10,
    kHitRight = 11,
    kHitTop = 12,
    kHitTopLeft = 13,
    kHitTopRight = 14,
    kHitBottom = 15,
    kHitBottomLeft = 16,
    kHitBottomRight = 17,
    kHitBorder = 18,
};

// wParam of kWmSysCommand.
inline constexpr int kSysSize = 61440;  // + 8: from the bottom right corner
inline constexpr int kSysMove = 61456;  // + 2: by the caption
inline constexpr int kSysMinimize = 61472;
inline constexpr int kSysMaximize = 61488;
inline constexpr int kSysClose = 61536;
inline constexpr int kSysMouseMenu = 61584;
inline constexpr int kSysKeyMenu = 61696;
inline constexpr int kSysRestore = 61728;

// kWmGetMinMaxInfo: lParam points to this; whole window, margin included.
struct MinMaxInfo {
    Size minTrack;
    Size maxTrack;
};

// Notification codes of stock controls, in the high half of a command's wParam.
inline constexpr int kButtonClicked = 0;
inline constexpr int kListSelectionChanged = 1;
inline constexpr int kListDoubleClick = 2;
inline constexpr int kComboSelectionChanged = 1;
inline constexpr int kComboEditChanged = 5;
inline constexpr int kEditChanged = 0x300;

}  // namespace jotlet
