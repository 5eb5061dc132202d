#include "platform/base/file_mapping.h"

#include <setjmp.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include "platform/base/file_system.h"

namespace jotlet {
namespace {

// Reading all of a larger file ahead would cost more memory than a scan is worth.
constexpr std::size_t kReadAheadLimit = 128u << 20;

// A piece of work that may be left by a jump when a byte between start and end can't be read.
struct Guard {
    sigjmp_buf jump;
    const std::byte* start;
    const std::byte* end;
    Guard* outer;
};

thread_local Guard* innermost = nullptr;
struct sigaction handlerBefore {};

void OnBusError(int signal, siginfo_t* info, void* context)
{
    const auto* address = static_cast<const std::byte*>(info->si_addr);
    for (Guard* guard = innermost; guard; guard = guard->outer)
        if (address >= guard->start && address < guard->end)
            siglongjmp(guard->jump, 1);
    // Not ours. Whoever stood here before us decides; without anybody the instruction fails again and ends the process.
    if (handlerBefore.sa_flags & SA_SIGINFO)
        handlerBefore.sa_sigaction(signal, info, context);
    else if (handlerBefore.sa_handler == SIG_DFL || handlerBefore.sa_handler == SIG_IGN)
        sigaction(SIGBUS, &handlerBefore, nullptr);
    else
        handlerBefore.sa_handler(signal);
}

bool InstallHandler()
{
    struct sigaction handler {};
    handler.sa_sigaction = OnBusError;
    // The handler leaves by a jump that doesn't restore the signal mask, so the signal must not be blocked in it.
    handler.sa_flags = SA_SIGINFO | SA_NODEFER | SA_ONSTACK;
    sigemptyset(&handler.sa_mask);
    return sigaction(SIGBUS, &handler, &handlerBefore) == 0;
}

}  // namespace

bool FileMapping::Cover(FileHandle handle, std::size_t size)
{
    if (start && size == length)
        return true;
    static const bool installed = InstallHandler();
    if (!installed || size == 0 || (!start && !Files().IsLocal(handle))) {
        Drop();
        return false;
    }
    void* mapped = start ? mremap(const_cast<std::byte*>(start), length, size, MREMAP_MAYMOVE)
                         : mmap(nullptr, size, PROT_READ, MAP_SHARED, handle, 0);
    if (mapped == MAP_FAILED) {
        Drop();
        return false;
    }
    const std::size_t pageMask = ~(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)) - 1);
    const std::size_t known = start && length < size ? length & pageMask : start ? size : 0;
    start = static_cast<const std::byte*>(mapped);
    length = size;
#ifdef MADV_POPULATE_READ
    // One call in place of a page fault every few slots. A failure only means that the faults come.
    if (size <= kReadAheadLimit && known < size)
        madvise(static_cast<std::byte*>(mapped) + known, size - known, MADV_POPULATE_READ);
#endif
    return true;
}

bool FileMapping::FlushPart(std::size_t offset, std::size_t size) const
{
    if (!start || size > length || offset > length - size)
        return false;
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t from = offset / page * page;
    return Files().SyncMapped({start + from, offset + size - from}) == 0;
}

void FileMapping::Drop()
{
    if (start)
        munmap(const_cast<std::byte*>(start), length);
    start = nullptr;
    length = 0;
}

void FileMapping::LetGoOfPages() const
{
    if (start)
        madvise(const_cast<std::byte*>(start), length, MADV_DONTNEED);
}

bool FileMapping::RunGuarded(void (*work)(void*), void* context) const
{
    Guard guard;
    guard.start = start;
    guard.end = start + length;
    guard.outer = innermost;
    if (sigsetjmp(guard.jump, 0) != 0) {
        innermost = guard.outer;
        return false;
    }
    innermost = &guard;
    work(context);
    innermost = guard.outer;
    return true;
}

}  // namespace jotlet
