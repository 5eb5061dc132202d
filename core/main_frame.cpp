#include "core/main_frame.h"

#include <algorithm>
#include <utility>

#include "core/placement.h"
#include "core/process.h"
#include "platform/desktop/application.h"
#include "platform/desktop/message_box.h"
#include "resources/command_ids.h"
#include "resources/string_ids.h"
#include "skin/animations.h"
#include "skin/skin_bitmaps.h"
#include "skin/window_helpers.h"
#include "toolkit/main_window.h"
#include "toolkit/marlin_pane.h"
#include "toolkit/pane_list.h"

namespace jotlet {
namespace {

constexpr int kHoverTimer = 3000;
constexpr Milliseconds kHoverPeriod{100};
constexpr int kIcon = 1000;
// What changes with the pane starts here, in client coordinates.
constexpr int kBelowBars = 73;

struct BarItem {
    int command;
    int icon;
    int text;
    int sendIt;
};
constexpr BarItem kBarItems[] = {
    {kCommandFileMenu, 2000, kStringBarFile, 1}, {kCommandNewNote, 2001, kStringBarNew, 0},
    {kCommandEditNote, 2002, kStringBarEdit, 0}, {kCommandDeleteNote, 2003, kStringBarDelete, 0},
    {kCommandFind, 2004, kStringBarFind, 0},     {kCommandHelpMenu, 2005, kStringBarHelp, 1},
};

}  // namespace

MainFrame::MainFrame(std::string suite) : suiteName(std::move(suite)) {}

MainFrame::~MainFrame() = default;

Size MainFrame::ClientSize() const
{
    const Rect client = GetClientArea();
    return {client.Width(), client.Height()};
}

Size MainFrame::WindowSize() const
{
    const Rect whole = WindowRect(window);
    return {whole.Width(), whole.Height()};
}

void MainFrame::PrepareClass(WindowClass& windowClass)
{
    windowClass.style = kClassDblClks | kClassVRedraw;
    windowClass.cursor = CursorId::None;
    windowClass.background = Background::None;
    windowClass.iconId = kIcon;
    windowClass.name = FrameClassName();
}

void MainFrame::PrepareCreate(CreateParameters& parameters)
{
    parameters.title = suiteName;
    parameters.style = kStyleOverlapped;
    parameters.x = kUseDefault;
    parameters.y = kUseDefault;
    parameters.width = kFrameSmall.width;
    parameters.height = kFrameSmall.height;
    if (const auto saved = SavedPlacement(DesktopRect)) {
        parameters.x = saved->left;
        parameters.y = saved->top;
        parameters.width = saved->Width();
        parameters.height = saved->Height();
    }
}

MessageParam MainFrame::OnCreate(WndMessage&)
{
    SetMainWindow(window);
    toolBar = std::make_unique<MarlinToolBar>();
    for (const BarItem& item : kBarItems)
        toolBar->AddItem(item.command, item.icon, item.text, item.sendIt);
    paneBar = std::make_unique<MarlinPaneBar>();
    toolBar->Create(this);
    paneBar->Create(this);
    cursor = CursorId::Arrow;
    StartTimer(window, kHoverTimer, kHoverPeriod);
    return 0;
}

MessageParam MainFrame::OnClose(WndMessage&)
{
    StorePlacement(WindowRect(window));
    StopTimer(window, kHoverTimer);
    DestroyNativeWindow(window);
    toolBar.reset();
    paneBar.reset();
    FreeSkin();
    return 0;
}

MessageParam MainFrame::OnDestroy(WndMessage&)
{
    SetMainWindow(0);
    QuitLoop(0);
    return 0;
}

MessageParam MainFrame::OnSize(WndMessage&)
{
    const Size client = ClientSize();
    if (paneBar)
        MoveTo(paneBar->window, PaneBarRect(client), false);
    if (toolBar)
        MoveTo(toolBar->window, ToolBarRect(client), false);
    if (const MarlinPane* pane = GetCurrentPane())
        MoveTo(pane->window, PaneRect(client), false);
    const auto shape = FrameShape(WindowSize());
    SetWindowShape(window, shape.data(), static_cast<int>(shape.size()));
    Invalidate(nullptr, 1);
    return 0;
}

MessageParam MainFrame::OnGetMinMaxInfo(WndMessage& record)
{
    auto& limits = *reinterpret_cast<MinMaxInfo*>(record.lParam);
    limits.minTrack = kFrameSmall;
    limits.maxTrack = kFrameLarge;
    return DefaultHandler(record);
}

MessageParam MainFrame::OnEraseBkgnd(WndMessage& record)
{
    reinterpret_cast<DeviceContext*>(record.wParam)->FillRect(GetClientArea(), LoadSkin().colorBack);
    return 1;
}

void MainFrame::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    if (const MarlinPane* pane = GetCurrentPane())
        PaintFrameRings(dc, ClientSize(), pane->colours);
}

void MainFrame::DrawFrame()
{
    if (!IsWindow(window))
        return;
    DrawOnWholeWindow(window,
                      [this](DeviceContext& dc) { PaintFrameMargin(dc, WindowSize(), WindowTitle(window), looks); });
}

MessageParam MainFrame::OnNcPaint(WndMessage&)
{
    DrawFrame();
    return 0;
}

// The frame looks the same active and inactive.
MessageParam MainFrame::OnNcActivate(WndMessage& record)
{
    if (record.wParam)
        Update();
    return 1;
}

MessageParam MainFrame::OnSetText(WndMessage& record)
{
    const MessageParam result = DefaultHandler(record);
    DrawFrame();
    return result;
}

void MainFrame::ShowHelp(int context)
{
    if (context == 0)
        Beep();
}

// The pane with its own stops first: there the user works. Then the bars above it.
void MainFrame::CollectTabStops(TabStops& stops)
{
    if (MarlinPane* pane = GetCurrentPane())
        pane->CollectTabStops(stops);
    if (toolBar)
        toolBar->CollectTabStops(stops);
    if (paneBar)
        paneBar->CollectTabStops(stops);
}

void MainFrame::SwitchPane(int index, Animate animate)
{
    MarlinPane* from = GetCurrentPane();
    if (!from)
        return;
    if (animate == Animate::Yes) {
        Rect area = from->GetClientArea();
        RectToScreen(from->window, area);
        PlayPaneChange(area.Inset(-26, -98, -30, -43), area.Inset(-1, 0, 0, 0));
    }
    if (index < 0 || index >= GetPaneCount())
        index = 0;
    MarlinPane* to = GetPanes()[static_cast<std::size_t>(index)];
    if (!from->CanLeave() || !to->CanEnter())
        return;

    from->Hide();
    SetCurrentPaneIndex(index);
    MoveTo(to->window, PaneRect(ClientSize()));
    to->Show();
    toolBar->Invalidate(nullptr, 1);
    paneBar->Invalidate(nullptr, 1);
    const Rect below = GetClientArea().Inset(0, kBelowBars, 0, 0);
    Invalidate(&below, 0);
    Update();
    FocusWindow(to->window);
    to->OnEntered();
}

}  // namespace jotlet
