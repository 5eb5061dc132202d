#include "store/copies.h"

#include <fcntl.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <functional>
#include <optional>
#include <random>
#include <thread>
#include <utility>

#include "platform/base/file_lock.h"
#include "platform/base/file_system.h"
#include "platform/base/process_identity.h"
#include "platform/base/replace_file.h"
#include "platform/base/silent_drive.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

// The first place is nobody's: who enters writes there to learn the time.
constexpr std::size_t kPlaces = 200;
constexpr int kListAttempts = 20;
constexpr auto kListNap = std::chrono::milliseconds(100);
// A copy is taken for gone when its last sign of life is as old as this, by the server's clock.
constexpr std::int64_t kSilence = (kTurnSilenceMs + 2 * kTurnBeatMs) * 1'000'000LL;

struct Place {
    std::uint64_t entry;  // a number of its own for each entry; 0: free
    std::int64_t sign;    // when the copy gave its last sign of life but one, in nanoseconds of the server's clock
    std::int64_t since;
    std::uint64_t started;
    std::int32_t process;
    RecordAddress held[CopyEntry::kMostHeld];  // 0: none
    char system[120];
    char host[64];
    char user[64];
    char reserved[164];
};
static_assert(sizeof(Place) == 512);
constexpr std::int64_t kSignAt = offsetof(Place, sign);
constexpr std::int64_t kHeldAt = offsetof(Place, held);

std::int64_t OffsetOf(std::size_t place)
{
    return static_cast<std::int64_t>(place * sizeof(Place));
}

// Goes on while the computer sleeps: others don't.
std::int64_t ThisComputersMs()
{
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1'000'000;
}

template <typename Value>
std::span<std::byte> Bytes(Value& value)
{
    return std::as_writable_bytes(std::span<Value, 1>(&value, 1));
}

std::optional<std::vector<Place>> ReadPlaces(const SharedFile& list)
{
    const std::int64_t size = list.Size();
    if (size < 0)
        return std::nullopt;
    std::vector<Place> places(std::min(static_cast<std::size_t>(size) / sizeof(Place), kPlaces));
    if (!places.empty() && !list.Read(std::as_writable_bytes(std::span(places)), 0))
        return std::nullopt;
    return places;
}

// By its lock, where locks reach everybody. `table` must not be the handle that holds it.
bool IsLocked(FileHandle table, std::size_t place)
{
    FileLock probe;
    return probe.TakeExclusive(table, kFirstCopyByte + static_cast<std::int64_t>(place), 0) != LockOutcome::Taken;
}

bool IsAlive(const Place& place, std::int64_t now)
{
    const ProcessIdentity who{std::string(FieldText(place.system)), place.process, place.started};
    return !IsKnownDead(who) && now - place.sign <= kSilence;
}

Place NewPlace()
{
    Place place{};
    std::random_device random;
    place.entry = (std::uint64_t{random()} << 32 | random()) | 1;
    place.since =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch()).count();
    const ProcessIdentity here = ThisProcess();
    place.process = here.process;
    place.started = here.started;
    StoreText(place.system, here.system);
    StoreText(place.host, HostName());
    StoreText(place.user, UserName());
    return place;
}

// For the same people as the table.
FileHandle OpenList(const std::string& path, FileHandle table)
{
    FileHandleOwner list;
    // A drive may remember for a second a list that was removed elsewhere, and then not find it.
    for (int attempt = 0; attempt < kListAttempts; ++attempt) {
        list.Reset(Files().Open(path, O_RDWR | O_CREAT | O_NOFOLLOW, 0600));
        if (list || (errno != ENOENT && errno != ESTALE))
            break;
        std::this_thread::sleep_for(kListNap);
    }
    FileIdentity identity;
    if (!list || Files().Identify(list.Get(), identity) != 0 || !identity.isRegular)
        return kNoFile;
    FileIdentity model;
    if (identity.size == 0 && Files().Identify(table, model) == 0) {
        // The group first: a change of it may take mode bits away. Where it can't be given, nobody else gets in.
        const bool isGiven =
            model.group == identity.group || Files().ChangeOwner(list.Get(), kSameOwner, model.group) == 0;
        if (isGiven)
            Files().ChangeMode(list.Get(), model.mode & 0666);
    }
    return list.Release();
}

}  // namespace

std::string CopyListPath(const std::string& path)
{
    return RealPathOf(path) + ".copies";
}

