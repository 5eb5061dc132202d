// Two computers at work on one file of a drive that caches: nothing that was confirmed is lost, whatever the order.
#include <chrono>
#include <thread>

#include "store/stamp_watch.h"
#include "support/caching_hosts.h"
#include "table_fixture.h"

namespace jotlet::test {
namespace {

constexpr int kHosts = 2;
constexpr int kSteps = 12;
constexpr Drive kUncachedWrites{.isCoherent = false, .writesDirect = true};                  // as NFS and SMB
constexpr Drive kLateWrites{.isCoherent = false, .sizeFollowsRead = true};                   // as GlusterFS
constexpr Drive kLocalLocks{.isCoherent = false, .locksTravel = false, .asksAtOpen = true};  // as sshfs

struct Told {
    std::map<std::uint64_t, RecordAddress> added;
    std::set<std::uint64_t> perhaps;  // adds that failed
    int counted = 0, perhapsCounted = 0;
};

class SharedDriveTest : public TableTest {
protected:
    SharedDriveTest()
    {
        counter = Add({.title = "counter"});
        table->Close();
        fresh = ReadAll(path);
    }

    // One computer: adds notes, deletes some of its own, and counts up the shared one.
    void Work(int host, Told& told)
    {
        TableFile mine(path, "");
        Record record = RecordOf({.title = "x"});
        for (int step = 1; step <= kSteps && mine.IsOpen(); ++step) {
            const std::uint64_t id = static_cast<std::uint64_t>(host + 1) * 1000 + static_cast<std::uint64_t>(step);
            if (step % 2 == 0) {
                if (mine.LockRecord(counter) != 1)
                    continue;
                const bool isRead = mine.ReadRecord(record, counter) == 1;
                std::uint64_t count = 0;
                std::memcpy(&count, record.data() + kTextAt, sizeof count);
                Put(record, kTextAt, count + 1);
                const bool isDone = isRead && mine.WriteRecord(record, counter) == 1;
                told.counted += isDone;
                told.perhapsCounted += isRead && !isDone;
                mine.UnlockRecord(counter);
            } else if (step % 5 == 0 && !told.added.empty()) {
                const auto gone = told.added.begin();
                if (mine.LockRecord(gone->second) == 1) {
                    mine.DeleteRecord(gone->second);
                    mine.UnlockRecord(gone->second);
                    told.perhaps.insert(gone->first);
                    told.added.erase(gone);
                }
            } else {
                RecordAddress address = 0;
                if (mine.AddRecord(RecordOf({.title = "note", .id = id}), &address) == 1)
                    told.added[id] = address;
                else
                    told.perhaps.insert(id);
            }
        }
    }

    // What is wrong after one interleaving; empty when all is there.
    std::string Run(CachingHosts& hosts)
    {
        WriteAll(path, fresh);
        std::array<Told, kHosts> told;
        {
            const ScopedFileSystem scope(hosts);
            std::vector<std::thread> threads;
            for (int host = 0; host < kHosts; ++host)
                threads.emplace_back([&, host] {
                    hosts.Join(host, kHosts);
                    Work(host, told[static_cast<std::size_t>(host)]);
                    hosts.Leave();
                });
            for (std::thread& thread : threads)
                thread.join();
        }
        return Compare(told);
    }

    std::string Compare(const std::array<Told, kHosts>& told)
    {
        TableFile after(path, "");
        std::map<std::uint64_t, RecordAddress> found;
        std::string faults;
        std::uint64_t count = 0;
        const std::vector<FieldRange> fields = {{offsetof(RecordPrefix, uniqueId), 8}, {kTextAt, 8}};
        after.ForEachRecord(fields, [&](RecordAddress address, std::span<const std::byte> bytes) {
            std::uint64_t id = 0;
            std::memcpy(&id, bytes.data(), sizeof id);
            if (address == counter)
                std::memcpy(&count, bytes.data() + 8, sizeof count);
            else if (!found.emplace(id, address).second)
                faults += " doubled " + std::to_string(id);
            return true;
        });
        std::uint64_t least = 0, most = 0;
        for (const Told& one : told) {
            for (const auto& [id, address] : one.added)
                if (found[id] != address)
                    faults += " lost or moved " + std::to_string(id);
            least += static_cast<std::uint64_t>(one.counted);
            most += static_cast<std::uint64_t>(one.counted + one.perhapsCounted);
        }
        if (count < least || count > most)
            faults += " counted " + std::to_string(count) + " of " + std::to_string(least);
        return faults;
    }

    RecordAddress counter = 0;
    std::string fresh;
};

TEST_F(SharedDriveTest, NothingIsLostInAnyOrderAndWhateverCallFails)
{
    for (const Drive& drive : {kUncachedWrites, kLateWrites, kLocalLocks}) {
        for (unsigned seed = 1; seed <= (drive.locksTravel ? 160u : 10u); ++seed) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << (drive.writesDirect ? " direct" : " late"));
            CachingHosts hosts(drive, seed);
            hosts.failOneOf = seed % 2 == 0 && drive.locksTravel ? 40 : 0;
            ASSERT_EQ(Run(hosts), "");
        }
    }
}

TEST_F(SharedDriveTest, ALossIsSeenWithAnyOneMeasureTakenOut)
{
    struct Case {
        const char* measure;
        Drive drive;
        bool CachingHosts::*withoutIt;
    };
    for (const Case& c : {Case{"reads round the cache", kUncachedWrites, &CachingHosts::uncachedReadsAreCached},
                          Case{"sizes from the server", kLateWrites, &CachingHosts::sizesAreCached},
                          Case{"writes there before the turn ends", kLateWrites, &CachingHosts::syncsDoNothing},
                          Case{"turns", kUncachedWrites, &CachingHosts::locksAreOthers}}) {
        SCOPED_TRACE(c.measure);
        const auto begin = std::chrono::steady_clock::now();
        std::string faults;
        for (unsigned seed = 1; faults.empty() && std::chrono::steady_clock::now() - begin < std::chrono::seconds(1);
             ++seed) {
            CachingHosts hosts(c.drive, seed);
            hosts.*c.withoutIt = true;
            faults = Run(hosts);
        }
        EXPECT_NE(faults, "");
    }
}

}  // namespace
}  // namespace jotlet::test
