#include "store/passwords.h"

#include <cstring>
#include <span>

#include "platform/base/text.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

// A password with which a file is opened only to see its header. It gives a role only where a user chose that word.
constexpr std::string_view kHeaderOnlyPassword = "null";

// The bytes up to the terminator. A field without one is damaged and equals nothing that can be typed.
std::string_view StoredPassword(const char (&field)[20])
{
    return {field, strnlen(field, sizeof field)};
}

}  // namespace

Role RoleOfPassword(const TableHeader& header, std::string_view password)
{
    if (password.size() > kMaxPasswordLength)
        return Role::None;
    if (password == StoredPassword(header.fileOwner.ownerPassword))
        return Role::Owner;
    if (password == StoredPassword(header.fileOwner.assistantPassword))
        return Role::Assistant;
    if (password == StoredPassword(header.fileOwner.readerPassword))
        return Role::Reader;
    return Role::None;
}

NetworkPasswords PasswordsOf(const TableHeader& header)
{
    return {std::string(StoredPassword(header.fileOwner.ownerPassword)),
            std::string(StoredPassword(header.fileOwner.assistantPassword)),
            std::string(StoredPassword(header.fileOwner.readerPassword))};
}

int ReadNetworkPasswords(const std::string& path, NetworkPasswords& out)
{
    TableFile table(path, kHeaderOnlyPassword);
    TableHeader header;
    if (table.ReadHeader(header) != 1)
        return 0;
    out = PasswordsOf(header);
    return 1;
}

int SetNetworkPasswords(const std::string& path, std::string& currentPassword, const NetworkPasswords& passwords,
                        const NetworkPasswords* read)
{
    TableFile table(path, kHeaderOnlyPassword);
    bool refused = false;
    std::string newOwner;
    const int written = table.UpdateHeader([&](TableHeader& header) {
        refused = RoleOfPassword(header, currentPassword) != Role::Owner;
        if (refused)
            return false;
        const auto store = [&](char(&field)[20], std::string NetworkPasswords::*one) {
            if (!read || passwords.*one != read->*one)
                StoreText(field, passwords.*one);
        };
        store(header.fileOwner.ownerPassword, &NetworkPasswords::owner);
        store(header.fileOwner.assistantPassword, &NetworkPasswords::assistant);
        store(header.fileOwner.readerPassword, &NetworkPasswords::reader);
        newOwner = StoredPassword(header.fileOwner.ownerPassword);
        return true;
    });
    if (written != 1)
        return refused ? kRefusedByRole : 0;
    currentPassword = newOwner;
    return table.Flush();
}

}  // namespace jotlet
