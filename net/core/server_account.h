#pragma once

#include <cstdint>
#include <string>

#include "net/core/server_client.h"
#include "platform/base/paths.h"

// The user's account on the server, as the suite's settings hold it in the section "Marlin Server", and its
// registration.

namespace jotlet {

// Widths of the values in bytes, behind which they are cut.
inline constexpr std::size_t kUserNameBytes = 49;
inline constexpr std::size_t kServerPasswordBytes = 9;
inline constexpr std::size_t kServerTextBytes = 259;

// All texts; an empty one is as good as a missing key.
struct ServerAccount {
    std::string userName;
    std::string email;
    std::string password;  // plain text: whoever shows or logs this struct leaves it out
    std::string server;
    std::string port;         // a number as text
    std::string defaultPort;  // shown while `port` is empty; never written
};

ServerAccount ReadServerAccount(const IniFile& suiteSettings = GetSuiteIniPath());
// Writes username, email, password, server and port, in this order and in one step. 1, or 0 when they could not be
// written. With `read`, what the account was when somebody began to change it, those that are the same in both stay as
// the settings have them by now.
int WriteServerAccount(const ServerAccount& account, const IniFile& suiteSettings = GetSuiteIniPath(),
                       const ServerAccount* read = nullptr);

// Where and as whom a registration goes.
struct Registration {
    std::string server;
    std::uint32_t port = 0;
    std::string email;
    std::string password;
};

// The account's e-mail and password, to its server and port; each of these two comes from the section "Gateway" where
// the account's is empty. A port text without leading digits is port 0.
Registration ReadRegistration(const IniFile& suiteSettings = GetSuiteIniPath());

// The exchange, on this thread: the code of ServerClient::RegisterUser. The caller shows the wait cursor and the
// answer.
std::uint32_t RegisterOnServer(const Registration& registration, ServerClient client = ServerClient());
// String table id of the sentence for a code: 136, 137 or 138.
int RegistrationText(std::uint32_t code);

}  // namespace jotlet
