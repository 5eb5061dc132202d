// An outbox file in a folder of its own, filled and read through the store alone.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "net/core/outbox.h"
#include "platform/base/text.h"
#include "store/open_table.h"
#include "store/record_query.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"
#include "tests/support/temp_folder.h"

namespace jotlet::test {

inline constexpr std::uint64_t kEvent = 0x1122334455667788;
inline constexpr std::uint64_t kOtherEvent = 7;

class OutboxTest : public testing::Test {
protected:
    OutboxTest() { ResumeRefresh(); }

    // Name and status of each live record of the event, in name order.
    std::vector<std::string> People(std::uint64_t event = kEvent)
    {
        std::vector<std::string> people;
        for (const SendRecord& record : Records(event))
            people.push_back(std::string(FieldText(record.participantName)) + ':' + std::to_string(record.sendStatus));
        std::sort(people.begin(), people.end());
        return people;
    }

    std::vector<SendRecord> Records(std::uint64_t event)
    {
        std::vector<SendRecord> records;
        const auto table = OpenTable(path, "", kSendRecordSize).table;
        EXPECT_NE(table, nullptr);
        const FieldRange whole{0, kSendRecordSize};
        if (table)
            table->ForEachRecord(std::span(&whole, 1), [&](RecordAddress, std::span<const std::byte> bytes) {
                SendRecord record;
                std::copy(bytes.begin(), bytes.end(), BytesOf(record).begin());
                if (record.eventId == event)
                    records.push_back(record);
                return true;
            });
        return records;
    }

    // Puts a record into the file as an earlier run or the sending agent would have left it.
    void Put(std::string_view name, std::uint8_t status, std::uint64_t event = kEvent)
    {
        Outbox(notePath, 0).Open();  // makes the file
        const auto table = OpenTable(path, "", kSendRecordSize).table;
        ASSERT_NE(table, nullptr);
        SendRecord record = MakeInvitation(name, std::string(name) + "@x.example");
        record.uniqueId = RandomId();
        record.eventId = event;
        record.sendStatus = status;
        ASSERT_EQ(table->AddRecord(BytesOf(record)), 1);
    }

    // Keeps the record of `name` locked as another copy would, for as long as the result lives.
    std::unique_ptr<TableFile> HoldElsewhere(std::string_view name)
    {
        auto table = OpenTable(path, "", kSendRecordSize).table;
        RecordQuery query;
        query.Reset();
        query.PrepareResults();
        query.AddTextTerm(kParticipantNameOffset, kParticipantNameSize, TermKind::Equal, name, Connective::And);
        EXPECT_EQ(table->RunQuery(query), 1);
        EXPECT_EQ(query.resultCount, 1);
        held = query.resultCount > 0 ? query.results[0] : 0;
        EXPECT_EQ(table->LockRecord(held), 1);
        ResumeRefresh();  // the other copy's switch is not ours
        return table;
    }

    static NoteRecord Note(std::uint8_t eventState, std::uint8_t eventStatus = kStatusNotAnnounced)
    {
        NoteRecord note{};
        note.recordSize = kNoteRecordSize;
        note.active = 1;
        note.uniqueId = kEvent;
        note.eventState = eventState;
        note.eventStatus = eventStatus;
        return note;
    }

    static SendRecord Person(std::string_view name) { return MakeInvitation(name, std::string(name) + "@x.example"); }

    // As the participants dialog does it.
    static int RemoveByRule(Outbox& outbox, std::string_view name, std::uint8_t eventStatus)
    {
        for (const SendRecord& slot : outbox.Slots())
            if (slot.active == 1 && FieldText(slot.participantName) == name)
                return outbox.Remove(
                    Person(name), RemoveKey::Email,
                    VanishesWhenRemoved(slot.sendStatus, eventStatus) ? RemoveAction::Drop : RemoveAction::Cancel);
        return 0;
    }

    TempFolder scratch;
    std::string notePath = scratch.File("Work.jot");
    std::string path = scratch.File("Work.jot.tsi");
    RecordAddress held = 0;
};

}  // namespace jotlet::test
