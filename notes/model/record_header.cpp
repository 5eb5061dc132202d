#include "notes/model/record_header.h"

#include <unistd.h>

#include <random>

#include "platform/base/text.h"
#include "store/table_file.h"

namespace jotlet {

std::uint64_t RandomId()
{
    static std::mt19937_64 generator;
    static pid_t seededBy = 0;  // a forked copy must not go on with its parent's numbers
    if (const pid_t self = getpid(); self != seededBy) {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
        generator.seed(seed);
        seededBy = self;
    }
    // 0 stands for "no note selected" elsewhere.
    std::uint64_t id = 0;
    while (id == 0)
        id = generator();
    return id;
}

void InitRecordHeader(const TableFile& file, RecordHeader& record, std::uint32_t recordSize, const Clock& clock)
{
    DateValue today;
    Today(today, clock);
    TimeValue now;
    Now(now, 5, clock);
    IdentityBlock owner{};
    TableHeader header;
    if (file.ReadHeader(header) == 1)
        owner = header.OwnerIdentity();

    record.recordSize = recordSize;
    record.active = 1;
    record.uniqueId = RandomId();
    record.confidential = 0;
    record.reserved15 = 0;
    record.locked = 0;
    record.category = {};
    record.reserved46 = {};
    record.subject = {};
    record.date = today;
    record.time = now;
    record.eventState = kEventNone;
    record.reserved547 = 0;
    record.eventStatus = 1;
    record.createdDate = today;
    record.createdTime = now;
    record.owner = owner;
    record.creator = owner;
}

}  // namespace jotlet
