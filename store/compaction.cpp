#include "store/compaction.h"

#include <limits.h>
#include <stdlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <memory>
#include <system_error>
#include <thread>
#include <vector>

#include "platform/base/file_lock.h"
#include "platform/base/file_system.h"
#include "platform/base/paths.h"
#include "store/table_schema.h"

namespace jotlet {
namespace {

constexpr std::int64_t kSlotsPerRead = 200;
constexpr std::int64_t kWriteAhead = 2 << 20;
constexpr std::int64_t kCloseAside = 4 << 20;
constexpr std::size_t kActiveAt = offsetof(RecordPrefix, active);
constexpr std::size_t kLockedAt = offsetof(RecordPrefix, locked);

// The file that a path leads to: a link must stay a link when its file is replaced.
std::string RealPathOf(const std::string& path)
{
    const std::unique_ptr<char, decltype(&free)> resolved(realpath(path.c_str(), nullptr), &free);
    return resolved ? resolved.get() : path;
}

bool Report(FileError* error, const char* operation, const std::string& path)
{
    if (error)
        *error = {FileErrorKindOf(errno), operation, path, errno};
    return false;
}

// Sizes of a table file, and a front part that is there. Never true for anything that isn't ours.
bool IsTableFile(FileHandle handle, SizeBlock& sizes, std::int64_t& fileSize)
{
    fileSize = FileSize(handle);
    return fileSize >= kFirstRecordOffset && FileReadWhole(handle, BytesOf(sizes), 0) &&
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
    if (!FileReadWhole(from, front, 0))
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
        if (!FileReadWhole(from, bytes, kFirstRecordOffset + slot * recordSize))
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

bool Rewrite(FileHandle from, FileHandle to, const std::string& path, ProgressDisplay* display)
{
    SizeBlock sizes{};
    std::int64_t fileSize = 0;
    if (!IsTableFile(from, sizes, fileSize) || !CopyFront(from, to))
        return false;
    const std::int64_t slotCount = (fileSize - kFirstRecordOffset) / sizes.recordSize;
    Progress progress(display, path, slotCount);
    if (!CopyRecords(from, to, sizes.recordSize, slotCount, progress))
        return false;
    Files().CopyOwnership(from, to);
    return FileFlush(to) == 1;
}

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

}  // namespace

FileHandle CreateTempFile(std::string& tempPath, const std::string& path, FileError* error)
{
    tempPath = RealPathOf(path) + ".temp";
    // Removed and not emptied: the leftover may be a link to something that isn't ours.
    if (Files().Remove(tempPath) != 0 && errno != ENOENT) {
        Report(error, "remove", tempPath);
        return kNoFile;
    }
    const FileHandle made = FileCreate(tempPath, error);
    if (made == kNoFile)
        Files().Remove(tempPath);  // it may have got as far as an empty file
    return made;
}

int CompactFile(FileHandle handle, const std::string& path, ProgressDisplay* progress, FileError* error)
{
    std::string tempPath;
    FileHandleOwner temp(CreateTempFile(tempPath, path, error));
    if (!temp) {
        if (progress)
            progress->ShowText("Program can't create \"" + tempPath + "\".");
        return 0;
    }
    if (!Rewrite(handle, temp.Get(), path, progress)) {
        Report(error, "write", tempPath);
        Files().Remove(tempPath);
        return 0;
    }
    const std::string realPath = RealPathOf(path);
    if (Files().Rename(tempPath, realPath) != 0) {
        Report(error, "rename", tempPath);
        Files().Remove(tempPath);
        if (progress)
            progress->ShowText("Compact: MoveFile: error.\r\n\"" + tempPath + "\"\r\nto\r\n\"" + path + "\"\r\n");
        return 0;
    }
    FlushFolderOf(realPath);
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
        switch (opening.kind) {
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
    if (!proven && !force)
        return RepairOutcome::Busy;
    SizeBlock sizes{};
    std::int64_t fileSize = 0;
    TableHeader header;
    if (!IsTableFile(handle.Get(), sizes, fileSize) || !FileReadWhole(handle.Get(), BytesOf(header), sizeof sizes))
        return RepairOutcome::NotTableFile;
    if (!force && header.openCount == 0)
        return RepairOutcome::Clean;
    if (CompactFile(handle.Get(), path, progress, error) != 1)
        return RepairOutcome::Failed;
    handle.Release();  // CompactFile has closed it
    return RepairOutcome::Compacted;
}

int CheckAfterCrash(const std::string& path, int force, ProgressDisplay* progress)
{
    const RepairOutcome outcome = RepairTable(path, force != 0, progress);
    return outcome == RepairOutcome::Clean || outcome == RepairOutcome::Compacted ? 1 : 0;
}

}  // namespace jotlet
