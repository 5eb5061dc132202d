// MainFrame: the program's main window. It paints its own margin from a skin, keeps itself between two sizes, holds the
// tool bar, the pane bar and the panes, and turns keys and menu picks into commands.
//
// Owns:    its two bars. Not the panes, which its subclass makes.
// Threads: one.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/frame_geometry.h"
#include "core/frame_painter.h"
#include "platform/desktop/menu.h"
#include "skin/table/skin_list.h"
#include "toolkit/marlin_pane_bar.h"
#include "toolkit/marlin_tool_bar.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

enum class Animate { No, Yes };

class MainFrame : public MarlinWnd {
public:
    // `suiteName`: the window's title until a file is open.
    explicit MainFrame(std::string suiteName);
    ~MainFrame() override;

    MarlinToolBar& GetToolBar() { return *toolBar; }
    MarlinPaneBar& GetPaneBar() { return *paneBar; }
    ButtonLook GetButtonLook(CaptionButton button) const { return looks[static_cast<std::size_t>(button)]; }

    // Shows another pane, unless the one that stands or the one that comes refuses. An index outside the list: pane 0.
    void SwitchPane(int index, Animate animate);

    virtual void ShowFileMenu();
    virtual void ShowHelpMenu();
    // All of the margin, painted at once.
    void DrawFrame();
    // A beep when `context` is 0.
    virtual void ShowHelp(int context);

    void PrepareClass(WindowClass& windowClass) override;
    void PrepareCreate(CreateParameters& parameters) override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnClose(WndMessage& record) override;
    MessageParam OnDestroy(WndMessage& record) override;
    MessageParam Dispatch(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnSysCommand(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& info) override;
    MessageParam OnEraseBkgnd(WndMessage& record) override;
    MessageParam OnTimer(WndMessage& record) override;
    MessageParam OnSetCursor(WndMessage& record) override;
    MessageParam OnSize(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnRButtonDown(WndMessage& record) override;
    MessageParam OnGetMinMaxInfo(WndMessage& record) override;
    MessageParam OnNcLButtonDblClk(WndMessage& record) override;
    MessageParam OnNcLButtonDown(WndMessage& record) override;
    MessageParam OnNcRButtonDown(WndMessage& record) override;
    MessageParam OnNcHitTest(WndMessage& record) override;
    MessageParam OnNcPaint(WndMessage& record) override;
    MessageParam OnNcActivate(WndMessage& record) override;
    MessageParam OnSetText(WndMessage& record) override;
    void CollectTabStops(TabStops& stops) override;
    void Describe(AccessibleDescription& description) override;

protected:
    Size ClientSize() const;
    Size WindowSize() const;

private:
    // Caption (main_frame_caption.cpp).
    Rect OnScreen(const Rect& inWindow) const;
    bool CursorOnGrip() const;
    void SetLook(CaptionButton button, ButtonLook look);
    void UpdateHover();
    void UpdateCursor();
    void PressCaptionButton(CaptionButton button);
    void ActOn(CaptionButton button);
    bool PressGrip();
    void ToggleSize();

    // Commands (main_frame_commands.cpp).
    void PostCommandOfKey(int code);
    bool ReturnGoesToFocus() const;
    void PopUpSkins();
    void ChooseSkinFromMenu(int command);
    void OnSettingsChanged(MessageParam sender);
    void OnSkinChanged();
    void PopUpUnder(int barCommand, const std::vector<MenuEntry>& entries);

    std::string suiteName;
    ButtonLooks looks{};
    CursorId cursor = CursorId::Arrow;
    std::unique_ptr<MarlinToolBar> toolBar;
    std::unique_ptr<MarlinPaneBar> paneBar;
    std::vector<SkinEntry> offeredSkins;  // of the popup that was shown last
};

}  // namespace jotlet
