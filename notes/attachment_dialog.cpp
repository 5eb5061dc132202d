#include "notes/attachment_dialog.h"

#include <utility>

#include "notes/open_target.h"
#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "resources/dialog_ids.h"
#include "toolkit/choose_file.h"

namespace jotlet {
namespace {

using namespace attachment_dialog_ids;

constexpr int kPathLimit = 260;

}  // namespace

AttachmentDialog::AttachmentDialog(Attachment initial) : attachment(std::move(initial)) {}

MessageParam AttachmentDialog::OnInitDialog(WndMessage&)
{
    LimitItemText(window, kPathEdit, kPathLimit);
    CheckItem(window, attachment.kind == kAttachmentUrl ? kUrlRadio : kDocumentRadio, true);
    SetItemText(kPathEdit, attachment.path);
    CentreOverParent();
    FocusItem(window, kPathEdit);
    return 0;
}

MessageParam AttachmentDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kIdOk:
            return OnOk();
        case kBrowseButton:
            return OnBrowse();
        case kOpenButton:
            return OnOpen();
        default:
            return MarlinDialog::OnCommand(record);
    }
}

MessageParam AttachmentDialog::OnOk()
{
    attachment.path = CutText(GetItemText(kPathEdit), kPathLimit - 1);
    if (attachment.path.empty())
        attachment.kind = kAttachmentNone;
    else
        attachment.kind = Checked(kDocumentRadio) ? kAttachmentDocument : kAttachmentUrl;
    EndDialog(1);
    return 1;
}

MessageParam AttachmentDialog::OnBrowse()
{
    ChooseFileInto(window, kPathEdit, {.title = "Attach", .filter = "(*.*)|*.*||", .extension = "*.*"});
    return 1;
}

MessageParam AttachmentDialog::OnOpen()
{
    const std::string target = GetItemText(kPathEdit);
    if (target.empty())
        Beep();
    else
        OpenTarget(window, target, Checked(kDocumentRadio) ? TargetKind::Document : TargetKind::Url);
    return 1;
}

}  // namespace jotlet
