// What a copy may do with a file. Worked out anew from the file's header at every use, never stored.
#pragma once

namespace jotlet {

enum class Role : int {
    None = -1,        // the password matches no role: reads what a Reader reads, changes nothing
    Owner = 102,      // everything, confidential records and passwords included
    Assistant = 103,  // sees and changes all but confidential records
    Reader = 104,     // sees all but confidential records
};

// What AddRecord, DeleteRecord and WriteRecord give when the role may not change records.
inline constexpr int kRefusedByRole = 104;

inline constexpr bool MayChange(Role role)
{
    return role == Role::Owner || role == Role::Assistant;
}
inline constexpr bool SeesConfidential(Role role)
{
    return role == Role::Owner;
}

}  // namespace jotlet
