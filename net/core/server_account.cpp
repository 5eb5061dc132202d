#include "net/core/server_account.h"

#include <string_view>
#include <vector>

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

int WriteServerAccount(const ServerAccount& account, const IniFile& suiteSettings, const ServerAccount* read)
{
    std::vector<ProfileEntry> entries;
    const auto add = [&](std::string_view key, std::string ServerAccount::*one, std::size_t maxBytes) {
        if (!read || account.*one != read->*one)
            entries.push_back({key, std::string(CutText(account.*one, maxBytes))});
    };
    add("username", &ServerAccount::userName, kUserNameBytes);
    add("email", &ServerAccount::email, kServerTextBytes);
    add("password", &ServerAccount::password, kServerPasswordBytes);
    add("server", &ServerAccount::server, kServerTextBytes);
    add("port", &ServerAccount::port, kServerTextBytes);
    return entries.empty() ? 1 : suiteSettings.IniWriteTexts(kAccountSection, entries);
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
