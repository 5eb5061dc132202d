// The three dialogs that ask for passwords of a file.
#pragma once

#include <string>

#include "store/passwords.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

// Asks once for the password of a file.
class PasswordDialog : public MarlinDialog {
public:
    // `title`: the bare file name.
    explicit PasswordDialog(std::string title);

    const std::string& Password() const { return password; }

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    std::string title;
    std::string password;
};

// Sets the passwords of all three roles.
class NetworkPasswordsDialog : public MarlinDialog {
public:
    // `stored`: what the boxes show at first.
    explicit NetworkPasswordsDialog(NetworkPasswords stored);

    // After OK: each at most kMaxPasswordLength bytes.
    const NetworkPasswords& Passwords() const { return passwords; }

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    bool FitAll();

    NetworkPasswords passwords;
};

// Asks for the three new passwords once more. Ends with 1 when all are the same, with 0 when not, with 2 on Cancel.
class VerifyPasswordsDialog : public MarlinDialog {
public:
    static constexpr int kDiffers = 0;
    static constexpr int kSame = 1;
    static constexpr int kCancelled = 2;

    explicit VerifyPasswordsDialog(NetworkPasswords expected);

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    NetworkPasswords expected;
};

}  // namespace jotlet
