#include "net/core/identity.h"

#include <cstring>
#include <span>
#include <vector>

#include "platform/base/text.h"
#include "store/record_hold.h"

namespace jotlet {

namespace {

IdentityBlock NameAndEmail(const FileOwnerBlock& owner)
{
    IdentityBlock identity{};
    StoreText(identity.name, FieldText(owner.name));
    StoreText(identity.email, FieldText(owner.email));
    return identity;
}

// Of `to` only the name and the e-mail change.
template <typename Block>
void PutNameAndEmail(Block& to, const IdentityBlock& from)
{
    StoreText(to.name, FieldText(from.name));
    StoreText(to.email, FieldText(from.email));
}

std::vector<RecordAddress> RecordsOwnedBy(const TableFile& file, const IdentityBlock& owner)
{
    std::vector<RecordAddress> addresses;
    const FieldRange field{offsetof(RecordHeader, owner), sizeof(IdentityBlock)};
    file.ForEachRecord(
        std::span(&field, 1),
        [&](RecordAddress address, std::span<const std::byte> bytes) {
            IdentityBlock found;
            std::memcpy(&found, bytes.data(), sizeof found);
            if (IsSameIdentity(found, owner))
                addresses.push_back(address);
            return true;
        },
        ScanScope::All);
    return addresses;
}

// Read anew under the lock, so that no change of another copy is lost.
void ChangeOwner(TableFile& file, RecordAddress address, const IdentityBlock& from, const IdentityBlock& to)
{
    RecordHold hold(file, address);
    std::vector<std::byte> record = file.AllocRecordBuffer();
    if (!hold || record.size() < sizeof(RecordHeader) || !hold.Read(record))
        return;
    RecordHeader header;
    std::memcpy(&header, record.data(), sizeof header);
    if (!IsSameIdentity(header.owner, from))
        return;
    PutNameAndEmail(header.owner, to);
    std::memcpy(record.data(), &header, sizeof header);
    hold.Write(record);
}

}  // namespace

int GetFileOwner(const TableFile& file, IdentityBlock& owner)
{
    owner = {};
    TableHeader header;
    if (file.ReadHeader(header) != 1)
        return 0;
    owner = NameAndEmail(header.fileOwner);
    return 1;
}

int GetFileUser(const TableFile& file, IdentityBlock& user)
{
    user = {};
    TableHeader header;
    if (file.ReadHeader(header) != 1)
        return 0;
    user = header.fileUser;
    return 1;
}

bool IsSameIdentity(const IdentityBlock& first, const IdentityBlock& second)
{
    return FieldText(first.name) == FieldText(second.name) && FieldText(first.email) == FieldText(second.email);
}

int IsEventOwner(const TableFile& file, const RecordHeader& record)
{
    IdentityBlock owner;
    return GetFileOwner(file, owner) == 1 && IsSameIdentity(record.owner, owner) ? 1 : 0;
}

int IsFileOwnedLocally(const TableFile& file)
{
    IdentityBlock owner;
    IdentityBlock local{};
    FillLocalIdentity(local);
    return GetFileOwner(file, owner) == 1 && IsSameIdentity(local, owner) ? 1 : 0;
}

int StampFileIdentity(TableFile& file, int onlyOwnFiles, const IniFile& suiteSettings)
{
    if (onlyOwnFiles != 0 && !IsFileOwnedLocally(file))
        return 0;
    IdentityBlock local{};
    FillLocalIdentity(local);
    char server[sizeof TableHeader::server];
    char port[sizeof TableHeader::port];
    ReadServerSettings(server, port, suiteSettings);
    return UpdateFileIdentity(file, local, FieldText(server), FieldText(port));
}

int UpdateFileIdentity(TableFile& file, const IdentityBlock& identity, std::string_view server, std::string_view port)
{
    IdentityBlock before{};
    bool ownerChanges = false;
    const int written = file.UpdateHeader([&](TableHeader& header) {
        before = NameAndEmail(header.fileOwner);
        ownerChanges = !IsSameIdentity(before, identity);
        if (!ownerChanges && FieldText(header.server) == server && FieldText(header.port) == port)
            return false;
        StoreText(header.server, server);
        StoreText(header.port, port);
        if (ownerChanges) {
            PutNameAndEmail(header.fileOwner, identity);
            PutNameAndEmail(header.fileUser, identity);
        }
        return true;
    });
    if (written != 1 || !ownerChanges)
        return 0;
    const RefreshPause pause;
    for (const RecordAddress address : RecordsOwnedBy(file, before))
        ChangeOwner(file, address, before, identity);
    file.Flush();
    return 1;
}

}  // namespace jotlet
