// The three passwords of a file and the role that a password gives. They keep roles apart among honest copies; nothing
// in the file is encrypted.
#pragma once

#include <string>
#include <string_view>

#include "store/role.h"
#include "store/table_schema.h"

namespace jotlet {

inline constexpr std::size_t kMaxPasswordLength = 19;

struct NetworkPasswords {
    std::string owner;  // empty: not set
    std::string assistant;
    std::string reader;
};

// The first of Owner, Assistant, Reader whose stored password equals `password` exactly. An empty password equals one
// that isn't set. More than 19 bytes match nothing.
Role RoleOfPassword(const TableHeader& header, std::string_view password);
NetworkPasswords PasswordsOf(const TableHeader& header);

// What the stored passwords of the file at `path` are. 1, or 0 when the file can't be opened.
int ReadNetworkPasswords(const std::string& path, NetworkPasswords& out);
// Replaces all three, each cut at 19 bytes, losing no counter; empty clears. Only when `currentPassword` equals the
// stored Owner password at that moment; then it becomes the new Owner password and the result is 1, on the disk. Else 0
// (kRefusedByRole when it doesn't equal) and nothing is changed.
// With `read`, what the passwords were when somebody began to change them, those that are the same in both stay as the
// file has them by now.
int SetNetworkPasswords(const std::string& path, std::string& currentPassword, const NetworkPasswords& passwords,
                        const NetworkPasswords* read = nullptr);

}  // namespace jotlet
