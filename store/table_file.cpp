#include "store/table_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <utility>

#include "platform/base/file_lock.h"
#include "platform/base/file_system.h"
#include "store/passwords.h"

namespace jotlet {
namespace {

constexpr std::int64_t kHeaderAt = sizeof(SizeBlock);
constexpr std::int64_t kCategoriesAt = kHeaderAt + kHeaderBlockSize;
constexpr std::int64_t kStampAt = kHeaderAt + offsetof(TableHeader, changeStamp);
// Addresses are signed 32-bit numbers, and a slot must end before they do.
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
        default:
            return OpenFailure::Io;
    }
}

OpenFailure LookAtSizes(FileHandle handle, SizeBlock& sizes)
{
    const std::int64_t size = FileSize(handle);
    if (size < 0)
        return OpenFailure::Io;
    if (size < static_cast<std::int64_t>(sizeof sizes))
        return OpenFailure::NotTableFile;
    if (!FileReadWhole(handle, BytesOf(sizes), 0))
        return OpenFailure::Io;
    if (!IsKnown(sizes))
        return OpenFailure::NotTableFile;
    if (size < kFirstRecordOffset)
        return OpenFailure::Truncated;
    return size > kLargestFile ? OpenFailure::TooLarge : OpenFailure::None;
}

}  // namespace

OpenFailure ProbeTable(const std::string& path, std::uint32_t recordSize, FileError& error)
{
    // Without the lock of FileOpen: an instant is enough, and it must not make others find the file busy.
    const FileHandleOwner handle(Files().Open(path, O_RDWR, 0));
    FileIdentity identity;
    if (!handle || Files().Identify(handle.Get(), identity) != 0) {
        error = {FileErrorKindOf(errno), "open", path, errno};
        return FailureOf(error.kind);
    }
    if (!identity.isRegular)
        return OpenFailure::NotTableFile;
    SizeBlock sizes{};
    const OpenFailure failure = LookAtSizes(handle.Get(), sizes);
    return failure == OpenFailure::None && sizes.recordSize != recordSize ? OpenFailure::NotTableFile : failure;
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
    const std::string beside = path + "." + std::to_string(getpid()) + ".new";
    FileHandleOwner file(FileCreate(beside, &openError));
    if (!file) {
        openFailure = FailureOf(openError.kind);
        return 0;
    }
    const bool made = FileWriteWhole(file.Get(), BytesOf(sizes), 0) &&
                      FileWriteWhole(file.Get(), BytesOf(header), kHeaderAt) &&
                      FileWriteWhole(file.Get(), BytesOf(categories), kCategoriesAt) && FileFlush(file.Get()) == 1 &&
                      Files().RenameNew(beside, path) == 0;
    if (!made) {
        const int reason = errno;
        openError = {FileErrorKindOf(reason), "create", path, reason};
        openFailure = FailureOf(openError.kind);
        Files().Remove(beside);
        return 0;
    }
    FlushFolderOf(path);
    file.Reset();
    return Open();
}

int TableFile::Open()
{
    if (IsOpen())
        return 1;
    openError = {};
    handle.Reset(FileOpen(path, FileAccess::ReadWrite, FileSharing::Shared, &openError));
    openFailure = FailureOf(openError.kind);
    if (openFailure == OpenFailure::None)
        openFailure = CheckSizes();
    if (openFailure == OpenFailure::None) {
        FileLock turn;
        TableHeader header;
        bool counted = TakeTurn(turn) && LoadHeader(header);
        if (counted) {
            header.openCount += header.openCount < std::numeric_limits<std::uint32_t>::max() ? 1 : 0;
            counted = StoreHeader(header);
        }
        if (!counted) {
            openFailure = OpenFailure::Io;
            openError = {FileErrorKindOf(errno), "write", path, errno};
        }
    }
    if (openFailure != OpenFailure::None)
        handle.Reset();
    return IsOpen() ? 1 : 0;
}

OpenFailure TableFile::CheckSizes()
{
    SizeBlock sizes{};
    const OpenFailure failure = LookAtSizes(handle.Get(), sizes);
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
        FileLock turn;
        TableHeader header;
        if (TakeTurn(turn) && LoadHeader(header) && header.openCount > 0) {
            --header.openCount;
            StoreHeader(header);
        }
    }
    FileFlush(handle.Get());
    mapping.Drop();
    handle.Reset();
    deletedUnderLock.clear();
    freeSlotHint = 0;
    unsynced = {};
    addsSinceFlush = 0;
    flushesEachAdd = false;
}

bool TableFile::TakeTurn(FileLock& lock) const
{
    const LockOutcome outcome = lock.TakeExclusive(handle.Get(), kMutationByte, kMutationPatienceMs);
    return outcome == LockOutcome::Taken || outcome == LockOutcome::Unsupported;
}

