#include "platform/base/shared_file.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/base/file_system.h"

namespace jotlet {
namespace {

// What uncached reads must be aligned to, in the file and in memory, on every drive.
constexpr std::int64_t kPage = 4096;
// Larger files no drive's client takes for small; they don't shrink while a table is open.
constexpr std::int64_t kRememberedSize = 1 << 20;

// Bytes from the aligned `offset` on, up to `size` or the end of the file; -1 on a failure.
std::int64_t ReadPages(FileHandle handle, std::byte* pages, std::int64_t size, std::int64_t offset)
{
    std::int64_t have = 0;
    while (have < size) {
        const std::int64_t moved =
            Files().ReadAt(handle, {pages + have, static_cast<std::size_t>(size - have)}, offset + have);
        if (moved < 0)
            return -1;
        have += moved;
        if (moved == 0 || moved % kPage != 0)
            break;
    }
    return have;
}

}  // namespace

void SharedFile::Reset(FileHandle next)
{
    EndTurn();
    uncached.Reset();
    handle.Reset(next);
    hasUncached = true;
    isUnsettled = false;
    lastSize = 0;
    drive = next == kNoFile || Files().IsLocal(next) ? Drive{} : Files().DriveUnder(next);
}

void SharedFile::BeginTurn(std::int64_t size)
{
    isInTurn = true;
    turnSize = size;
}

void SharedFile::EndTurn()
{
    isInTurn = false;
    turnView.Reset();
    turnSize = -1;
}

FileHandle SharedFile::Release()
{
    EndTurn();
    uncached.Reset();
    return handle.Release();
}

FileHandle SharedFile::Uncached(FileHandleOwner& opened) const
{
    const auto open = [&](int flags) { return Files().OpenAgain(handle.Get(), flags); };
    if (drive.asksAtOpen) {
        if (turnView)
            return turnView.Get();
        FileHandleOwner& view = isInTurn ? turnView : opened;
        view.Reset(hasUncached ? open(O_DIRECT) : open(0));
        if (!view && hasUncached && errno == EINVAL) {
            hasUncached = false;
            view.Reset(open(0));
        }
        return view.Get();
    }
    if (hasUncached && !uncached) {
        uncached.Reset(open(O_DIRECT));
        hasUncached = static_cast<bool>(uncached) || errno != EINVAL;
    }
    return hasUncached ? uncached.Get() : handle.Get();
}

bool SharedFile::ReadAround(std::span<std::byte> buffer, std::int64_t offset) const
{
    FileHandleOwner opened;
    const FileHandle source = Uncached(opened);
    if (source == kNoFile)
        return false;
    if (!hasUncached || (drive.sizeFollowsRead && lastSize <= kRememberedSize))
        Files().ForgetPages(source);
    const auto wanted = static_cast<std::int64_t>(buffer.size());
    const std::int64_t from = offset / kPage * kPage;
    const std::int64_t size = (offset + wanted + kPage - 1) / kPage * kPage - from;
    const std::unique_ptr<std::byte, decltype(&std::free)> pages(
        static_cast<std::byte*>(std::aligned_alloc(kPage, static_cast<std::size_t>(size))), &std::free);
    if (!pages)
        return false;
    const std::int64_t have = ReadPages(source, pages.get(), size, from);
    if (have < offset - from + wanted) {
        errno = have < 0 ? errno : 0;
        return false;
    }
    std::memcpy(buffer.data(), pages.get() + (offset - from), buffer.size());
    return true;
}

bool SharedFile::Read(std::span<std::byte> buffer, std::int64_t offset) const
{
    return drive.isCoherent ? FileReadWhole(handle.Get(), buffer, offset) : ReadAround(buffer, offset);
}

bool SharedFile::Write(std::span<const std::byte> buffer, std::int64_t offset)
{
    if (drive.isCoherent)
        return FileWriteWhole(handle.Get(), buffer, offset);
    turnView.Reset();
    turnSize = -1;
    FileHandleOwner unused;
    if (drive.writesDirect && Uncached(unused) != kNoFile && hasUncached)
        return FileWriteWhole(uncached.Get(), buffer, offset);
    isUnsettled = true;
    return FileWriteWhole(handle.Get(), buffer, offset);
}

bool SharedFile::Settle()
{
    if (isUnsettled)
        isUnsettled = Files().Sync(handle.Get()) != 0;
    return !isUnsettled;
}

std::int64_t SharedFile::Size(SizeAsked when) const
{
    if (drive.isCoherent)
        return FileSize(handle.Get());
    if (turnSize >= 0)
        return turnSize;
    if (std::byte first{}; drive.sizeFollowsRead && when == SizeAsked::Anytime)
        ReadAround({&first, 1}, 0);
    FileHandleOwner opened;
    FileIdentity identity;
    const FileHandle source = Uncached(opened);
    if (source == kNoFile || Files().IdentifyAtServer(source, identity) != 0)
        return -1;
    lastSize = identity.size;
    return lastSize;
}

bool SharedFile::ReadFrom(FileHandle handle, std::span<std::byte> buffer, std::int64_t offset)
{
    SharedFile file(handle);
    const bool isRead = file.Read(buffer, offset);
    file.Release();
    return isRead;
}

std::int64_t SharedFile::SizeOf(FileHandle handle)
{
    SharedFile file(handle);
    const std::int64_t size = file.Size();
    file.Release();
    return size;
}

}  // namespace jotlet