std::string TurnFilePath(const std::string& path)
{
    return RealPathOf(path) + ".turn";
}

// The entry itself, and the thread that keeps it alive where locks stay on each machine. The thread owns it, too: in a
// call that a silent drive doesn't answer it may outlive the table.
class CopyEntry::Beating : public std::enable_shared_from_this<Beating> {
public:
    Beating(const SharedFile& table, const std::string& listPath, std::shared_ptr<TurnFile> turn)
        : table(table), listPath(listPath), turn(std::move(turn)), list(OpenList(listPath, table.Get()))
    {
    }

    void Begin()
    {
        if (!list || !Enter())
            return;
        isEntered = true;
        if (!table.GetDrive().locksTravel)
            thread = std::thread([self = shared_from_this()] { self->Run(); });
    }

    void End()
    {
        const auto tell = [this] { return isEnding = true; };
        Alone(false, tell);
        tell();
        wake.notify_all();
        if (thread.joinable() && IsOnSilentDrive(listPath))
            thread.detach();
        else if (thread.joinable())
            thread.join();
        if (!isEntered)
            return;
        Alone(false, [this] { return Leave(); });
        if (table.GetDrive().locksTravel)
            Files().Lock(table.Get(), kFirstCopyByte + static_cast<std::int64_t>(place), LockMode::Unlock);
    }

    // What `work` gives; `otherwise` when a silent drive keeps the thread in a call.
    template <typename Result, typename Work>
    Result Alone(Result otherwise, Work work)
    {
        std::unique_lock lock(guard, std::defer_lock);
        if (!IsOnSilentDrive(listPath))
            lock.lock();
        else if (!lock.try_lock())
            return otherwise;
        return work();
    }

    // Writes the last time known, and learns the present one by that.
    bool GiveSign()
    {
        FileIdentity identity;
        const std::int64_t asked = ThisComputersMs();
        if (!list.Write(Bytes(now), OffsetOf(place) + kSignAt) || !list.Settle())
            return false;
        signIsOf = nowIsOf;
        if (Files().IdentifyAtServer(list.Get(), identity) != 0)
            return false;
        now = identity.modified;
        nowIsOf = asked;
        return true;
    }

    // Nobody can have taken this copy for gone: the time that stands in its entry is too young.
    bool IsSure() const { return ThisComputersMs() - signIsOf < kTurnTrustMs; }

    // Opens the list anew where the drive has forgotten the old opening.
    std::optional<std::vector<Place>> Places()
    {
        auto places = ReadPlaces(list);
        if (places || FileErrorKindOf(errno) == FileErrorKind::None)
            return places;
        list.Reset(OpenList(listPath, table.Get()));
        return list ? ReadPlaces(list) : std::nullopt;
    }

    bool IsMine(const std::vector<Place>& places) const
    {
        return place < places.size() && places[place].entry == own.entry;
    }

    bool Lives(const Place& other, std::size_t at) const
    {
        return other.entry != 0 && (table.GetDrive().locksTravel ? IsLockedByAnother(at) : IsAlive(other, now));
    }

    const SharedFile& table;
    const std::string listPath;
    const std::shared_ptr<TurnFile> turn;
    mutable SharedFile list;
    Place own{};
    std::size_t place = 0;
    std::int64_t now = 0;
    // When this computer asked for `now`, and for what stands in the entry as its sign.
    std::int64_t nowIsOf = 0;
    std::int64_t signIsOf = 0;
    bool isEntered = false;

private:
    bool Enter()
    {
        const auto places = ReadPlaces(list);
        if (!places)
            return false;
        own = NewPlace();
        const bool byLock = table.GetDrive().locksTravel;
        // The time first: others are judged by it.
        if (!byLock && !GiveSign())
            return false;
        for (std::size_t at = 1; at < kPlaces && place == 0; ++at) {
            const bool isFree = byLock ? LockForHandleLife(table.Get(), kFirstCopyByte + static_cast<std::int64_t>(at),
                                                           true, 0) == LockOutcome::Taken
                                       : at >= places->size() || !Lives((*places)[at], at);
            if (isFree)
                place = at;
        }
        own.sign = now;
        signIsOf = nowIsOf;
        return place != 0 && list.Write(Bytes(own), OffsetOf(place)) && list.Settle();
    }

