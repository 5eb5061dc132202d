#include "net/core/server_account.h"

#include <string_view>

#include "platform/base/text.h"

namespace jotlet {

namespace {

constexpr std::string_view kAccountSection = "Marlin Server";
constexpr std::string_view kGatewaySection = "Gateway";

std::string Value(const IniFile& ini, std::string_view section, std::string_view key, std::size_t maxBytes)
{
    const auto value = ini.IniReadText(section, key);
    return value ? std::string(CutText(*value, maxBytes)) : std::string();
}

}  // namespace

ServerAccount ReadServerAccount(const IniFile& suiteSettings)
{
    const auto value = [&](std::string_view key, std::size_t maxBytes) {
        return Value(suiteSettings, kAccountSection, key, maxBytes);
    };
    return {.userName = value("username", kUserNameBytes),
            .email = value("email", kServerTextBytes),
            .password = value("password", kServerPasswordBytes),
            .server = value("server", kServerTextBytes),
            .port = value("port", kServerTextBytes),
            .defaultPort = value("defaultport", kServerTextBytes)};
}

int WriteServerAccount(const ServerAccount& account, const IniFile& suiteSettings)
{
    int written = 1;
    const auto write = [&](std::string_view key, std::string_view value, std::size_t maxBytes) {
        if (suiteSettings.IniWriteText(kAccountSection, key, CutText(value, maxBytes)) != 1)
            written = 0;
    };
    write("username", account.userName, kUserNameBytes);
    write("email", account.email, kServerTextBytes);
    write("password", account.password, kServerPasswordBytes);
    write("server", account.server, kServerTextBytes);
    write("port", account.port, kServerTextBytes);
    return written;
}

Registration ReadRegistration(const IniFile& suiteSettings)
{
    const ServerAccount account = ReadServerAccount(suiteSettings);
    const auto orGateway = [&](const std::string& own, std::string_view key) {
        return own.empty() ? Value(suiteSettings, kGatewaySection, key, kServerTextBytes) : own;
    };
    return {.server = orGateway(account.server, "server"),
            .port = static_cast<std::uint32_t>(TextToInt(orGateway(account.port, "port"))),
            .email = account.email,
            .password = account.password};
}

std::uint32_t RegisterOnServer(const Registration& registration, ServerClient client)
{
    client.SetServer(registration.server, registration.port);
    return client.RegisterUser(registration.email, registration.password);
}

int RegistrationText(std::uint32_t code)
{
    if (code == kRegistered)
        return 136;
    return code == kUserExists ? 137 : 138;
}

}  // namespace jotlet
