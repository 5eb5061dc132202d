// MarlinWnd: the base of every window of the program. It turns the stream of messages into calls of virtual operations.
//
// A subclass replaces the operations it cares about; where it wants the inherited behaviour it calls the parent class's
// by name, or DefaultHandler. There is no message map. Handlers get the record and return the message's result.
//
// Owns:    the window. The owner of the object constructs it, calls Create in its own OnCreate, places it with Move in
// its
//          OnSize, and destroys the object itself. A window can be gone while its object lives on: `window` is then
//          stale, and every operation here is harmless.
// Threads: one. A Send runs the handler on the caller's stack, so a handler can be entered again from within itself.
#pragma once

#include <string>

#include "platform/desktop/accessible.h"
#include "platform/desktop/device_context.h"
#include "platform/desktop/native_window.h"
#include "toolkit/focus_order.h"

namespace jotlet {

// What a window is created from; a subclass changes it in PrepareCreate. All 0 and empty before that.
struct CreateParameters {
    std::string title;
    std::uint32_t style = kStyleDefault;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

class MarlinWnd {
public:
    MarlinWnd() = default;
    // Destroys the window if there still is one; what that delivers meets the operations of this base class only.
    virtual ~MarlinWnd();
    MarlinWnd(const MarlinWnd&) = delete;
    MarlinWnd& operator=(const MarlinWnd&) = delete;

    // The platform's handle; 0 until the window exists. Valid from the first message on, before OnCreate.
    WindowHandle window = 0;

    // `style`: a window style, or -1 for a visible child. 1, or 0 when the platform refuses the window. OnCreated
    // follows once the message loop is served.
    int Create(MarlinWnd* parent, long style = -1);

    // The object of a window, or null when the handle is not a window of this toolkit.
    static MarlinWnd* FromHandle(WindowHandle handle);
    WindowHandle GetParentHandle() const;
    MarlinWnd* GetParentWnd() const;

    // Before creation.
    virtual void PrepareClass(WindowClass&) {}
    virtual void PrepareCreate(CreateParameters&) {}

    // Life.
    virtual MessageParam OnCreate(WndMessage&) { return 0; }
    virtual MessageParam OnCreated(WndMessage&) { return 0; }
    virtual MessageParam OnClose(WndMessage&) { return 0; }
    virtual MessageParam OnDestroy(WndMessage&) { return 0; }

    // Maps a record to an operation below; anything else goes to DefaultHandler.
    virtual MessageParam Dispatch(WndMessage& record);
    virtual MessageParam DefaultHandler(WndMessage& record);

    // Those written with a body do nothing by default; the others pass on to DefaultHandler.
    virtual MessageParam OnCommand(WndMessage&) { return 0; }
    virtual MessageParam OnSysCommand(WndMessage&);
    virtual void OnPaint(DeviceContext&, const PaintInfo&) {}
    virtual MessageParam OnEraseBkgnd(WndMessage&);
    virtual MessageParam OnTimer(WndMessage&) { return 0; }
    virtual MessageParam OnSetCursor(WndMessage&);
    virtual MessageParam OnSize(WndMessage&) { return 0; }
    virtual MessageParam OnMouseMove(WndMessage&) { return 0; }
    virtual MessageParam OnLButtonUp(WndMessage&) { return 0; }
    virtual MessageParam OnLButtonDblClk(WndMessage&) { return 0; }
    virtual MessageParam OnLButtonDown(WndMessage&) { return 0; }
    virtual MessageParam OnRButtonUp(WndMessage&) { return 0; }
    virtual MessageParam OnRButtonDown(WndMessage&) { return 0; }
    virtual MessageParam OnMouseWheel(WndMessage&);  // high half of wParam: signed delta
    virtual MessageParam OnGetMinMaxInfo(WndMessage&);
    virtual MessageParam OnNcLButtonDblClk(WndMessage&);
    virtual MessageParam OnNcLButtonDown(WndMessage&);
    virtual MessageParam OnNcRButtonDown(WndMessage&);
    virtual MessageParam OnNcRButtonUp(WndMessage&);
    virtual MessageParam OnNcLButtonUp(WndMessage&);
    virtual MessageParam OnNcHitTest(WndMessage&);
    virtual MessageParam OnNcPaint(WndMessage&);
    virtual MessageParam OnNcActivate(WndMessage&);
    virtual MessageParam OnSetText(WndMessage&);
    virtual MessageParam OnCtlColorDlg(WndMessage&);
    virtual MessageParam OnCtlColorEdit(WndMessage&);
    virtual MessageParam OnCtlColorMsgBox(WndMessage&);
    virtual MessageParam OnCtlColorListBox(WndMessage&);
    virtual MessageParam OnCtlColorStatic(WndMessage&);
    virtual MessageParam OnCtlColorBtn(WndMessage&);
    virtual MessageParam OnPaletteChanged(WndMessage&) { return 0; }
    virtual MessageParam OnQueryNewPalette(WndMessage&) { return 0; }
    virtual MessageParam OnChar(WndMessage&);
    virtual MessageParam OnSysKeyDown(WndMessage&);
    virtual MessageParam OnSysKeyUp(WndMessage&);
    virtual MessageParam OnKeyUp(WndMessage&);
    virtual MessageParam OnKeyDown(WndMessage&);  // wParam: virtual key
    virtual MessageParam OnActivate(WndMessage&) { return 0; }
    virtual MessageParam OnTimeChange(WndMessage&) { return 0; }

    // Operations on the window. Move with width, height and repaint all -1 keeps the size and repaints.
    virtual void Move(int x, int y, int width, int height, int repaint);
    virtual void Invalidate(const Rect* area, int erase);
    // Calls OnPaint at once, outside the paint cycle; the paint information then holds nothing of use.
    virtual void RepaintNow();
    virtual void PostRecord(const WndMessage& record);
    virtual void Post(std::uint32_t message, MessageParam wParam, MessageParam lParam);
    virtual MessageParam SendRecord(const WndMessage& record);
    virtual MessageParam Send(std::uint32_t message, MessageParam wParam, MessageParam lParam);
    virtual Rect GetClientArea() const;
    virtual void Close();  // OnClose, then the window is destroyed
    virtual void Hide();
    virtual void Show();
    virtual void Update();

    // Focus came or went, for windows that show it.
    virtual void OnFocusChanged(bool /*focused*/) {}
    // The mouse that was captured or pressed here is a modal window's now; no release follows. What was held is over,
    // without effect.
    virtual void OnCaptureLost() {}
    // What a screen reader finds here; leave it empty for windows that say nothing.
    virtual void Describe(AccessibleDescription&) {}
    // A screen reader sets the value that Describe told.
    virtual void OnSetValue(double) {}
    // Adds the windows that Tab reaches here, in reading order: itself when it takes the keyboard, or those it holds.
    virtual void CollectTabStops(TabStops&) {}
    // Whether Return is this window's own key while it has the focus, and not the frame's command.
    virtual bool UsesReturnKey() const { return false; }

protected:
    // Sends or posts kWmCommand to the parent; `notification` goes to the high half of wParam. Notifications are
    // posted; a command that opens something is a request (platform/desktop/native_window.h).
    MessageParam SendCommand(int id, MessageParam lParam, int notification = 0);
    void PostCommand(int id, MessageParam lParam, int notification = 0);
    void RequestCommand(int id, MessageParam lParam, int notification = 0);

private:
    friend MessageParam ToolkitProcedure(WindowHandle, std::uint32_t, MessageParam, MessageParam);
    MessageParam DispatchPaint(WndMessage& record);
    MessageParam DispatchTimer(WndMessage& record);
};

}  // namespace jotlet
