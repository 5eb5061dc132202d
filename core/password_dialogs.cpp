#include "core/password_dialogs.h"

#include <array>
#include <utility>

#include "platform/base/text.h"
#include "resources/dialog_ids.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

constexpr int kTypingLimit = 20;
constexpr std::array kBoxes = {network_passwords_ids::kOwner, network_passwords_ids::kAssistant,
                               network_passwords_ids::kReader};

}  // namespace

PasswordDialog::PasswordDialog(std::string dialogTitle) : title(std::move(dialogTitle)) {}

MessageParam PasswordDialog::OnInitDialog(WndMessage&)
{
    SetWindowTitle(window, title);
    LimitItemText(window, password_dialog_ids::kPassword, kTypingLimit);
    CentreOverParent();
    FocusItem(window, password_dialog_ids::kPassword);
    return 0;
}

// An untouched empty box may be confirmed: one of the roles may have no password.
MessageParam PasswordDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case password_dialog_ids::kPassword:
            if (HighWord(record.wParam) == kEditChanged)
                Enable(kIdOk, !GetItemText(password_dialog_ids::kPassword).empty());
            return 1;
        case kIdOk:
            password = GetItemText(password_dialog_ids::kPassword);
            EndDialog(1);
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

NetworkPasswordsDialog::NetworkPasswordsDialog(NetworkPasswords stored) : passwords(std::move(stored)) {}

MessageParam NetworkPasswordsDialog::OnInitDialog(WndMessage&)
{
    CentreOverParent();
    const std::array texts = {&passwords.owner, &passwords.assistant, &passwords.reader};
    for (std::size_t i = 0; i < kBoxes.size(); ++i) {
        LimitItemText(window, kBoxes[i], kTypingLimit);
        if (!texts[i]->empty())
            SetItemText(kBoxes[i], *texts[i]);
    }
    Enable(kIdOk, false);
    FocusItem(window, network_passwords_ids::kOwner);
    return 0;
}

// A change in the Owner's box that leaves text in it lets the user confirm. Clearing it does too when a password was
// set: that is how a file is opened to everybody again.
MessageParam NetworkPasswordsDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case network_passwords_ids::kOwner:
            if (HighWord(record.wParam) == kEditChanged &&
                (!GetItemText(network_passwords_ids::kOwner).empty() || !passwords.owner.empty()))
                Enable(kIdOk, true);
            return 1;
        case network_passwords_ids::kAssistant:
        case network_passwords_ids::kReader:
            if (HighWord(record.wParam) == kEditChanged && !GetItemText(network_passwords_ids::kOwner).empty())
                Enable(kIdOk, true);
            return 1;
        case kIdOk:
            if (!FitAll())
                return 1;
            passwords = {
                .owner = std::string(CutText(GetItemText(network_passwords_ids::kOwner), kMaxPasswordLength)),
                .assistant = std::string(CutText(GetItemText(network_passwords_ids::kAssistant), kMaxPasswordLength)),
                .reader = std::string(CutText(GetItemText(network_passwords_ids::kReader), kMaxPasswordLength))};
            EndDialog(1);
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

// What is longer than a file can hold would be cut, and then differ from what its owner typed.
bool NetworkPasswordsDialog::FitAll()
{
    for (const int box : kBoxes) {
        if (GetItemText(box).size() <= kMaxPasswordLength)
            continue;
        ShowTextMessage(window, "A password may have at most " + std::to_string(kMaxPasswordLength) +
                                    " bytes: a letter from A to Z takes one, other letters take two to four. Shorten "
                                    "it.");
        FocusItem(window, box);
        return false;
    }
    return true;
}

VerifyPasswordsDialog::VerifyPasswordsDialog(NetworkPasswords passwords) : expected(std::move(passwords)) {}

MessageParam VerifyPasswordsDialog::OnInitDialog(WndMessage&)
{
    CentreOverParent();
    for (const int box : kBoxes)
        LimitItemText(window, box, kTypingLimit);
    FocusItem(window, kBoxes[0]);
    return 0;
}

MessageParam VerifyPasswordsDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kIdOk: {
            const bool same = GetItemText(kBoxes[0]) == expected.owner &&
                              GetItemText(kBoxes[1]) == expected.assistant && GetItemText(kBoxes[2]) == expected.reader;
            EndDialog(same ? kSame : kDiffers);
            return 1;
        }
        case kIdCancel:
            EndDialog(kCancelled);
            return 1;
        default:
            return MarlinDialog::OnCommand(record);
    }
}

}  // namespace jotlet
