#pragma once

#include <string_view>

#include "notes/model/record_header.h"
#include "platform/base/paths.h"
#include "store/table_schema.h"

// Who owns a file, and its events. Names and e-mails are compared exactly.

namespace jotlet {

class TableFile;

// The identities in the file's header. 1, or 0 and an empty identity when the header cannot be read. The third text of
// the owner's lies on the file's passwords: it is not given out.
int GetFileOwner(const TableFile& file, IdentityBlock& owner);
int GetFileUser(const TableFile& file, IdentityBlock& user);

// True when name and e-mail are equal.
bool IsSameIdentity(const IdentityBlock& first, const IdentityBlock& second);

// 1 when the record was made by the file's owner, else 0.
int IsEventOwner(const TableFile& file, const RecordHeader& record);
// 1 when the file's owner is the identity of this installation, else 0.
int IsFileOwnedLocally(const TableFile& file);

// Puts the local identity and the server settings of the section "Gateway" into the file. With `onlyOwnFiles` other
// than 0, a file of somebody else is left alone. The result of UpdateFileIdentity, or 0.
int StampFileIdentity(TableFile& file, int onlyOwnFiles, const IniFile& suiteSettings = GetSuiteIniPath());

// Makes `identity` the owner and the user of the file, and the owner of every record that the owner before owned, also
// past 10,000 records; a record that somebody else holds locked keeps the old one. Server and port go into the header.
// 1 when records were walked, 0 when only the header needed a change, or nothing, or it could not be written.
int UpdateFileIdentity(TableFile& file, const IdentityBlock& identity, std::string_view server, std::string_view port);

}  // namespace jotlet