    bool Leave()
    {
        const auto places = ReadPlaces(list);
        if (!places || !IsMine(*places))
            return false;
        bool others = false;
        for (std::size_t at = 1; at < places->size(); ++at)
            others = others || (at != place && Lives((*places)[at], at));
        if (!others)
            return Files().Remove(listPath) == 0;
        Place free{};
        return list.Write(Bytes(free), OffsetOf(place)) && list.Settle();
    }

    bool IsLockedByAnother(std::size_t at) const
    {
        const FileHandleOwner probe(Files().OpenAgain(table.Get(), 0));
        return !probe || IsLocked(probe.Get(), at);
    }

    void Run()
    {
        std::unique_lock lock(guard);
        while (!wake.wait_for(lock, std::chrono::milliseconds(kTurnBeatMs), [this] { return isEnding.load(); })) {
            turn->Beat();
            // What is too young to be doubted need not be read.
            const auto places = IsSure() ? std::nullopt : Places();
            if (IsSure() || (places && IsMine(*places)))
                GiveSign();
        }
    }

    std::mutex guard;
    std::condition_variable wake;
    std::atomic<bool> isEnding{false};
    std::thread thread;
};

CopyEntry::CopyEntry(const SharedFile& table, const std::string& path, std::shared_ptr<TurnFile> turn)
    : beating(std::make_shared<Beating>(table, CopyListPath(path), std::move(turn)))
{
    beating->Begin();
}

CopyEntry::~CopyEntry()
{
    beating->End();
}

bool CopyEntry::IsEntered() const
{
    return beating->isEntered;
}

bool CopyEntry::IsStillEntered() const
{
    return beating->Alone(true, [this] {
        if (beating->IsSure())
            return true;
        const auto places = beating->Places();
        return !places || beating->IsMine(*places);
    });
}

bool CopyEntry::Holds(std::span<const RecordAddress> addresses)
{
    return beating->Alone(false, [&] {
        if (addresses.size() > kMostHeld)
            return false;
        std::array<RecordAddress, kMostHeld> held{};
        std::copy(addresses.begin(), addresses.end(), held.begin());
        return beating->list.Write(Bytes(held), OffsetOf(beating->place) + kHeldAt) && beating->list.Settle();
    });
}

bool CopyEntry::IsHeldElsewhere(RecordAddress address) const
{
    return beating->Alone(true, [&] {
        if (!beating->GiveSign())
            return true;
        const auto places = ReadPlaces(beating->list);
        if (!places)
            return true;
        for (std::size_t at = 1; at < places->size(); ++at) {
            const Place& other = (*places)[at];
            const bool holds = std::find(std::begin(other.held), std::end(other.held), address) != std::end(other.held);
            if (at != beating->place && holds && beating->Lives(other, at))
                return true;
        }
        return false;
    });
}

bool CopyEntry::AreOthersThere() const
{
    return beating->Alone(true, [this] {
        const auto places = beating->GiveSign() ? ReadPlaces(beating->list) : std::nullopt;
        if (!places)
            return true;
        for (std::size_t at = 1; at < places->size(); ++at)
            if (at != beating->place && beating->Lives((*places)[at], at))
                return true;
        return false;
    });
}

std::vector<CopyInfo> CopiesOf(const std::string& path)
{
    std::vector<CopyInfo> copies;
    const SharedFile list(Files().Open(CopyListPath(path), O_RDONLY | O_NOFOLLOW, 0));
    const SharedFile table(Files().Open(path, O_RDWR, 0));
    if (!list || !table)
        return copies;
    const auto places = ReadPlaces(list);
    FileIdentity identity;
    if (!places || Files().IdentifyAtServer(list.Get(), identity) != 0)
        return copies;
    for (std::size_t at = 1; at < places->size(); ++at) {
        const Place& place = (*places)[at];
        const bool isAlive =
            table.GetDrive().locksTravel ? IsLocked(table.Get(), at) : IsAlive(place, identity.modified);
        if (place.entry == 0 || !isAlive)
            continue;
        CopyInfo& copy = copies.emplace_back();
        copy.user = FieldText(place.user);
        copy.host = FieldText(place.host);
        copy.process = place.process;
        copy.since = place.since;
        for (const RecordAddress held : std::to_array(place.held))
            if (held != 0)
                copy.editing.push_back(held);
    }
    return copies;
}

}  // namespace jotlet
