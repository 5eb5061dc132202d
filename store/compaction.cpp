#include "store/compaction.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/base/file_lock.h"
#include "platform/base/file_system.h"
#include "platform/base/paths.h"
#include "platform/base/replace_file.h"
#include "platform/base/shared_file.h"
#include "store/copies.h"
#include "store/table_schema.h"

namespace jotlet {
namespace {

constexpr std::int64_t kSlotsPerRead = 200;
constexpr std::int64_t kWriteAhead = 2 << 20;
constexpr std::int64_t kCloseAside = 4 << 20;
constexpr std::size_t kActiveAt = offsetof(RecordPrefix, active);
constexpr std::size_t kLockedAt = offsetof(RecordPrefix, locked);

bool Report(FileError* error, const char* operation, const std::string& path)
{
    if (error)
        *error = {FileErrorKindOf(errno), operation, path, errno};
    return false;
}

// Sizes of a table file, and a front part that is there. Never true for anything that isn't ours.
bool IsTableFile(FileHandle handle, SizeBlock& sizes, std::int64_t& fileSize)
{
    fileSize = SharedFile::SizeOf(handle);
    return fileSize >= kFirstRecordOffset && SharedFile::ReadFrom(handle, BytesOf(sizes), 0) &&
           sizes.headerSize == kHeaderBlockSize && sizes.categorySize == kCategoryBlockSize &&
           (sizes.recordSize == kNoteRecordSize || sizes.recordSize == kContactRecordSize ||
            sizes.recordSize == kSendRecordSize);
}

// Shows nothing when there is no display; closes what it opened.
class Progress {
public:
    Progress(ProgressDisplay* display, const std::string& path, std::int64_t steps) : display(display)
    {
        if (display)
            display->Open("Compacting \"" + GetBareFileName(path) + "\"",
                          static_cast<int>(std::min<std::int64_t>(steps, std::numeric_limits<int>::max())));
    }
    ~Progress()
    {
        if (display)
            display->Close();
    }
    void Step()
    {
        if (display)
            display->Step();
    }

private:
    ProgressDisplay* display;
};

// Copies the front part with its counters at 0.
bool CopyFront(FileHandle from, FileHandle to)
{
    std::vector<std::byte> front(kFirstRecordOffset);
    if (!SharedFile::ReadFrom(from, front, 0))
        return false;
    TableHeader header;
    std::memcpy(&header, front.data() + sizeof(SizeBlock), sizeof header);
    header.freeSlots = 0;
    header.openCount = 0;
    std::memcpy(front.data() + sizeof(SizeBlock), &header, sizeof header);
    return FileWriteWhole(to, front, 0);
}

// Copies the live records, unlocked, one close behind the other. A record that can't be read fails the whole: better an
// old file with gaps than a new one without the record.
bool CopyRecords(FileHandle from, FileHandle to, std::uint32_t recordSize, std::int64_t slotCount, Progress& progress)
{
    std::vector<std::byte> chunk(static_cast<std::size_t>(kSlotsPerRead * recordSize));
    std::int64_t end = kFirstRecordOffset;
    std::int64_t started = 0;
    for (std::int64_t slot = 0; slot < slotCount; slot += kSlotsPerRead) {
        const std::int64_t count = std::min(kSlotsPerRead, slotCount - slot);
        const auto bytes = std::span(chunk).first(static_cast<std::size_t>(count * recordSize));
        if (!SharedFile::ReadFrom(from, bytes, kFirstRecordOffset + slot * recordSize))
            return false;
        std::byte* kept = chunk.data();
        for (std::int64_t i = 0; i < count; ++i) {
            progress.Step();
            std::byte* record = chunk.data() + i * recordSize;
            if (record[kActiveAt] != std::byte{1})
                continue;
            record[kLockedAt] = std::byte{0};
            if (kept != record)
                std::memcpy(kept, record, recordSize);
            kept += recordSize;
        }
        const auto keptBytes = bytes.first(static_cast<std::size_t>(kept - chunk.data()));
        if (!FileWriteWhole(to, keptBytes, end))
            return false;
        end += static_cast<std::int64_t>(keptBytes.size());
        // The disk works while the next records are copied.
        if (end - started >= kWriteAhead) {
            Files().StartWriting(to, started, end - started);
            started = end;
        }
    }
    return true;
}

// The right to be alone with a file whose locks stay on each machine: its turn, for as long as this lives, and nobody
// in the list of copies.
class AloneOnDrive {
public:
    ~AloneOnDrive()
    {
        entry.reset();
        table.Release();
    }
    // False, with EAGAIN when somebody has the file open.
    bool Take(FileHandle handle, const std::string& path)
    {
        if (!turn->Take(TurnFilePath(path), 0))
            return false;
        table.Reset(handle);
        table.LocksStayHere();
        entry = std::make_unique<CopyEntry>(table, path, turn);
        if (!entry->IsEntered())
            return false;
        errno = EAGAIN;
        return !entry->AreOthersThere();
    }

private:
    const std::shared_ptr<TurnFile> turn = std::make_shared<TurnFile>();
    SharedFile table;
    std::unique_ptr<CopyEntry> entry;
};

// A drive may lead others to the old file for some seconds more. Its first bytes tell them that it is no table any
// more, wherever they still find it. Not where it has another name that somebody may rely on.
class MarkWhenReplaced {
public:
    explicit MarkWhenReplaced(FileHandle old) : old(old)
    {
        FileIdentity identity;
        marks = !Files().IsLocal(old) && Files().IdentifyAtServer(old, identity) == 0 && identity.links == 1;
    }
    void Mark() const
    {
        const SizeBlock none{};
        if (marks && FileWriteWhole(old, BytesOf(none), 0))
            FileFlush(old);
    }

private:
    FileHandle old;
    bool marks = false;
};

// The old file goes with its last handle, and a large one takes the system a while. Nobody has to wait for that.
void CloseReplaced(FileHandle handle)
{
    Files().Lock(handle, kPresentByte, LockMode::Unlock);
    if (FileSize(handle) < kCloseAside) {
        FileClose(handle);
        return;
    }
    try {
        std::thread([handle] { RealFileSystem().Close(handle); }).detach();
    } catch (const std::system_error&) {
        FileClose(handle);
    }
}

// What a killed compaction or copy left behind holds notes and passwords for nobody.
void RemoveLeftover(const std::string& path)
{
    const std::string left = RealPathOf(path) + std::string(kTableBesideSuffix);
    if (Files().Remove(left) == 0)
        FlushFolderOf(left);
}

// Where a file that is open can't be replaced: counters and locks are put right in the file itself, and its slots stay.
// A kill on the way leaves openCount above 0, and so the next repair.
bool RepairInPlace(FileHandle handle, std::uint32_t recordSize, std::int64_t fileSize, TableHeader header)
{
    SharedFile file(handle);
    std::vector<std::byte> chunk(static_cast<std::size_t>(kSlotsPerRead * recordSize));
    const std::int64_t slotCount = (fileSize - kFirstRecordOffset) / recordSize;
    const std::byte unlocked{0};
    bool isDone = true;
    header.freeSlots = 0;
    for (std::int64_t slot = 0; isDone && slot < slotCount; slot += kSlotsPerRead) {
        const std::int64_t count = std::min(kSlotsPerRead, slotCount - slot);
        const std::int64_t offset = kFirstRecordOffset + slot * recordSize;
        isDone = file.Read(std::span(chunk).first(static_cast<std::size_t>(count * recordSize)), offset);
        for (std::int64_t i = 0; isDone && i < count; ++i) {
            const std::byte* record = chunk.data() + i * recordSize;
            header.freeSlots -= record[kActiveAt] == std::byte{0};
            if (record[kLockedAt] != unlocked)
                isDone = file.Write({&unlocked, 1}, offset + i * recordSize + static_cast<std::int64_t>(kLockedAt));
        }
    }
    header.openCount = 0;
    isDone = isDone && file.Settle() && FileFlush(handle) == 1 && file.Write(BytesOf(header), sizeof(SizeBlock)) &&
             file.Settle() && FileFlush(handle) == 1;
    file.Release();
    return isDone;
}

RepairOutcome OutcomeOf(FileErrorKind kind)
{
    switch (kind) {
        case FileErrorKind::Missing:
            return RepairOutcome::Missing;
        case FileErrorKind::Busy:
            return RepairOutcome::Busy;
        case FileErrorKind::NotRegularFile:
            return RepairOutcome::NotTableFile;
        default:
            return RepairOutcome::Failed;
    }
}

}  // namespace

bool WriteCompacted(FileHandle from, FileHandle to, const std::string& path, ProgressDisplay* display)
{
    SizeBlock sizes{};
    std::int64_t fileSize = 0;
    if (!IsTableFile(from, sizes, fileSize) || !CopyFront(from, to))
        return false;
    const std::int64_t slotCount = (fileSize - kFirstRecordOffset) / sizes.recordSize;
    Progress progress(display, path, slotCount);
    return CopyRecords(from, to, sizes.recordSize, slotCount, progress);
}

int CompactFile(FileHandle handle, const std::string& path, ProgressDisplay* progress, FileError* error)
{
    FileReplacement fresh;
    const auto fail = [&](const std::string& text) {
        if (error)
            *error = fresh.Error();
        if (progress && !text.empty())
            progress->ShowText(text);
        return 0;
    };
    if (!fresh.Start(path, kTableBesideSuffix))
        return fail("Program can't create \"" + fresh.BesidePath() + "\".");
    if (!fresh.KeepAccessOf(handle))
        return fail({});
    if (!WriteCompacted(handle, fresh.Handle(), path, progress)) {
        Report(error, "write", fresh.BesidePath());
        return 0;
    }
    const MarkWhenReplaced mark(handle);
    if (!fresh.Finish()) {
        const bool renaming = fresh.Error().operation == "rename";
        return fail(renaming
                        ? "Compact: MoveFile: error.\r\n\"" + fresh.BesidePath() + "\"\r\nto\r\n\"" + path + "\"\r\n"
                        : std::string());
    }
    mark.Mark();
    // Only now may openers that waited go on; they find the new file under the path.
    CloseReplaced(handle);
    return 1;
}

RepairOutcome RepairTable(const std::string& path, bool force, ProgressDisplay* progress, FileError* error)
{
    FileError opening;
    bool proven = false;
    FileHandleOwner handle(FileOpenAlone(path, proven, &opening));
    if (!handle) {
        if (error)
            *error = opening;
        return OutcomeOf(opening.kind);
    }
    if (!proven && !force)
        return RepairOutcome::Busy;
    AloneOnDrive alone;
    if (!proven && !alone.Take(handle.Get(), path)) {
        const RepairOutcome outcome = errno == EAGAIN ? RepairOutcome::Busy : RepairOutcome::Failed;
        if (outcome == RepairOutcome::Failed)
            Report(error, "lock", path);
        return outcome;
    }
    SizeBlock sizes{};
    std::int64_t fileSize = 0;
    TableHeader header;
    if (!IsTableFile(handle.Get(), sizes, fileSize) ||
        !SharedFile::ReadFrom(handle.Get(), BytesOf(header), sizeof sizes))
        return RepairOutcome::NotTableFile;
    RemoveLeftover(path);
    if (!force && header.openCount == 0)
        return RepairOutcome::Clean;
    if (!Files().IsLocal(handle.Get()) && !Files().DriveUnder(handle.Get()).replacesOpen) {
        if (RepairInPlace(handle.Get(), sizes.recordSize, fileSize, header))
            return RepairOutcome::PutRight;
        Report(error, "write", path);
        return RepairOutcome::Failed;
    }
    if (CompactFile(handle.Get(), path, progress, error) != 1)
        return RepairOutcome::Failed;
    handle.Release();  // CompactFile has closed it
    return RepairOutcome::Compacted;
}

int CheckAfterCrash(const std::string& path, int force, ProgressDisplay* progress)
{
    const RepairOutcome outcome = RepairTable(path, force != 0, progress);
    return outcome == RepairOutcome::Clean || outcome == RepairOutcome::Compacted || outcome == RepairOutcome::PutRight
               ? 1
               : 0;
}

}  // namespace jotlet
