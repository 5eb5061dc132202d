// The lives of a participant and of a note, a row of their tables a case, on real files.
#include <gmock/gmock.h>

#include "tests/net/core/outbox_fixture.h"

namespace jotlet {
namespace {

using test::kEvent;
using test::kOtherEvent;
using testing::ElementsAre;
using testing::IsEmpty;

class EventLife : public test::OutboxTest {
protected:
    // An event whose one participant has this status; 0: it has none.
    void Begin(int status)
    {
        PurgeEvent(notePath, kEvent);
        if (status > 0)
            Put("Ann", static_cast<std::uint8_t>(status));
    }
    // The participant's status after `happening`; "gone" when the record is.
    template <typename Happening>
    std::string StatusAfter(int from, Happening happening)
    {
        Begin(from);
        happening();
        const auto people = People();
        return people.empty() ? "gone" : people[0];
    }
    // As the participants dialog does it.
    void RemoveAnn(Outbox& outbox, const NoteRecord& note)
    {
        ASSERT_EQ(outbox.Slots().size(), 1u);
        const bool vanishes = VanishesWhenRemoved(outbox.Slots()[0].sendStatus, note.eventStatus);
        outbox.Remove(Person("Ann"), RemoveKey::Email, vanishes ? RemoveAction::Drop : RemoveAction::Cancel);
    }
};

TEST_F(EventLife, EveryStatusMovesOnByAChangeAWithdrawalAndARemoval)
{
    for (const std::uint8_t eventStatus : {kStatusNotAnnounced, kStatusWithdrawal, kStatusChange})
        for (const int from : {1, 2, 3, 4, 5, 6, 7, 8, 9, 255}) {
            SCOPED_TRACE(std::to_string(from) + " at " + std::to_string(eventStatus));
            const bool untold = from == kSendWaiting && eventStatus == kStatusNotAnnounced;
            const NoteRecord before = Note(kEventHasRecipients, eventStatus);
            NoteRecord note = before;
            EXPECT_EQ(StatusAfter(from, [&] { EXPECT_EQ(NotifyEvent(notePath, note, kNotifyChange), 1); }), "Ann:1");
            EXPECT_EQ(note.eventStatus, kStatusChange);

            note = before;
            EXPECT_EQ(StatusAfter(from, [&] { EXPECT_EQ(NotifyEvent(notePath, note, kNotifyWithdrawal), 1); }),
                      untold ? "gone" : "Ann:8");
            EXPECT_EQ(note.active, untold ? 0 : 1);
            EXPECT_EQ(note.eventState, kEventWithdrawn);
            EXPECT_EQ(note.eventStatus, kStatusWithdrawal);

            note = before;
            EXPECT_EQ(StatusAfter(from,
                                  [&] {
                                      Outbox outbox(notePath, kEvent);
                                      RemoveAnn(outbox, note);
                                      outbox.Commit(note);
                                  }),
                      untold || from == kSendRejected ? "gone" : "Ann:8");
        }
}

TEST_F(EventLife, CommitMovesTheNoteByItsStateAndWhoIsLeft)
{
    enum Change { None, Removed, Invited };
    struct Case {
        std::uint8_t state;
        int present;  // status of the one participant in the file; 0: none
        Change change;
        std::uint8_t stateAfter;
        int result;
    };
    for (const Case& c : {
             Case{0, 0, None, 0, kCommitted},
             Case{0, 0, Invited, 1, kCommittedWithWork},
             Case{1, 1, None, 1, kCommitted},
             Case{1, 1, Removed, 0, kCommitted},
             Case{1, 2, Removed, 1, kCommitted},  // stays as cancelled
             Case{1, 0, None, 0, kCommitted},
             Case{1, 3, Invited, 1, kCommitted},
             Case{2, 0, None, 0, kCommitted},
             Case{2, 5, Removed, 0, kCommitted},
             Case{2, 1, Removed, 0, kCommitted},  // nobody is left, so nothing is to be told
             Case{2, 3, None, 2, kCommitted},
             Case{2, 1, None, 1, kCommittedWithWork},
             Case{2, 3, Removed, 1, kCommittedWithWork},
         }) {
        SCOPED_TRACE(testing::Message() << int{c.state} << " with " << c.present << ", change " << c.change);
        Begin(c.present);
        Outbox outbox(notePath, kEvent);
        NoteRecord note = Note(c.state);
        if (c.change == Removed)
            RemoveAnn(outbox, note);
        else if (c.change == Invited)
            outbox.Add(Person("Bob"));
        EXPECT_EQ(outbox.Commit(note), c.result);
        EXPECT_EQ(note.eventState, c.stateAfter);
        EXPECT_EQ(note.eventStatus, kStatusNotAnnounced);
        EXPECT_EQ(note.active, 1);
    }
}

TEST_F(EventLife, OnlyAGroupEventIsNotifiedAndOnlyByAKnownMode)
{
    Put("Ann", 3);
    struct Case {
        std::uint8_t state;
        int mode;
        int result;
    };
    for (const Case& c : {Case{kEventNone, kNotifyWithdrawal, 0}, Case{5, 0, 1}, Case{5, 2, 1}, Case{5, 4, 1},
                          Case{kEventWithdrawn, kNotifyChange, 1}}) {
        NoteRecord note = Note(c.state);
        EXPECT_EQ(IsGroupEvent(note), c.result);
        EXPECT_EQ(NotifyEvent(notePath, note, c.mode), c.result);
        EXPECT_EQ(note.eventState, c.state);
        EXPECT_EQ(note.eventStatus, kStatusNotAnnounced);
    }
    EXPECT_THAT(People(), ElementsAre("Ann:3"));
}

TEST_F(EventLife, AllMeansAllAlsoPastThirtyAndOtherEventsAreNeverTouched)
{
    for (int i = 0; i < 33; ++i)
        for (const std::uint64_t event : {kEvent, kOtherEvent})
            Put("p" + std::to_string(i), 2, event);
    const auto others = People(kOtherEvent);
    NoteRecord note = Note(kEventHasRecipients);
    for (const auto& [mode, status] : {std::pair(kNotifyChange, ":1"), std::pair(kNotifyWithdrawal, ":8")}) {
        NotifyEvent(notePath, note, mode);
        EXPECT_THAT(People(), AllOf(testing::SizeIs(33), testing::Each(testing::EndsWith(status))));
    }
    EXPECT_EQ(PurgeEvent(notePath, kEvent), 1);
    EXPECT_THAT(People(), IsEmpty());
    note = Note(kEventHasRecipients, kStatusChange);
    EXPECT_EQ(NotifyEvent(notePath, note, kNotifyWithdrawal), 1);
    EXPECT_EQ(note.active, 0) << "nobody is left to be told";
    EXPECT_EQ(People(kOtherEvent), others);
}

TEST_F(EventLife, ARecordHeldByAnotherCopyStaysAndKeepsAWithdrawnNoteInTheFile)
{
    Put("Ann", 1);
    Put("Bob", 1);
    const auto other = HoldElsewhere("Ann");
    NoteRecord note = Note(kEventHasRecipients);
    NotifyEvent(notePath, note, kNotifyWithdrawal);
    EXPECT_EQ(note.active, 1);
    PurgeEvent(notePath, kEvent);
    other->UnlockRecord(held);
    EXPECT_THAT(People(), ElementsAre("Ann:1"));
}

TEST_F(EventLife, SuccessIsNeverClaimedForWhatIsNotOnTheDisk)
{
    for (const auto& [mode, done] : {std::pair(kNotifyChange, "Ann:1"), {kNotifyWithdrawal, "Ann:8"}, {0, "gone"}}) {
        int unnoticed = 0;
        std::string failedCall = "none yet";
        for (int call = 1; !failedCall.empty(); ++call) {
            SCOPED_TRACE(testing::Message() << "mode " << mode << ", call " << call << ", " << failedCall);
            std::filesystem::remove(path);
            NoteRecord note = Note(kEventHasRecipients);
            bool reached = false;
            test::FailingFileSystem disk;
            disk.failAt = call;
            const std::string status = StatusAfter(2, [&] {
                const ScopedFileSystem failing(disk);
                mode == 0 ? PurgeEvent(notePath, kEvent, &reached) : NotifyEvent(notePath, note, mode, &reached);
            });
            failedCall = disk.failedCall;
            EXPECT_TRUE(!reached || status == done) << status;
            EXPECT_EQ(note.active, 1);
            unnoticed += reached && !failedCall.empty();
        }
        EXPECT_EQ(unnoticed, 3) << "giving back the lock, and closing";
    }
}

TEST(StatusWord, HasAWordForEightNumbers)
{
    std::string word;
    for (const auto& [status, known] : {std::pair(1, "wait for send"), {8, "canceld"}, {0, "?"}, {9, "?"}, {-1, "?"}}) {
        EXPECT_EQ(StatusWord(status, word), known == std::string("?") ? 0 : 1);
        EXPECT_EQ(word, known);
    }
}

}  // namespace
}  // namespace jotlet
