#include "net/core/outbox.h"

#include <gmock/gmock.h>

#include <cstring>
#include <filesystem>

#include "tests/net/core/outbox_fixture.h"
#include "tests/support/child_process.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;
using test::kEvent;
using test::kOtherEvent;
using test::OutboxTest;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(OutboxTest, ASavedParticipantLiesInTheFileByteByByte)
{
    Outbox outbox(notePath, kEvent);
    EXPECT_TRUE(fs::exists(path)) << "the first use makes the file";
    EXPECT_THAT(outbox.Slots(), IsEmpty());
    outbox.Add(MakeInvitation("Ann", "ann@x.example"));
    EXPECT_EQ(outbox.Save(), 1);
    const std::string file = test::ReadAll(path);
    ASSERT_EQ(file.size(), 2625u + 908u);
    const std::string record = file.substr(2625);
    std::uint32_t size = 0;
    std::uint64_t event = 0;
    std::memcpy(&size, record.data(), 4);
    std::memcpy(&event, record.data() + 550, 8);
    EXPECT_EQ(size, 908u);
    EXPECT_EQ(record[4], 1);
    EXPECT_EQ(record[5], 0);
    EXPECT_EQ(record[549], 1);
    EXPECT_EQ(event, kEvent);
    EXPECT_EQ(record.substr(558, 50), "Ann" + std::string(47, '\0'));
    EXPECT_EQ(record.substr(608, 300), "ann@x.example" + std::string(287, '\0'));
    EXPECT_EQ(record.substr(78 + 1, 7), "Pinwell") << "the owner of the file";
    TableHeader header;
    ASSERT_EQ(OpenTable(path, "", kSendRecordSize).table->ReadHeader(header), 1);
    EXPECT_EQ(FieldText(header.fileType), "SendRecord");
    EXPECT_EQ(FieldText(header.family), "SendRecord");
    EXPECT_EQ(std::uint32_t{header.version}, 1u);
    EXPECT_EQ(std::uint32_t{header.openCount}, 1u) << "the outbox does not keep it open";
}

TEST_F(OutboxTest, SavingReplacesTheEventsRecordsAndNoOthers)
{
    Put("bob", 5);
    Put("Ann", 2);
    Put("Eve", 1, kOtherEvent);
    const auto other = Records(kOtherEvent);
    const auto before = Records(kEvent);
    Outbox outbox(notePath, kEvent);
    ASSERT_EQ(outbox.Slots().size(), 2u);
    EXPECT_EQ(FieldText(outbox.Slots()[0].participantName), "Ann") << "in the order of the names";
    EXPECT_EQ(outbox.Remove(Person("bob"), RemoveKey::Email, RemoveAction::Drop), 1);
    EXPECT_EQ(outbox.Add(Person("Cleo")), 1);
    EXPECT_EQ(outbox.Save(), 1);
    EXPECT_THAT(People(), ElementsAre("Ann:2", "Cleo:1"));
    EXPECT_NE(Records(kEvent)[0].uniqueId, before[0].uniqueId);
    ASSERT_EQ(Records(kOtherEvent).size(), 1u);
    EXPECT_EQ(std::memcmp(&other[0], Records(kOtherEvent).data(), sizeof(SendRecord)), 0);
    for (const SendRecord& record : Records(kEvent))
        EXPECT_EQ(record.locked, 0);

    EXPECT_EQ(outbox.Slots().size(), 2u);
    EXPECT_EQ(outbox.Save(), 1) << "a second save of the same object finds its own records";
    EXPECT_THAT(People(), ElementsAre("Ann:2", "Cleo:1"));
}

TEST_F(OutboxTest, AnEventHasRoomForThirtyTheDeadIncluded)
{
    Outbox outbox(notePath, kEvent);
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(outbox.Add(Person("p" + std::to_string(i))), 1);
    EXPECT_EQ(outbox.Add(Person("late")), 0);
    EXPECT_EQ(outbox.Remove(Person("p3"), RemoveKey::Name, RemoveAction::Drop), 1);
    EXPECT_EQ(outbox.Add(Person("late")), 0);
    outbox.Save();
    EXPECT_EQ(outbox.Slots().size(), 29u);
    EXPECT_EQ(outbox.Add(Person("late")), 1);
    outbox.Save();
    EXPECT_EQ(People().size(), 30u);
}