bool TableFile::LoadHeader(TableHeader& header) const
{
    return FileReadWhole(handle.Get(), BytesOf(header), kHeaderAt);
}

bool TableFile::StoreHeader(const TableHeader& header)
{
    return FileWriteWhole(handle.Get(), BytesOf(header), kHeaderAt);
}

int TableFile::ReadSizes(SizeBlock& out) const
{
    return IsOpen() && FileReadWhole(handle.Get(), BytesOf(out), 0) ? 1 : 0;
}

int TableFile::WriteSizes(const SizeBlock& sizes)
{
    return IsOpen() && IsKnown(sizes) && FileWriteWhole(handle.Get(), BytesOf(sizes), 0) ? 1 : 0;
}

int TableFile::ReadHeader(TableHeader& out) const
{
    return IsOpen() && LoadHeader(out) ? 1 : 0;
}

int TableFile::WriteHeader(const TableHeader& header)
{
    unsynced.everything = true;
    FileLock turn;
    return IsOpen() && TakeTurn(turn) && StoreHeader(header) ? 1 : 0;
}

int TableFile::ReadCategories(CategoryBlock& out) const
{
    return IsOpen() && FileReadWhole(handle.Get(), BytesOf(out), kCategoriesAt) ? 1 : 0;
}

int TableFile::WriteCategories(const CategoryBlock& categories)
{
    unsynced.everything = true;
    FileLock turn;
    return IsOpen() && TakeTurn(turn) && FileWriteWhole(handle.Get(), BytesOf(categories), kCategoriesAt) ? 1 : 0;
}

int TableFile::UpdateHeader(const std::function<bool(TableHeader&)>& change)
{
    FileLock turn;
    TableHeader header;
    if (!IsOpen() || !TakeTurn(turn) || !LoadHeader(header))
        return 0;
    TableHeader changed = header;
    if (!change(changed))
        return 0;
    changed.freeSlots = header.freeSlots;
    changed.changeStamp = header.changeStamp;
    changed.openCount = header.openCount;
    unsynced.everything = true;
    if (StoreHeader(changed))
        return 1;
    StoreHeader(header);
    return 0;
}

int TableFile::UpdateCategories(const std::function<bool(CategoryBlock&)>& change)
{
    FileLock turn;
    CategoryBlock categories;
    if (!IsOpen() || !TakeTurn(turn) || !FileReadWhole(handle.Get(), BytesOf(categories), kCategoriesAt))
        return 0;
    CategoryBlock changed = categories;
    if (!change(changed))
        return 0;
    unsynced.everything = true;
    if (FileWriteWhole(handle.Get(), BytesOf(changed), kCategoriesAt))
        return 1;
    FileWriteWhole(handle.Get(), BytesOf(categories), kCategoriesAt);
    return 0;
}

std::uint64_t TableFile::GetChangeStamp() const
{
    std::uint64_t stamp = 0;
    return IsOpen() && FileReadWhole(handle.Get(), BytesOf(stamp), kStampAt) ? stamp : 0;
}

Role TableFile::GetRole() const
{
    TableHeader header;
    return IsOpen() && LoadHeader(header) ? RoleOfPassword(header, password) : Role::None;
}

int TableFile::Flush()
{
    if (!IsOpen())
        return 0;
    flushesEachAdd = addsSinceFlush == 1 || (flushesEachAdd && addsSinceFlush == 0);
    addsSinceFlush = 0;
    // A failure leaves everything to be done: what the system has reported once it may not report again.
    const Unsynced work = std::exchange(unsynced, {});
    const bool partly = !work.everything && work.begin < work.end && IsMapped(work.end);
    const bool flushed = partly ? mapping.FlushPart(static_cast<std::size_t>(work.begin),
                                                    static_cast<std::size_t>(work.end - work.begin))
                                : FileFlush(handle.Get()) == 1;
    unsynced.everything = !flushed;
    return flushed ? 1 : 0;
}

bool TableFile::IsMapped(std::int64_t end)
{
    if (mapping.Bytes().empty())
        return false;
    if (mapping.Bytes().size() < static_cast<std::size_t>(end))
        mapping.Cover(handle.Get(), static_cast<std::size_t>(std::max(FileSize(handle.Get()), std::int64_t{0})));
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
    const std::int64_t behindFront = IsOpen() ? FileSize(handle.Get()) - FirstRecordOffset() : 0;
    return behindFront > 0 ? behindFront % recordSize : 0;
}

std::vector<std::byte> TableFile::AllocRecordBuffer() const
{
    return std::vector<std::byte>(recordSize == ~std::uint32_t{0} ? 0 : recordSize);
}

}  // namespace jotlet
