// Who may do what with a file: owner, group, mode, access list, and the attributes that users hang on a file.
#pragma once

#include "platform/base/files.h"

namespace jotlet {

// Makes `to` a file that the same people may use in the same way as `from`, with the same attributes. Both handles are
// open; `to` is a fresh file of this user that nobody else may read yet.
//
// An ordinary user can't give a file away. So another's file becomes this user's, and that counts as the same only
// where its old owner keeps his rights by the group or by what everybody may do. False: somebody would lose or gain
// something; `to` then still belongs to its maker alone, but its contents must not take the old file's place.
bool KeepAccess(FileHandle from, FileHandle to);

}  // namespace jotlet