TEST_F(OutboxTest, ADeadSlotIsTakenAgainAndItsOldRecordGoes)
{
    Put("Ann", 1);
    Put("Bob", 1);
    Outbox outbox(notePath, kEvent);
    EXPECT_EQ(outbox.Remove(Person("Ann"), RemoveKey::Email, RemoveAction::Drop), 1);
    EXPECT_EQ(outbox.Remove(Person("Ann"), RemoveKey::Email, RemoveAction::Drop), 0);
    EXPECT_EQ(outbox.Add(Person("Cleo")), 1);
    ASSERT_EQ(outbox.Slots().size(), 2u);
    EXPECT_EQ(FieldText(outbox.Slots()[0].participantName), "Cleo");
    outbox.Save();
    EXPECT_THAT(People(), ElementsAre("Bob:1", "Cleo:1"));
}

TEST_F(OutboxTest, RemoveComparesItsKeyExactly)
{
    Outbox outbox(notePath, kEvent);
    outbox.Add(MakeInvitation("Ann", "one@x.example"));
    outbox.Add(MakeInvitation("Ann", "two@x.example"));
    EXPECT_EQ(outbox.Remove(MakeInvitation("Ann", "TWO@x.example"), RemoveKey::Email, RemoveAction::Cancel), 0);
    EXPECT_EQ(outbox.Remove(MakeInvitation("ann", ""), RemoveKey::Name, RemoveAction::Cancel), 0);
    EXPECT_EQ(outbox.Remove(MakeInvitation("", "two@x.example"), RemoveKey::Email, RemoveAction::Cancel), 1);
    EXPECT_EQ(outbox.Slots()[0].sendStatus, kSendWaiting);
    EXPECT_EQ(outbox.Slots()[1].sendStatus, kSendCancelled);
    EXPECT_EQ(outbox.Remove(MakeInvitation("Ann", ""), RemoveKey::Name, RemoveAction::Drop), 1);
    EXPECT_EQ(outbox.Slots()[0].active, 0);
}

TEST_F(OutboxTest, The31stRecordIsNeitherLoadedNorDeleted)
{
    for (int i = 0; i < 32; ++i)
        Put("p" + std::to_string(100 + i), 2);
    Outbox outbox(notePath, kEvent);
    EXPECT_EQ(outbox.Slots().size(), 30u);
    for (int i = 0; i < 30; ++i)
        outbox.Remove(Person("p" + std::to_string(100 + i)), RemoveKey::Email, RemoveAction::Drop);
    outbox.Save();
    EXPECT_THAT(People(), ElementsAre("p130:2", "p131:2"));
}

TEST_F(OutboxTest, ARecordHeldByAnotherCopyIsNotShownAndStaysWhateverIsSaved)
{
    Put("Ann", 2);
    Put("Bob", 2);
    {
        const auto other = HoldElsewhere("Ann");
        Outbox outbox(notePath, kEvent);
        ASSERT_EQ(outbox.Slots().size(), 1u);
        other->UnlockRecord(held);
        outbox.Save();  // Ann was never loaded: she is not to vanish
    }
    EXPECT_THAT(People(), ElementsAre("Ann:2", "Bob:2"));
    Outbox outbox(notePath, kEvent);
    {
        const auto other = HoldElsewhere("Bob");
        outbox.Remove(Person("Ann"), RemoveKey::Email, RemoveAction::Drop);
        outbox.Remove(Person("Bob"), RemoveKey::Email, RemoveAction::Drop);
        outbox.Save();
    }
    EXPECT_THAT(People(), ElementsAre("Bob:2"));
}

TEST_F(OutboxTest, TwoCopiesThatSaveOneEventLoseNobodyAndListNobodyTwice)
{
    Put("Ann", 2);
    Put("Ann", 3);
    Outbox first(notePath, kEvent);
    Outbox second(notePath, kEvent);
    first.Add(Person("Bob"));
    second.Add(Person("Cleo"));
    first.Save();
    second.Save();
    EXPECT_THAT(People(), ElementsAre("Ann:2", "Ann:3", "Bob:1", "Cleo:1")) << "two records of one person stay two";
}

