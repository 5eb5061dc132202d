#include "net/server_setup.h"

#include <array>

#include "net/core/identity.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/message_box.h"
#include "resources/dialog_ids.h"
#include "resources/string_ids.h"
#include "skin/window_helpers.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

using namespace server_password_ids;
using namespace server_setup_ids;

void Complain(WindowHandle owner, std::string_view text)
{
    ShowBox(owner, text, "Marlin Center", BoxIcon::Warning, BoxButtons::Ok);
}

}  // namespace

int RunServerSetup(MarlinWnd* parent)
{
    if (!ReadServerAccount().password.empty()) {
        ServerPasswordDialog prompt;
        if (prompt.DoModal(parent, server_password_ids::kDialog) != 1)
            return 0;
    }
    ServerSetupDialog setup;
    return setup.DoModal(parent, server_setup_ids::kDialog) == 1 ? 1 : 0;
}

int ServerSetupCommand(TableFile* file, MarlinWnd* frame)
{
    if (!file || IsFileOwnedLocally(*file) != 1 || file->GetRole() != Role::Owner) {
        ShowMessage(frame ? frame->window : 0, kStringNoPermission);
        return 0;
    }
    if (RunServerSetup(frame) != 1)
        return 0;
    StampFileIdentity(*file, 0);
    return 1;
}

MessageParam ServerPasswordDialog::OnInitDialog(WndMessage&)
{
    if (const std::string name = ReadServerAccount().userName; !name.empty())
        SetWindowTitle(window, DecodeForDisplay(name));
    LimitItemText(window, kPromptEdit, static_cast<int>(kServerPasswordBytes));
    CentreOverParent();
    FocusItem(window, kPromptEdit);
    return 0;
}

MessageParam ServerPasswordDialog::OnCommand(WndMessage& record)
{
    if (LowWord(record.wParam) != kIdOk)
        return MarlinDialog::OnCommand(record);
    OnOk();
    return 1;
}

void ServerPasswordDialog::OnOk()
{
    const std::string typed = GetItemText(kPromptEdit);
    if (CutText(typed, kServerPasswordBytes) == CutText(ReadServerAccount().password, kServerPasswordBytes)) {
        EndDialog(1);
        return;
    }
    Complain(window, "Incorrect Password");
    FocusItem(window, kPromptEdit);
}

MessageParam ServerSetupDialog::OnInitDialog(WndMessage&)
{
    const ServerAccount account = read = ReadServerAccount();
    const std::array<std::tuple<int, std::size_t, std::string>, 6> edits = {{
        {kNameEdit, kUserNameBytes, account.userName},
        {kEmailEdit, kServerTextBytes, account.email},
        {kPasswordEdit, kServerPasswordBytes, account.password},
        {kConfirmEdit, kServerPasswordBytes, account.password},
        {kServerEdit, kServerTextBytes, account.server},
        {kPortEdit, kServerTextBytes, account.port.empty() ? account.defaultPort : account.port},
    }};
    for (const auto& [id, bytes, text] : edits) {
        // A password is never cut behind its user's back: what cannot be stored cannot be typed.
        const bool password = id == kPasswordEdit || id == kConfirmEdit;
        LimitItemText(window, id, static_cast<int>(bytes) + (password ? 0 : 1));
        SetItemText(id, text);
    }
    UpdateButtons();
    CentreOverParent();
    FocusItem(window, kNameEdit);
    return 0;
}

MessageParam ServerSetupDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kNameEdit:
        case kPasswordEdit:
        case kConfirmEdit:
        case kServerEdit:
        case kEmailEdit:
        case kPortEdit:
            UpdateButtons();
            return 1;
        case kIdOk:
            if (Store())
                EndDialog(1);
            return 1;
        case kRegisterButton:
            if (Store())
                Register();
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

void ServerSetupDialog::UpdateButtons()
{
    const auto filled = [this](int id) { return !GetItemText(id).empty(); };
    Enable(kIdOk, filled(kNameEdit) && filled(kEmailEdit) && filled(kPasswordEdit) && filled(kConfirmEdit));
    Enable(kRegisterButton, filled(kServerEdit) && filled(kPortEdit));
}

bool ServerSetupDialog::Store()
{
    ServerAccount account;
    account.password = CutText(GetItemText(kPasswordEdit), kServerPasswordBytes);
    const std::string confirmation(CutText(GetItemText(kConfirmEdit), kServerPasswordBytes));
    account.userName = CutText(GetItemText(kNameEdit), kUserNameBytes);
    account.email = CutText(GetItemText(kEmailEdit), kServerTextBytes);
    account.server = CutText(GetItemText(kServerEdit), kServerTextBytes);
    account.port = CutText(GetItemText(kPortEdit), kServerTextBytes);

    const char* wrong = nullptr;
    int where = kPasswordEdit;
    if (account.password != confirmation) {
        wrong = "Incorrect Password";
    } else if (account.userName.empty()) {
        wrong = "Incorrect Name";
        where = kNameEdit;
    } else if (account.email.empty()) {
        wrong = "Incorrect E-mail";
        where = kEmailEdit;
    } else if (account.password.empty()) {
        wrong = "Incorrect Password";
    }
    if (wrong) {
        Complain(window, wrong);
        FocusItem(window, where);
        return false;
    }
    const IniFile settings = GetSuiteIniPath();
    if (WriteServerAccount(account, settings, &read) != 1) {
        ShowTextMessage(window,
                        "The account could not be written to\r\n\"" + settings.Path() +
                            "\".\r\nCheck that the disk isn't full and the file can be reached, then try again.");
        return false;
    }
    read = account;
    return true;
}

void ServerSetupDialog::Register()
{
    const std::string title = WindowTitle(window);
    SetWindowTitle(window, "Registering, up to a minute...");
    ShowWaitCursor();
    UpdateNow(window);
    const std::uint32_t code = RegisterOnServer(ReadRegistration(), makeClient());
    RestoreCursor();
    SetWindowTitle(window, title);
    ShowMessage(window, RegistrationText(code));
}

}  // namespace jotlet
