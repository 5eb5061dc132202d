// An outbox file in a folder of its own, filled and read through the store alone.
#pragma once

#include "support/failing_file_system.h"
#include "tests/support/outbox_file.h"
#include "tests/support/temp_folder.h"

namespace jotlet::test {

inline constexpr std::uint64_t kEvent = 0x1122334455667788;
inline constexpr std::uint64_t kOtherEvent = 7;

class OutboxTest : public testing::Test {
protected:
    OutboxTest() { ResumeRefresh(); }
    ~OutboxTest() override { EXPECT_TRUE(IsRefreshEnabled()); }

    std::vector<std::string> People(std::uint64_t event = kEvent) { return file.People(event); }
    void Put(std::string_view name, std::uint8_t status, std::uint64_t event = kEvent)
    {
        file.Put(name, status, event);
    }
    std::unique_ptr<TableFile> HoldElsewhere(std::string_view name) { return file.Hold(name, held); }

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

    TempFolder scratch;
    std::string notePath = scratch.File("Work.jot");
    OutboxFile file{notePath};
    std::string path = file.Path();
    RecordAddress held = 0;
};

}  // namespace jotlet::test