TEST_F(OutboxTest, ADamagedRecordIsCarriedAlongAsItIs)
{
    Put("Ann", 2);
    std::string bytes = test::ReadAll(path);
    bytes.replace(2625 + 558, 350, 350, '\xFF');  // name and e-mail without a terminator
    bytes += std::string(500, 'x');               // and a record that was cut short
    test::WriteAll(path, bytes);
    {
        Outbox outbox(notePath, kEvent);
        ASSERT_EQ(outbox.Slots().size(), 1u);
        EXPECT_EQ(outbox.Remove(Person("Ann"), RemoveKey::Email, RemoveAction::Drop), 0);
        outbox.Add(Person("Bob"));
        outbox.Save();
        EXPECT_EQ(outbox.FailedWrites(), 0);
    }
    EXPECT_THAT(People(), ElementsAre("Bob:1", std::string(50, '\xFF') + ":2"));
}

TEST_F(OutboxTest, TheRefreshSwitchIsFoundAgainAsItWas)
{
    Put("Ann", 2);
    for (const bool enabled : {true, false}) {
        enabled ? ResumeRefresh() : SuspendRefresh();
        Outbox outbox(notePath, kEvent);
        EXPECT_EQ(IsRefreshEnabled(), enabled);
        outbox.Save();
        EXPECT_EQ(IsRefreshEnabled(), enabled);
        NoteRecord note = Note(kEventHasRecipients);
        NotifyEvent(notePath, note, kNotifyChange);
        EXPECT_EQ(IsRefreshEnabled(), enabled);
        PurgeEvent(notePath, kEvent);
        EXPECT_EQ(IsRefreshEnabled(), enabled);
    }
    ResumeRefresh();
}

TEST_F(OutboxTest, AFileThatIsNoOutboxIsLeftAloneAndSaidSo)
{
    for (const std::string& bytes :
         {std::string("\xFF\xD8\xFF\xE0 a picture"), std::string(), std::string(5000, '\xFF')}) {
        test::WriteAll(path, bytes);
        Outbox outbox(notePath, kEvent);
        EXPECT_FALSE(outbox.CanOpenFile());
        EXPECT_THAT(outbox.Slots(), IsEmpty());
        outbox.Add(Person("Ann"));
        EXPECT_EQ(outbox.Save(), 1);
        EXPECT_EQ(outbox.FailedWrites(), 1);
        EXPECT_EQ(PurgeEvent(notePath, kEvent), 1);
        NoteRecord note = Note(kEventHasRecipients);
        EXPECT_EQ(NotifyEvent(notePath, note, kNotifyWithdrawal), 1);
        EXPECT_EQ(note.active, 1) << "nobody knows who was invited";
        EXPECT_EQ(test::ReadAll(path), bytes);
    }
    Outbox gone(scratch.File("gone/Work.jot"), kEvent);
    EXPECT_FALSE(gone.CanOpenFile());
    gone.Add(Person("Ann"));
    gone.Save();
    EXPECT_EQ(gone.FailedWrites(), 1);
    EXPECT_THAT(gone.Slots(), IsEmpty());
}

TEST_F(OutboxTest, AKillDuringASaveLosesNobodyWhoStaysInvited)
{
    Put("Ann", 2);
    Put("Bob", 3);
    Put("Eve", 1, kOtherEvent);
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        test::Signal running;
        test::ChildProcess copy([&] {
            for (int i = 0;; ++i) {
                Outbox outbox(notePath, kEvent);
                if (outbox.Remove(Person("Guest"), RemoveKey::Email, RemoveAction::Drop) == 0)
                    outbox.Add(Person("Guest"));
                outbox.Save();
                if (i == 0)
                    running.Give();
            }
            return 0;
        });
        ASSERT_TRUE(running.Await());
        usleep(static_cast<useconds_t>(round * 137 % 4000));
        copy.Kill();
        copy.Wait();
        auto people = People();
        std::erase(people, "Guest:1");
        // A kill between an add and a delete may leave a name twice, never not at all.
        people.erase(std::unique(people.begin(), people.end()), people.end());
        ASSERT_THAT(people, ElementsAre("Ann:2", "Bob:3"));
        ASSERT_THAT(People(kOtherEvent), ElementsAre("Eve:1"));
    }
    EXPECT_LE(People().size(), 4u) << "a guest may be left behind, but they do not pile up";
}

}  // namespace
}  // namespace jotlet
