// Two computers on one drive, in one process: the folder of the test is the server, and each thread that has called
// Join is a computer whose client keeps sizes and pages as it saw them first, and brings writes to the server late. At
// every call on a file the dice, which one seed decides, tell who goes on; so each seed is one interleaving.
#pragma once

#include <fcntl.h>

#include <condition_variable>
#include <map>
#include <mutex>
#include <random>
#include <set>

#include "support/failing_file_system.h"

namespace jotlet::test {

class CachingHosts : public FailingFileSystem {
public:
    explicit CachingHosts(const Drive& drive, unsigned seed) : drive(drive), dice(seed) {}

    // What the drive does not do although it was asked to: each stands for a measure that the store doesn't take.
    bool uncachedReadsAreCached = false, sizesAreCached = false, syncsDoNothing = false, locksAreOthers = false;
    // One call of so many fails; 0: none.
    unsigned failOneOf = 0;

    void Join(int host, int hosts)
    {
        me = host;
        std::unique_lock lock(guard);
        running.insert(host);
        joined.notify_all();
        joined.wait(lock, [&] { return static_cast<int>(running.size()) == hosts || started; });
        started = true;
        joined.wait(lock, [&] { return turn == me; });
    }
    void Leave()
    {
        const std::lock_guard lock(guard);
        running.erase(me);
        waiting.clear();
        me = -1;
        turn = running.empty() ? -1 : *running.begin();
        joined.notify_all();
    }

    int Open(const std::string& path, int flags, unsigned mode) override
    {
        Next();
        const int opened = FailingFileSystem::Open(path, flags & ~O_DIRECT, mode);
        if (opened < 0 && errno == EEXIST)
            Next(true);
        return Known(opened, (flags & O_DIRECT) != 0);
    }
    int OpenAgain(int handle, int flags) override
    {
        Next();
        if (IsStranger())
            return -1;
        const int again = FailingFileSystem::OpenAgain(handle, flags & ~O_DIRECT);
        return Known(again, (flags & O_DIRECT) != 0, handles[handle].host);
    }
    void Close(int handle) override
    {
        handles.erase(handle);
        FailingFileSystem::Close(handle);
    }
    std::int64_t ReadAt(int handle, std::span<std::byte> buffer, std::int64_t offset) override
    {
        Next();
        if (FailsNow())
            return -1;
        const Handle& file = handles[handle];
        if (file.isUncached && !uncachedReadsAreCached) {
            EXPECT_EQ(offset % 4096, 0);
            EXPECT_EQ(buffer.size() % 4096, 0u);
            return FailingFileSystem::ReadAt(handle, buffer, offset);
        }
        const std::string& bytes = Cached(handle).bytes;
        if (offset >= static_cast<std::int64_t>(bytes.size()))
            return 0;
        return static_cast<std::int64_t>(
            bytes.copy(reinterpret_cast<char*>(buffer.data()), buffer.size(), static_cast<std::size_t>(offset)));
    }
    std::int64_t WriteAt(int handle, std::span<const std::byte> buffer, std::int64_t offset) override
    {
        Next();
        if (FailsNow())
            return -1;
        Cache& cache = Cached(handle);
        const std::string_view text(reinterpret_cast<const char*>(buffer.data()), buffer.size());
        cache.bytes.resize(std::max(cache.bytes.size(), static_cast<std::size_t>(offset) + text.size()));
        cache.bytes.replace(static_cast<std::size_t>(offset), text.size(), text);
        if (handles[handle].isUncached)
            return FailingFileSystem::WriteAt(handle, buffer, offset);
        cache.late.emplace_back(offset, text);
        return static_cast<std::int64_t>(buffer.size());
    }
    int Sync(int handle) override
    {
        Next();
        if (FailsNow())
            return -1;
        if (!syncsDoNothing)
            BringToServer(handle);
        return 0;
    }
    int Truncate(int handle, std::int64_t size) override
    {
        Cached(handle).bytes.resize(static_cast<std::size_t>(size));
        return FailingFileSystem::Truncate(handle, size);
    }
    std::int64_t Size(int handle) override
    {
        return IsStranger() ? -1 : static_cast<std::int64_t>(Cached(handle).bytes.size());
    }
    int IdentifyAtServer(int handle, FileIdentity& out) override
    {
        Next();
        const int result = FailsNow() ? -1 : FailingFileSystem::IdentifyAtServer(handle, out);
        if (result == 0 && sizesAreCached)
            out.size = Size(handle);
        return result;
    }
    int IdentifyPathAtServer(const std::string& path, FileIdentity& out) override
    {
        Next();
        return FailsNow() ? -1 : FailingFileSystem::IdentifyPathAtServer(path, out);
    }
    int Lock(int handle, std::int64_t byte, LockMode mode) override
    {
        Next();
        if (mode != LockMode::Unlock && FailsNow())
            return -1;
        const int host = handles[handle].host;
        const bool isLocal = locksAreOthers || !drive.locksTravel;
        const int result = FailingFileSystem::Lock(handle, isLocal ? byte + ((host + 2LL) << 52) : byte, mode);
        if (result != 0)
            Next(true);
        if (mode == LockMode::Unlock)
            GaveBack();
        return result;
    }
    int Remove(const std::string& path) override
    {
        Next();
        const int result = FailingFileSystem::Remove(path);
        GaveBack();
        return result;
    }
    Drive DriveUnder(int) override { return drive; }
    bool IsLocal(int) override { return false; }

private:
    struct Handle {
        int host = -1;
        bool isUncached = false;
        std::uint64_t inode = 0;
    };
    struct Cache {
        std::string bytes;
        std::vector<std::pair<std::int64_t, std::string>> late;
        bool isFilled = false;
    };

