// The outbox file beside a note file, filled and read through the store alone: as an earlier run, another copy or the
// sending agent sees it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "net/core/outbox.h"
#include "platform/base/text.h"
#include "store/open_table.h"
#include "store/record_query.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"

namespace jotlet::test {

class OutboxFile {
public:
    explicit OutboxFile(std::string notePath) : notePath(std::move(notePath)) {}

    std::string Path() const { return notePath + ".tsi"; }

    // The live records of an event, as they lie in the file.
    std::vector<SendRecord> Records(std::uint64_t event) const
    {
        std::vector<SendRecord> records;
        const auto table = OpenTable(Path(), "", kSendRecordSize).table;
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

    // "name:status" of each of them, sorted.
    std::vector<std::string> People(std::uint64_t event) const
    {
        std::vector<std::string> people;
        for (const SendRecord& record : Records(event))
            people.push_back(std::string(FieldText(record.participantName)) + ':' + std::to_string(record.sendStatus));
        std::sort(people.begin(), people.end());
        return people;
    }

    // Puts a record into the file, which is made when there is none.
    void Put(std::string_view name, std::uint8_t status, std::uint64_t event) const
    {
        Outbox(notePath, 0).Open();
        const auto table = OpenTable(Path(), "", kSendRecordSize).table;
        ASSERT_NE(table, nullptr);
        SendRecord record = MakeInvitation(name, std::string(name) + "@x.example");
        record.uniqueId = RandomId();
        record.eventId = event;
        record.sendStatus = status;
        ASSERT_EQ(table->AddRecord(BytesOf(record)), 1);
    }

    // Keeps the record of `name` locked as another copy would, for as long as the result lives.
    std::unique_ptr<TableFile> Hold(std::string_view name, RecordAddress& held) const
    {
        auto table = OpenTable(Path(), "", kSendRecordSize).table;
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

private:
    std::string notePath;
};

}  // namespace jotlet::test
