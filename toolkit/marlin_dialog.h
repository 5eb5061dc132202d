// MarlinDialog: the base of every dialog, on a template of resources/dialogs.
//
// Lives on the stack of its caller for one DoModal. Ends itself with EndDialog; its base OnCommand does so for OK (1)
// and Cancel (0). In a dialog the key, wheel, non-client and erase operations are never called: its controls are the
// desktop's.
#pragma once

#include <string>
#include <string_view>

#include "platform/desktop/dialog.h"
#include "toolkit/marlin_wnd.h"

namespace jotlet {

class MarlinDialog : public MarlinWnd {
public:
    ~MarlinDialog() override;

    // Runs the dialog to its end over `parent` (null: none) and returns the value given to EndDialog; -1 when there is
    // no such template.
    virtual int DoModal(MarlinWnd* parent, int templateId);
    // The modeless form: creates the dialog and returns at once, 1 when it has a window. Its owner destroys it.
    int CreateModeless(MarlinWnd* parent, int templateId);
    // The rubber-band animation from the dialog's centre to its window rectangle.
    virtual void ZoomOpen();

    virtual MessageParam OnInitDialog(WndMessage&) { return 1; }
    virtual MessageParam OnMeasureItem(WndMessage&) { return 1; }  // lParam: MeasureItemInfo*
    virtual MessageParam OnDrawItem(WndMessage&) { return 1; }     // lParam: DrawItemInfo*
    virtual void EndDialog(int result);
    virtual MessageParam SendItemMessage(int id, std::uint32_t message, MessageParam wParam, MessageParam lParam);
    virtual void SetItemText(int id, std::string_view text);

    MessageParam Dispatch(WndMessage& record) override;
    MessageParam DefaultHandler(WndMessage&) override { return 0; }
    MessageParam OnCommand(WndMessage& record) override;

protected:
    std::string GetItemText(int id) const;
    void Enable(int id, bool enabled) { EnableItem(window, id, enabled); }
    bool Checked(int id) const { return IsItemChecked(window, id); }
    // Middle of the owner, kept on the desktop.
    void CentreOverParent();

private:
    WindowHandle owner = 0;
    bool modal = false;
};

}  // namespace jotlet
