#include "cli/commands.h"
#include "cli/secret.h"
#include "net/core/server_account.h"

namespace jotlet {

ExitCode RunRegister(const RegisterOptions& options)
{
    const std::optional<std::string> password = ReadSecretLine("Server password for " + options.email + ": ");
    if (!password || password->empty())
        return Fail(ExitCode::Usage, "register", "Give the server password on standard input.");
    if (options.email.empty() || options.email.size() > kFrameEmailSize)
        return Fail(ExitCode::Usage, "--email", "An e-mail address has 1 to 64 bytes.");
    if (password->size() > kFramePasswordSize)
        return Fail(ExitCode::Usage, "register", "A server password has at most 32 bytes.");
    const std::uint32_t code = RegisterOnServer({options.server, options.port, options.email, *password});
    const std::string where = options.server + ':' + std::to_string(options.port);
    if (code == kRegistered)
        return PrintResult("Registration on server was successful.\n");
    if (code == kUserExists)
        return Fail(ExitCode::Refused, where, "A user with this e-mail address already exists. Choose another --email.");
    return Fail(ExitCode::Refused, where,
                "Unable to connect to server. Check --server and --port. (code " + std::to_string(code) + ")");
}

}  // namespace jotlet
