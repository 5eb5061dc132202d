#include "store/table_file.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <limits>
#include <thread>
#include <utility>

#include "platform/base/file_system.h"
#include "platform/base/replace_file.h"
#include "store/passwords.h"
#include "store/table_turn.h"

namespace jotlet {
namespace {

constexpr std::int64_t kHeaderAt = sizeof(SizeBlock);
constexpr std::int64_t kCategoriesAt = kHeaderAt + kHeaderBlockSize;
// Addresses are signed 32-bit numbers, and a slot must end before they do.
// Openings of a file that a drive calls stale, before it is told.
constexpr int kMaxOpenings = 60;
constexpr auto kStaleNap = std::chrono::milliseconds(100);
constexpr std::int64_t kLargestPartialFlush = 64 << 10;
constexpr std::int64_t kLargestFile = std::numeric_limits<RecordAddress>::max();

bool IsKnown(const SizeBlock& sizes)
{
    return sizes.headerSize == kHeaderBlockSize && sizes.categorySize == kCategoryBlockSize &&
           (sizes.recordSize == kNoteRecordSize || sizes.recordSize == kContactRecordSize ||
            sizes.recordSize == kSendRecordSize);
}

OpenFailure FailureOf(FileErrorKind kind)
{
    switch (kind) {
        case FileErrorKind::None:
            return OpenFailure::None;
        case FileErrorKind::Missing:
            return OpenFailure::Missing;
        case FileErrorKind::Busy:
            return OpenFailure::Busy;
        case FileErrorKind::Permission:
            return OpenFailure::Permission;
        case FileErrorKind::NotRegularFile:
            return OpenFailure::NotTableFile;
        case FileErrorKind::NoAnswer:
            return OpenFailure::NoAnswer;
        default:
            return OpenFailure::Io;
    }
}

OpenFailure LookAtSizes(const SharedFile& file, SizeBlock& sizes)
{
    errno = 0;
    const std::int64_t size = file.Size();
    if (size >= 0 && size < static_cast<std::int64_t>(sizeof sizes))
        return OpenFailure::NotTableFile;
    if (size < 0 || !file.Read(BytesOf(sizes), 0)) {
        const OpenFailure failure = FailureOf(FileErrorKindOf(errno));
        return failure == OpenFailure::None ? OpenFailure::Io : failure;
    }
    const bool isMarked = sizes.headerSize == 0 && sizes.categorySize == 0 && sizes.recordSize == 0;
    if (isMarked && !file.GetDrive().isCoherent) {
        // A compaction has put a new file in its place, and the drive has not heard of it yet.
        errno = ESTALE;
        return OpenFailure::NoAnswer;
    }
    if (!IsKnown(sizes))
        return OpenFailure::NotTableFile;
    if (size < kFirstRecordOffset)
        return OpenFailure::Truncated;
    return size > kLargestFile ? OpenFailure::TooLarge : OpenFailure::None;
}

// For reading and writing; for reading alone where the mount forbids more, or the server of a drive. On this machine
// who may not write doesn't open a table. `reason` is set for reading alone.
FileHandle OpenForUse(const std::string& path, FileError& reason)
{
    const FileHandle both = Files().Open(path, O_RDWR, 0);
    const int refused = errno;
    if (both != kNoFile || (refused != EROFS && refused != EACCES && refused != EPERM))
        return both;
    FileHandleOwner reading(Files().Open(path, O_RDONLY, 0));
    if (!reading || (refused != EROFS && Files().IsLocal(reading.Get()))) {
        errno = refused;
        return kNoFile;
    }
    reason = {FileErrorKind::Permission, "open", path, refused};
    return reading.Release();
}

OpenFailure ProbeOnce(const std::string& path, std::uint32_t recordSize, FileError& error, TableHeader* header)
{
    // Without the lock of FileOpen: an instant is enough, and it must not make others find the file busy.
    FileError readOnly;
    const SharedFile file(OpenForUse(path, readOnly));
    FileIdentity identity;
    if (!file || Files().Identify(file.Get(), identity) != 0) {
        error = {FileErrorKindOf(errno), "open", path, errno};
        return FailureOf(error.kind);
    }
    if (!identity.isRegular)
        return OpenFailure::NotTableFile;
    SizeBlock sizes{};
    const OpenFailure failure = LookAtSizes(file, sizes);
    if (failure == OpenFailure::None && sizes.recordSize != recordSize)
        return OpenFailure::NotTableFile;
    const bool wanted = header != nullptr && failure == OpenFailure::None;
    return wanted && !file.Read(BytesOf(*header), kHeaderAt) ? OpenFailure::Io : failure;
}

}  // namespace

OpenFailure ProbeTable(const std::string& path, std::uint32_t recordSize, FileError& error, TableHeader* header)
{
    for (int attempt = 0;; ++attempt) {
        const OpenFailure failure = ProbeOnce(path, recordSize, error, header);
        if (failure != OpenFailure::NoAnswer || errno != ESTALE || attempt == kMaxOpenings)
            return failure;
        std::this_thread::sleep_for(kStaleNap);
    }
}

TableFile::TableFile(std::string path, std::string_view password) : path(std::move(path)), password(password)
{
    Open();
}

TableFile::~TableFile()
{
    Close();
}

int TableFile::Exists(const std::string& path)
{
    return FileExists(path) == 1 ? 1 : 0;
}

int TableFile::Create(const TableHeader& header, std::uint32_t newHeaderSize, const CategoryBlock& categories,
                      std::uint32_t newCategorySize, std::uint32_t newRecordSize)
{
    const SizeBlock sizes{newHeaderSize, newCategorySize, newRecordSize};
    if (IsOpen() || !IsKnown(sizes))
        return 0;
    // Written beside and renamed, so that a kill never leaves half a front part under the real name.
    {
        FileReplacement fresh;
        const bool made = fresh.Start(path, kTableBesideSuffix, kUsualMode) &&
                          FileWriteWhole(fresh.Handle(), BytesOf(sizes), 0) &&
                          FileWriteWhole(fresh.Handle(), BytesOf(header), kHeaderAt) &&
                          FileWriteWhole(fresh.Handle(), BytesOf(categories), kCategoriesAt) && fresh.FinishNew();
        if (!made) {
            const int reason = fresh.Error() ? fresh.Error().systemError : errno;
            openError = {FileErrorKindOf(reason), "create", path, reason};
            openFailure = FailureOf(openError.kind);
            return 0;
        }
    }
    return Open();
}

int TableFile::Open()
{
    if (IsOpen())
        return 1;
    for (int attempt = 0; attempt < kMaxOpenings; ++attempt) {
        openFailure = OpenOnce();
        if (openFailure == OpenFailure::None)
            return 1;
        copies.reset();
        file.Reset();
        // The drive went on naming a file that was replaced.
        if (openError.systemError != ESTALE)
            break;
        std::this_thread::sleep_for(kStaleNap);
    }
    return 0;
}

OpenFailure TableFile::OpenOnce()
{
    openError = {};
    readOnlyReason = {};
    replaced = false;
    file.Reset(FileOpen(path, FileAccess::ReadWrite, FileSharing::Shared, &openError));
    if (openError.kind == FileErrorKind::Permission) {
        const FileHandleOwner probe(OpenForUse(path, readOnlyReason));
        if (readOnlyReason) {
            openError = {};
            file.Reset(FileOpen(path, FileAccess::Read, FileSharing::Shared, &openError));
        }
    }
    if (openError)
        return FailureOf(openError.kind);
    const OpenFailure failure = Files().Identify(file.Get(), identity) == 0 ? CheckSizes() : OpenFailure::Io;
    if (failure == OpenFailure::None && (readOnlyReason || CountIn())) {
        if (!IsOnThisMachine())
            driveFolders = FoldersOf(path, file.Get());
        return OpenFailure::None;
    }
    if (failure != OpenFailure::None) {
        if (failure == OpenFailure::Io || failure == OpenFailure::NoAnswer)
            openError = {FileErrorKindOf(errno), "read", path, errno};
        return failure;
    }
    openError = lastError;
    return openError ? FailureOf(openError.kind) : OpenFailure::Io;
}

bool TableFile::CountIn()
{
    TableTurn turn;
    TableHeader header;
    const bool ours = TakeTurn(turn);
    const bool staysHere = !file.GetDrive().locksTravel;
    if (ours && staysHere)
        copies = std::make_unique<CopyEntry>(file, path, turnFile);
    if (staysHere && (!ours || !copies->IsEntered())) {
        if (ours)
            NoteFailure("create");
        copies.reset();
        if (lastError.kind != FileErrorKind::Permission)
            return false;
        readOnlyReason = lastError;
        return true;
    }
    if (!ours || !LoadHeader(header))
        return ours ? NoteFailure("read") : false;
    header.openCount += header.openCount < std::numeric_limits<std::uint32_t>::max() ? 1 : 0;
    return StoreHeader(header) || NoteFailure("write");
}

OpenFailure TableFile::CheckSizes()
{
    SizeBlock sizes{};
    const OpenFailure failure = LookAtSizes(file, sizes);
    if (failure == OpenFailure::None) {
        headerSize = sizes.headerSize;
        categorySize = sizes.categorySize;
        recordSize = sizes.recordSize;
    }
    return failure;
}

void TableFile::Close()
{
    if (!IsOpen())
        return;
    {
        TableTurn turn;
        TableHeader header;
        const bool ours = TakeTurn(turn);
        if (ours && !leftLocked && LoadHeader(header) && header.openCount > 0) {
            --header.openCount;
            StoreHeader(header);
        }
        copies.reset();
    }
    FileFlush(file.Get());
    mapping.Drop();
    memory.Forget();
    file.Reset();
    silence.reset();
    driveFolders.clear();
    held.clear();
    lost.clear();
    leftLocked = wantsEntry = false;
    deletedUnderLock.clear();
    unfinished.clear();
    freeSlotHint = 0;
    unsynced = {};
    addsSinceFlush = 0;
    flushesEachAdd = false;
}

bool TableFile::PathStillNamesThisFile() const
{
    FileIdentity named;
    return CompareWithPath(Files().IdentifyPath(path, named), named);
}

bool TableFile::CompareWithPath(int result, const FileIdentity& named) const
{
    // Another failure than a missing file tells nothing of who has the name.
    replaced = result == 0 ? !named.SameFile(identity) : errno == ENOENT || errno == ENOTDIR;
    return IsOpen() && !replaced;
}

void TableFile::SetDriveAnswers(bool answers)
{
    if (answers)
        silence.reset();
    else if (!silence && IsOpen() && !driveFolders.empty())
        silence.emplace(driveFolders);
}

bool TableFile::IsMountedAnew() const
{
    FileIdentity named;
    return IsOpen() && !IsOnThisMachine() && Files().IdentifyPath(path, named) == 0 && named.device != identity.device;
}

bool TableFile::LoadHeader(TableHeader& header) const
{
    return Load(BytesOf(header), kHeaderAt);
}

bool TableFile::StoreHeader(const TableHeader& header)
{
    return Store(BytesOf(header), kHeaderAt) && Settle();
}

int TableFile::ReadSizes(SizeBlock& out) const
{
    return IsOpen() && Load(BytesOf(out), 0) ? 1 : 0;
}

int TableFile::WriteSizes(const SizeBlock& sizes)
{
    return IsOpen() && IsKnown(sizes) && Store(BytesOf(sizes), 0) && Settle() ? 1 : 0;
}

int TableFile::ReadHeader(TableHeader& out) const
{
    return IsOpen() && LoadHeader(out) ? 1 : 0;
}

int TableFile::WriteHeader(const TableHeader& header)
{
    unsynced.everything = true;
    TableTurn turn;
    return IsOpen() && TakeTurn(turn) && StoreHeader(header) ? 1 : 0;
}

int TableFile::ReadCategories(CategoryBlock& out) const
{
    return IsOpen() && Load(BytesOf(out), kCategoriesAt) ? 1 : 0;
}

int TableFile::WriteCategories(const CategoryBlock& categories)
{
    unsynced.everything = true;
    TableTurn turn;
    return IsOpen() && TakeTurn(turn) && Store(BytesOf(categories), kCategoriesAt) && Settle() ? 1 : 0;
}

int TableFile::UpdateHeader(const std::function<bool(TableHeader&)>& change)
{
    TableTurn turn;
    TableHeader header;
    if (!IsOpen() || !TakeTurn(turn) || !LoadHeader(header))
        return 0;
    TableHeader changed = header;
    if (!change(changed))
        return 0;
    changed.freeSlots = header.freeSlots;
    changed.changeStamp = header.changeStamp;
    changed.openCount = header.openCount;
    changed.lastChanges = header.lastChanges;
    unsynced.everything = true;
    if (StoreHeader(changed))
        return 1;
    StoreHeader(header);
    return 0;
}

int TableFile::UpdateCategories(const std::function<bool(CategoryBlock&)>& change)
{
    TableTurn turn;
    CategoryBlock categories;
    if (!IsOpen() || !TakeTurn(turn) || !Load(BytesOf(categories), kCategoriesAt))
        return 0;
    CategoryBlock changed = categories;
    if (!change(changed))
        return 0;
    unsynced.everything = true;
    if (Store(BytesOf(changed), kCategoriesAt) && Settle())
        return 1;
    Store(BytesOf(categories), kCategoriesAt);
    return 0;
}

std::uint64_t TableFile::GetChangeStamp() const
{
    std::uint64_t stamp = 0;
    return IsOpen() && Load(BytesOf(stamp), kStampAt) ? stamp : 0;
}

Role TableFile::GetRole() const
{
    TableHeader header;
    return IsOpen() && LoadHeader(header) ? RoleIn(header) : Role::None;
}

Role TableFile::RoleIn(const TableHeader& header) const
{
    const Role role = RoleOfPassword(header, password);
    return readOnlyReason && MayChange(role) ? Role::Reader : role;
}

int TableFile::Flush()
{
    // On a drive the question costs a call to the server, and the change that is flushed has just asked it.
    if (!IsOpen() || replaced || (IsOnThisMachine() && !PathStillNamesThisFile()))
        return 0;
    flushesEachAdd = addsSinceFlush == 1 || (flushesEachAdd && addsSinceFlush == 0);
    addsSinceFlush = 0;
    // Where a turn doesn't end before all is synced, there is nothing left to do.
    if (!IsOnThisMachine() && !file.GetDrive().writesDirect)
        return Settle() ? 1 : 0;
    // A failure leaves everything to be done: what the system has reported once it may not report again.
    const Unsynced work = std::exchange(unsynced, {});
    const bool partly = !work.everything && work.begin < work.end && IsMapped(work.end);
    const bool flushed = partly ? mapping.FlushPart(static_cast<std::size_t>(work.begin),
                                                    static_cast<std::size_t>(work.end - work.begin))
                                : FileFlush(file.Get()) == 1;
    unsynced.everything = !flushed;
    return flushed || NoteFailure("sync") ? 1 : 0;
}

bool TableFile::IsMapped(std::int64_t end)
{
    if (mapping.Bytes().empty())
        return false;
    if (mapping.Bytes().size() < static_cast<std::size_t>(end))
        mapping.Cover(file.Get(), static_cast<std::size_t>(std::max(FileSize(file.Get()), std::int64_t{0})));
    return mapping.Bytes().size() >= static_cast<std::size_t>(end);
}

void TableFile::NoteWritten(RecordAddress address)
{
    const std::int64_t end = std::int64_t{address} + recordSize;
    unsynced.begin = unsynced.begin < unsynced.end ? std::min<std::int64_t>(unsynced.begin, address) : address;
    unsynced.end = std::max(unsynced.end, end);
    // Records far apart: what lies between would be looked through for nothing.
    if (unsynced.end - unsynced.begin > kLargestPartialFlush)
        unsynced.everything = true;
}

std::int64_t TableFile::CutTailBytes() const
{
    const std::int64_t behindFront = IsOpen() ? file.Size() - FirstRecordOffset() : 0;
    return behindFront > 0 ? behindFront % recordSize : 0;
}

std::vector<std::byte> TableFile::AllocRecordBuffer() const
{
    return std::vector<std::byte>(recordSize == ~std::uint32_t{0} ? 0 : recordSize);
}

}  // namespace jotlet
