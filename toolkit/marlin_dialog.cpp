#include "toolkit/marlin_dialog.h"

#include "platform/desktop/application.h"
#include "resources/dialog_template.h"
#include "skin/animations.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

MessageParam DialogProcedure(WindowHandle handle, std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    auto* dialog = static_cast<MarlinDialog*>(UserWord(handle));
    if (!dialog)
        return 0;
    dialog->window = handle;
    WndMessage record{handle, message, wParam, lParam};
    return dialog->Dispatch(record);
}

// What a dialog hears of; all else is the dialog manager's.
bool DialogHears(std::uint32_t message)
{
    switch (message) {
        case kWmDestroy:
        case kWmSize:
        case kWmPaint:
        case kWmClose:
        case kWmSetCursor:
        case kWmGetMinMaxInfo:
        case kWmCommand:
        case kWmTimer:
        case kWmCtlColorDlg:
        case kWmMouseMove:
        case kWmLButtonDown:
        case kWmLButtonUp:
        case kWmLButtonDblClk:
        case kWmRButtonDown:
        case kWmRButtonUp:
        case kWmDescribe:
        case kWmCreated:
            return true;
        default:
            return false;
    }
}

}  // namespace

MarlinDialog::~MarlinDialog() = default;

int MarlinDialog::DoModal(MarlinWnd* parent, int templateId)
{
    const DialogTemplate* dialogTemplate = FindDialogTemplate(templateId);
    if (!dialogTemplate)
        return -1;
    owner = parent ? parent->window : 0;
    modal = true;
    window = CreateDialogWindow(*dialogTemplate, owner, DialogProcedure, this);
    if (!window)
        return -1;
    const int result = RunModal(window, owner);
    DestroyNativeWindow(window);
    return result;
}

int MarlinDialog::CreateModeless(MarlinWnd* parent, int templateId)
{
    const DialogTemplate* dialogTemplate = FindDialogTemplate(templateId);
    if (!dialogTemplate)
        return 0;
    owner = parent ? parent->window : 0;
    window = CreateDialogWindow(*dialogTemplate, owner, DialogProcedure, this);
    return window ? 1 : 0;
}

void MarlinDialog::ZoomOpen()
{
    const Rect whole = WindowRect(window);
    const Point centre{(whole.left + whole.right) / 2, (whole.top + whole.bottom) / 2};
    PlayDialogZoom({centre.x, centre.y, centre.x, centre.y}, whole);
}

MessageParam MarlinDialog::Dispatch(WndMessage& record)
{
    switch (record.message) {
        case kWmInitDialog: {
            const MessageParam result = OnInitDialog(record);
            Post(kWmCreated, 0, 0);
            return result;
        }
        case kWmMeasureItem:
            return OnMeasureItem(record);
        case kWmDrawItem:
            return OnDrawItem(record);
        default:
            return DialogHears(record.message) ? MarlinWnd::Dispatch(record) : DefaultHandler(record);
    }
}

MessageParam MarlinDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kIdOk:
            EndDialog(1);
            return 1;
        case kIdCancel:
            EndDialog(0);
            return 1;
        default:
            return 0;
    }
}

void MarlinDialog::EndDialog(int result)
{
    if (modal)
        EndModal(window, result);
}

MessageParam MarlinDialog::SendItemMessage(int id, std::uint32_t message, MessageParam wParam, MessageParam lParam)
{
    return SendTo(DialogItem(window, id), message, wParam, lParam);
}

void MarlinDialog::SetItemText(int id, std::string_view text)
{
    SetItemTextOf(window, id, text);
}

std::string MarlinDialog::GetItemText(int id) const
{
    return ItemText(window, id);
}

void MarlinDialog::CentreOverParent()
{
    CentreOver(owner, window);
}

}  // namespace jotlet
