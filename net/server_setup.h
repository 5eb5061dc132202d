// The user's account on the Marlin Server: asking for its password, editing it, registering it.
#pragma once

#include <functional>
#include <utility>

#include "net/core/server_account.h"
#include "toolkit/marlin_dialog.h"

namespace jotlet {

class TableFile;

// The password prompt where a password is stored, then the setup. 1 when the setup ended with OK, else 0.
int RunServerSetup(MarlinWnd* parent);
// The command on the open file (null: none): for its Owner on this installation alone. 1 on a finished setup, and the
// file then carries the identity; the caller refreshes the title. Else 0.
int ServerSetupCommand(TableFile* file, MarlinWnd* frame);

class ServerPasswordDialog : public MarlinDialog {
public:
    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    void OnOk();
};

class ServerSetupDialog : public MarlinDialog {
public:
    // Makes the client of each registration.
    using MakeClient = std::function<ServerClient()>;
    explicit ServerSetupDialog(MakeClient makeClient = [] { return ServerClient(); })
        : makeClient(std::move(makeClient))
    {
    }

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    void UpdateButtons();
    // Checks the form and stores it; false after a message.
    bool Store();
    void Register();

    MakeClient makeClient;
    ServerAccount read;  // what is stored, as far as this dialog knows
};

}  // namespace jotlet
