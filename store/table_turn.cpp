// What TableFile does to share its file: turns, the locks behind edited records, and a way back after the drive was
// gone.
#include "store/table_turn.h"

#include <algorithm>
#include <cerrno>

#include "platform/base/file_system.h"

namespace jotlet {
namespace {

bool Contains(const std::vector<RecordAddress>& addresses, RecordAddress address)
{
    return std::find(addresses.begin(), addresses.end(), address) != addresses.end();
}

std::int64_t LockOf(RecordAddress address)
{
    return kFirstRecordByte + address;
}

}  // namespace

bool TableFile::NoteFailure(const char* operation) const
{
    lastError = {FileErrorKindOf(errno), operation, path, errno};
    return false;
}

// --- turns

bool TableFile::TakeTurn(TableTurn& turn)
{
    lastError = readOnlyReason;
    if (readOnlyReason)
        return false;
    LockOutcome outcome = turn.lock.TakeExclusive(file.Get(), kMutationByte, kMutationPatienceMs);
    if (outcome == LockOutcome::Failed && Revive())
        outcome = turn.lock.TakeExclusive(file.Get(), kMutationByte, kMutationPatienceMs);
    if (outcome == LockOutcome::Unsupported)
        file.LocksStayHere();
    else if (outcome != LockOutcome::Taken)
        return NoteFailure("lock");
    turn.table = this;
    isInTurn = true;
    if (!file.GetDrive().locksTravel && !TakeFileTurn())
        return false;
    // One question tells who has the path and, where the client has it from nowhere else, how long the file is.
    FileIdentity named;
    const bool tellsSize = file.GetDrive().writesDirect;
    const int asked = tellsSize ? Files().IdentifyPathAtServer(path, named) : Files().IdentifyPath(path, named);
    if (!CompareWithPath(asked, named)) {
        errno = ESTALE;
        return NoteFailure("lock");
    }
    file.BeginTurn(tellsSize && asked == 0 ? named.size : -1);
    if (wantsEntry && !copies) {
        copies = std::make_unique<CopyEntry>(file, path, turnFile);
        if (copies->IsEntered() && !held.empty() && held.size() <= CopyEntry::kMostHeld)
            copies->Holds(held);
    }
    if (!unfinished.empty())
        TakeOutUnfinished();
    return true;
}

bool TableFile::TakeFileTurn()
{
    const TurnDrive drive = file.GetDrive().asksAtOpen ? TurnDrive::UserSpace : TurnDrive::Server;
    if (!turnFile->Take(TurnFilePath(path), kMutationPatienceMs, drive))
        return NoteFailure("lock");
    if (!copies || copies->IsStillEntered())
        return true;
    // Others took this copy for gone, and what it held for free.
    while (!held.empty())
        LoseHold(held.back());
    copies.reset();
    copies = std::make_unique<CopyEntry>(file, path, turnFile);
    return copies->IsEntered() || NoteFailure("create");
}

void TableFile::EndTurn()
{
    file.Settle();
    file.EndTurn();
    turnFile->Release();
    isInTurn = false;
}

bool TableFile::EnterListOfCopies()
{
    wantsEntry = true;
    TableTurn turn;
    return IsOpen() && TakeTurn(turn) && copies->IsEntered();
}

// --- bytes

bool TableFile::Load(std::span<std::byte> bytes, std::int64_t offset) const
{
    return file.Read(bytes, offset) || (Revive() && file.Read(bytes, offset));
}

bool TableFile::Store(std::span<const std::byte> bytes, std::int64_t offset)
{
    if (!IsTurnSure()) {
        errno = ETIMEDOUT;
        return NoteFailure("write");
    }
    return file.Write(bytes, offset) || NoteFailure("write");
}

bool TableFile::Settle()
{
    if (!file.Settle())
        return NoteFailure("sync");
    // What took so long may have been written over what somebody else has written since. Nobody is told that it stands.
    errno = ETIMEDOUT;
    return !isInTurn || IsTurnSure() || NoteFailure("sync");
}

bool TableFile::Revive() const
{
    const int reason = errno;
    const bool isForgotten = FileErrorKindOf(reason) == FileErrorKind::NoAnswer || reason == EIO || reason == EBADF;
    // The turn's lock would go with the old opening.
    if (!file || isInTurn || IsOnThisMachine() || !isForgotten)
        return false;
    const FileAccess access =
        readOnlyReason && readOnlyReason.operation == "open" ? FileAccess::Read : FileAccess::ReadWrite;
    FileHandleOwner again(FileOpen(path, access, FileSharing::Shared, nullptr, 0));
    FileIdentity found;
    // A drive that is mounted anew has another number, and its files keep theirs only where the server gives them out.
    const bool isFound = again && Files().Identify(again.Get(), found) == 0;
    if (!isFound || !(found.SameFile(identity) || (found.inode == identity.inode && !file.GetDrive().asksAtOpen))) {
        replaced = replaced || isFound;
        errno = reason;
        return false;
    }
    const bool locksTravel = file.GetDrive().locksTravel;
    file.Reset(again.Release());
    memory.Forget();
    identity = found;
    if (!locksTravel)
        file.LocksStayHere();
    else
        copies.reset();  // its lock went with the old opening; the next turn enters this copy again
    const std::vector<RecordAddress> before = held;
    for (const RecordAddress address : before)
        if (locksTravel && LockForHandleLife(file.Get(), LockOf(address), true, 0) != LockOutcome::Taken)
            LoseHold(address);
    return true;
}

// --- the locks behind edited records

bool TableFile::TakeHold(RecordAddress address, bool isMarked)
{
    if (Contains(held, address))
        return false;
    if (file.GetDrive().locksTravel) {
        const LockOutcome outcome = LockForHandleLife(file.Get(), LockOf(address), true, 0);
        if (outcome == LockOutcome::Failed)
            NoteFailure("lock");
        if (outcome != LockOutcome::Taken)
            return false;
    } else if (isMarked && copies->IsHeldElsewhere(address)) {
        return false;
    }
    std::erase(lost, address);
    held.push_back(address);
    const bool isTold = !copies || copies->Holds(held);
    if (isTold || file.GetDrive().locksTravel)
        return true;
    held.pop_back();
    return NoteFailure("write");
}

void TableFile::DropHold(RecordAddress address)
{
    if (std::erase(held, address) == 0)
        return;
    if (file.GetDrive().locksTravel)
        Files().Lock(file.Get(), LockOf(address), LockMode::Unlock);
    if (copies)
        copies->Holds(held);
}

void TableFile::LoseHold(RecordAddress address) const
{
    std::erase(held, address);
    lost.push_back(address);
}

bool TableFile::MayStillWrite(RecordAddress address)
{
    // A drive that was away for long may have given the lock to somebody else. Asked again it tells.
    if (Contains(held, address) && !IsOnThisMachine() && file.GetDrive().locksTravel && file.GetDrive().locksAgain &&
        LockForHandleLife(file.Get(), LockOf(address), true, 0) == LockOutcome::Refused)
        LoseHold(address);
    if (!Contains(lost, address))
        return true;
    errno = ESTALE;
    return NoteFailure("lock");
}

}  // namespace jotlet