    int Known(int handle, bool isUncached, int host = me)
    {
        FileIdentity identity;
        if (handle >= 0 && FailingFileSystem::Identify(handle, identity) == 0)
            handles[handle] = {host, isUncached, identity.inode};
        return handle;
    }
    Cache& Cached(int handle)
    {
        const Handle& file = handles[handle];
        Cache& cache = caches[{file.host, file.inode}];
        if (!cache.isFilled) {
            cache.bytes.resize(static_cast<std::size_t>(FailingFileSystem::Size(handle)));
            FailingFileSystem::ReadAt(handle, std::as_writable_bytes(std::span(cache.bytes)), 0);
            cache.isFilled = true;
        }
        return cache;
    }
    void BringToServer(int handle)
    {
        Cache& cache = Cached(handle);
        for (const auto& [offset, text] : std::exchange(cache.late, {}))
            FailingFileSystem::WriteAt(handle, std::as_bytes(std::span(text)), offset);
    }
    bool FailsNow()
    {
        errno = EIO;
        if (IsStranger())
            return true;
        if (failOneOf == 0 || me < 0 || dice() % failOneOf != 0)
            return false;
        constexpr int kReasons[] = {ESTALE, EIO, ETIMEDOUT};
        errno = kReasons[dice() % 3];
        return true;
    }
    // A thread that is no computer, while computers are at work: it gives signs of life, which nobody here waits for.
    bool IsStranger()
    {
        const std::lock_guard lock(guard);
        return me < 0 && !running.empty();
    }
    // Who goes on: anybody but who waits for somebody else to give something back.
    void Next(bool waits = false)
    {
        if (me < 0)
            return;
        const int before = errno;
        std::unique_lock lock(guard);
        if (waits)
            waiting.insert(me);
        if (waiting.size() == running.size())
            waiting.clear();
        auto next = std::next(running.begin(), static_cast<long>(dice() % running.size()));
        while (waiting.contains(*next))
            next = std::next(next) == running.end() ? running.begin() : std::next(next);
        turn = *next;
        joined.notify_all();
        joined.wait(lock, [this] { return turn == me; });
        errno = before;
    }
    void GaveBack()
    {
        const std::lock_guard lock(guard);
        waiting.clear();
    }

    inline static thread_local int me = -1;
    const Drive drive;
    std::minstd_rand dice;
    std::mutex guard;
    std::condition_variable joined;
    std::set<int> running, waiting;
    int turn = 0;
    bool started = false;
    std::map<int, Handle> handles;
    std::map<std::pair<int, std::uint64_t>, Cache> caches;
};

}  // namespace jotlet::test
