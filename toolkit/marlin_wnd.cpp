#include "toolkit/marlin_wnd.h"

#include <algorithm>
#include <array>
#include <utility>

namespace jotlet {
namespace {

// Hands the object to a window that does not exist yet; taken at the window's first message.
MarlinWnd* underCreation = nullptr;

using Handler = MessageParam (MarlinWnd::*)(WndMessage&);
struct Route {
    std::uint32_t message;
    Handler handler;
};

// In the order of the message numbers, for the binary search.
constexpr std::array kRoutes = {
    Route{kWmCreate, &MarlinWnd::OnCreate},
    Route{kWmDestroy, &MarlinWnd::OnDestroy},
    Route{kWmSize, &MarlinWnd::OnSize},
    Route{kWmActivate, &MarlinWnd::OnActivate},
    Route{kWmSetText, &MarlinWnd::OnSetText},
    Route{kWmClose, &MarlinWnd::OnClose},
    Route{kWmEraseBkgnd, &MarlinWnd::OnEraseBkgnd},
    Route{kWmTimeChange, &MarlinWnd::OnTimeChange},
    Route{kWmSetCursor, &MarlinWnd::OnSetCursor},
    Route{kWmGetMinMaxInfo, &MarlinWnd::OnGetMinMaxInfo},
    Route{kWmNcHitTest, &MarlinWnd::OnNcHitTest},
    Route{kWmNcPaint, &MarlinWnd::OnNcPaint},
    Route{kWmNcActivate, &MarlinWnd::OnNcActivate},
    Route{kWmNcLButtonDown, &MarlinWnd::OnNcLButtonDown},
    Route{kWmNcLButtonUp, &MarlinWnd::OnNcLButtonUp},
    Route{kWmNcLButtonDblClk, &MarlinWnd::OnNcLButtonDblClk},
    Route{kWmNcRButtonDown, &MarlinWnd::OnNcRButtonDown},
    Route{kWmNcRButtonUp, &MarlinWnd::OnNcRButtonUp},
    Route{kWmKeyDown, &MarlinWnd::OnKeyDown},
    Route{kWmKeyUp, &MarlinWnd::OnKeyUp},
    Route{kWmChar, &MarlinWnd::OnChar},
    Route{kWmSysKeyDown, &MarlinWnd::OnSysKeyDown},
    Route{kWmSysKeyUp, &MarlinWnd::OnSysKeyUp},
    Route{kWmCommand, &MarlinWnd::OnCommand},
    Route{kWmSysCommand, &MarlinWnd::OnSysCommand},
    Route{kWmCtlColorMsgBox, &MarlinWnd::OnCtlColorMsgBox},
    Route{kWmCtlColorEdit, &MarlinWnd::OnCtlColorEdit},
    Route{kWmCtlColorListBox, &MarlinWnd::OnCtlColorListBox},
    Route{kWmCtlColorBtn, &MarlinWnd::OnCtlColorBtn},
    Route{kWmCtlColorDlg, &MarlinWnd::OnCtlColorDlg},
    Route{kWmCtlColorStatic, &MarlinWnd::OnCtlColorStatic},
    Route{kWmMouseMove, &MarlinWnd::OnMouseMove},
    Route{kWmLButtonDown, &MarlinWnd::OnLButtonDown},
    Route{kWmLButtonUp, &MarlinWnd::OnLButtonUp},
    Route{kWmLButtonDblClk, &MarlinWnd::OnLButtonDblClk},
    Route{kWmRButtonDown, &MarlinWnd::OnRButtonDown},
    Route{kWmRButtonUp, &MarlinWnd::OnRButtonUp},
    Route{kWmMouseWheel, &MarlinWnd::OnMouseWheel},
    Route{kWmQueryNewPalette, &MarlinWnd::OnQueryNewPalette},
    Route{kWmPaletteChanged, &MarlinWnd::OnPaletteChanged},
    Route{kWmCreated, &MarlinWnd::OnCreated},
};
static_assert(std::is_sorted(kRoutes.begin(), kRoutes.end(),
                             [](const Route& a, const Route& b) { return a.message < b.message; }));

}  // namespace

MessageParam ToolkitProcedure(WindowHandle handle, std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    auto* object = static_cast<MarlinWnd*>(UserWord(handle));
    if (!object) {
        if (!underCreation)
            return DefaultProcedure(handle, message, wParam, lParam);
        object = std::exchange(underCreation, nullptr);
        SetUserWord(handle, object);
        object->window = handle;
    }
    WndMessage record{handle, message, wParam, lParam};
    return object->Dispatch(record);
}

MarlinWnd::~MarlinWnd()
{
    if (underCreation == this)
        underCreation = nullptr;
    if (IsWindow(window))
        DestroyNativeWindow(window);
    if (IsWindow(window))  // still inside one of its own handlers: what comes now must not find this object
        SetUserWord(window, nullptr);
}

int MarlinWnd::Create(MarlinWnd* parent, long style)
{
    underCreation = this;
    CreateParameters parameters;
    if (style != -1)
        parameters.style = static_cast<std::uint32_t>(style);
    WindowClass windowClass;
    windowClass.procedure = ToolkitProcedure;
    PrepareClass(windowClass);
    if (!IsClassRegistered(windowClass.name))
        RegisterWindowClass(windowClass);
    PrepareCreate(parameters);
    TabStops stops;
    CollectTabStops(stops);
    if (std::ranges::find(stops, this) != stops.end())
        parameters.style |= kStyleTabStop;

    const Rect bounds = Rect::At(parameters.x, parameters.y, parameters.width, parameters.height);
    const WindowHandle made =
        CreateNativeWindow(windowClass.name, parameters.title, parameters.style, bounds, parent ? parent->window : 0);
    if (!made) {
        if (underCreation == this)
            underCreation = nullptr;
        return 0;
    }
    PostTo(made, kWmCreated, 0, 0);
    return 1;
}

MarlinWnd* MarlinWnd::FromHandle(WindowHandle handle)
{
    return IsWindow(handle) ? static_cast<MarlinWnd*>(UserWord(handle)) : nullptr;
}

WindowHandle MarlinWnd::GetParentHandle() const
{
    return ParentOf(window);
}

MarlinWnd* MarlinWnd::GetParentWnd() const
{
    return FromHandle(GetParentHandle());
}

MessageParam MarlinWnd::Dispatch(WndMessage& record)
{
    switch (record.message) {
        case kWmPaint:
            return DispatchPaint(record);
        case kWmTimer:
            return DispatchTimer(record);
        case kWmSetFocus:
        case kWmKillFocus:
            OnFocusChanged(record.message == kWmSetFocus);
            return DefaultHandler(record);
        case kWmKeyDown:
            if (record.wParam == kKeyTab && !IsKeyDown(kKeyControl) && MoveFocusByTab(*this, IsKeyDown(kKeyShift)))
                return 0;
            break;
        case kWmSetValue:
            OnSetValue(*reinterpret_cast<const double*>(record.lParam));
            return 1;
        case kWmDescribe:
            Describe(*reinterpret_cast<AccessibleDescription*>(record.lParam));
            return 1;
        case kWmCaptureLost:
            OnCaptureLost();
            return 0;
        default:
            break;
    }
    const auto route = std::lower_bound(kRoutes.begin(), kRoutes.end(), record.message,
                                        [](const Route& r, std::uint32_t message) { return r.message < message; });
    if (route != kRoutes.end() && route->message == record.message)
        return (this->*route->handler)(record);
    return DefaultHandler(record);
}

MessageParam MarlinWnd::DispatchPaint(WndMessage& record)
{
    const auto* paint = reinterpret_cast<const PaintInfo*>(record.lParam);
    OnPaint(*paint->dc, *paint);
    return 0;
}

MessageParam MarlinWnd::DispatchTimer(WndMessage& record)
{
    return record.window == window ? OnTimer(record) : 0;
}

MessageParam MarlinWnd::DefaultHandler(WndMessage& record)
{
    return DefaultProcedure(record.window, record.message, record.wParam, record.lParam);
}

MessageParam MarlinWnd::OnSysCommand(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnEraseBkgnd(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnSetCursor(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnMouseWheel(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnGetMinMaxInfo(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnNcLButtonDblClk(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnNcLButtonDown(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnNcRButtonDown(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnNcRButtonUp(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnNcLButtonUp(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnNcHitTest(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnNcPaint(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnNcActivate(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnSetText(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnCtlColorDlg(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnCtlColorEdit(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnCtlColorMsgBox(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnCtlColorListBox(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnCtlColorStatic(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnCtlColorBtn(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnChar(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnSysKeyDown(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnSysKeyUp(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnKeyUp(WndMessage& record)
{
    return DefaultHandler(record);
}
MessageParam MarlinWnd::OnKeyDown(WndMessage& record)
{
    if (record.wParam == kKeyTab && MoveFocusByTab(*this, IsKeyDown(kKeyShift)))
        return 0;
    return DefaultHandler(record);
}

void MarlinWnd::Move(int x, int y, int width, int height, int repaint)
{
    if (width == -1 && height == -1 && repaint == -1) {
        const Rect size = WindowRect(window);
        MoveTo(window, Rect::At(x, y, size.Width(), size.Height()), true);
        return;
    }
    MoveTo(window, Rect::At(x, y, width, height), repaint != 0);
}

void MarlinWnd::Invalidate(const Rect* area, int erase)
{
    InvalidateArea(window, area, erase != 0);
}

void MarlinWnd::RepaintNow()
{
    DrawOutsidePaint(window, [this](DeviceContext& dc) { OnPaint(dc, PaintInfo{}); });
}

void MarlinWnd::PostRecord(const WndMessage& record)
{
    PostTo(record.window, record.message, record.wParam, record.lParam);
}

void MarlinWnd::Post(std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    PostTo(window, message, wParam, lParam);
}

MessageParam MarlinWnd::SendRecord(const WndMessage& record)
{
    return SendTo(record.window, record.message, record.wParam, record.lParam);
}

MessageParam MarlinWnd::Send(std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    return SendTo(window, message, wParam, lParam);
}

Rect MarlinWnd::GetClientArea() const
{
    return ClientRect(window);
}

void MarlinWnd::Close()
{
    const WindowHandle closing = window;
    Send(kWmClose, 0, 0);
    DestroyNativeWindow(closing);
}

void MarlinWnd::Hide()
{
    ShowNative(window, false);
}

void MarlinWnd::Show()
{
    ShowNative(window, true);
}

void MarlinWnd::Update()
{
    UpdateNow(window);
}

MessageParam MarlinWnd::SendCommand(int id, MessageParam lParam, int notification)
{
    return SendTo(GetParentHandle(), kWmCommand, MakeParam(id, notification), lParam);
}

void MarlinWnd::PostCommand(int id, MessageParam lParam, int notification)
{
    PostTo(GetParentHandle(), kWmCommand, MakeParam(id, notification), lParam);
}

void MarlinWnd::RequestCommand(int id, MessageParam lParam, int notification)
{
    PostRequest(GetParentHandle(), kWmCommand, MakeParam(id, notification), lParam);
}

}  // namespace jotlet
