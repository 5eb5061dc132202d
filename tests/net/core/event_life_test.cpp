// The lives of a participant and of a note, a row of their tables a case, on real files.
#include <gmock/gmock.h>

#include "tests/net/core/outbox_fixture.h"

namespace jotlet {
namespace {

using test::kEvent;
using test::kOtherEvent;
using test::OutboxTest;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kAnyStatus[] = {1, 2, 3, 4, 5, 6, 7, 8, 0, 9, 255};

class EventLife : public OutboxTest {
protected:
    // The participant's status after `happening`; "gone" when the record is.
    template <typename Happening>
    std::string StatusAfter(int from, Happening happening)
    {
        PurgeEvent(notePath, kEvent);
        Put("Ann", static_cast<std::uint8_t>(from));
        happening();
        const auto people = People();
        return people.empty() ? "gone" : people[0];
    }
};

TEST_F(EventLife, AnAnnouncedChangeMakesEverybodyWait)
{
    for (const int from : kAnyStatus)
        EXPECT_EQ(StatusAfter(from,
                              [&] {
                                  NoteRecord note = Note(kEventHasRecipients);
                                  EXPECT_EQ(NotifyEvent(notePath, note, kNotifyChange), 1);
                              }),
                  "Ann:1")
            << from;
}

TEST_F(EventLife, ARemovedParticipantGoesOrIsToldByTheirStatus)
{
    for (const std::uint8_t eventStatus : {kStatusNotAnnounced, kStatusWithdrawal, kStatusChange})
        for (const int from : {1, 2, 3, 4, 5, 6, 7, 8}) {
            const bool goes = from == 5 || (from == 1 && eventStatus == kStatusNotAnnounced);
            EXPECT_EQ(StatusAfter(from,
                                  [&] {
                                      Outbox outbox(notePath, kEvent);
                                      NoteRecord note = Note(kEventHasRecipients, eventStatus);
                                      EXPECT_EQ(RemoveByRule(outbox, "Ann", eventStatus), 1);
                                      outbox.Commit(note);
                                  }),
                      goes ? "gone" : "Ann:8")
                << from << " at " << int{eventStatus};
        }
}

TEST_F(EventLife, AWithdrawalDropsWhoWasNeverToldAndTellsTheRest)
{
    for (const std::uint8_t eventStatus : {kStatusNotAnnounced, kStatusWithdrawal, kStatusChange})
        for (const int from : kAnyStatus) {
            const bool goes = from == 1 && eventStatus == kStatusNotAnnounced;
            NoteRecord note = Note(kEventHasRecipients, eventStatus);
            EXPECT_EQ(StatusAfter(from, [&] { EXPECT_EQ(NotifyEvent(notePath, note, kNotifyWithdrawal), 1); }),
                      goes ? "gone" : "Ann:8")
                << from << " at " << int{eventStatus};
            EXPECT_EQ(note.active, goes ? 0 : 1);
            EXPECT_EQ(note.eventState, kEventWithdrawn);
            EXPECT_EQ(note.eventStatus, kStatusWithdrawal);
        }
}

TEST_F(EventLife, ANoteWithoutParticipantsStaysOrdinaryAndNothingIsWritten)
{
    Put("Eve", 1, kOtherEvent);
    const std::string before = test::ReadAll(path);
    Outbox outbox(notePath, kEvent);
    outbox.Add(Person("Ann"));
    RemoveByRule(outbox, "Ann", kStatusNotAnnounced);
    NoteRecord note = Note(kEventNone);
    EXPECT_EQ(outbox.Commit(note), kCommitted);
    EXPECT_EQ(note.eventState, kEventNone);
    EXPECT_EQ(test::ReadAll(path), before);
    outbox.Add(Person("Ann"));
    EXPECT_EQ(outbox.Commit(note), kCommittedWithWork) << "with somebody it becomes an event";
    EXPECT_THAT(People(), ElementsAre("Ann:1"));
    EXPECT_EQ(note.eventState, kEventHasRecipients);
    EXPECT_EQ(note.eventStatus, kStatusNotAnnounced);
}

TEST_F(EventLife, CommitMovesTheNoteByItsStateAndWhoIsLeft)
{
    struct Case {
        std::uint8_t state;
        int present;  // status of the one participant in the file; 0: none
        bool removed;
        std::uint8_t stateAfter;
        int result;
    };
    for (const Case& c : {
             Case{0, 0, false, 0, kCommitted},
             Case{1, 1, false, 1, kCommitted},
             Case{1, 1, true, 0, kCommitted},
             Case{1, 2, true, 1, kCommitted},  // stays as cancelled
             Case{1, 0, false, 0, kCommitted},
             Case{2, 0, false, 0, kCommitted},
             Case{2, 5, true, 0, kCommitted},
             Case{2, 1, true, 0, kCommitted},  // nobody is left, so nothing is to be told
             Case{2, 3, false, 2, kCommitted},
             Case{2, 1, false, 1, kCommittedWithWork},
             Case{2, 3, true, 1, kCommittedWithWork},
         }) {
        SCOPED_TRACE(testing::Message() << int{c.state} << " with " << c.present << (c.removed ? " removed" : ""));
        PurgeEvent(notePath, kEvent);
        if (c.present > 0)
            Put("Ann", static_cast<std::uint8_t>(c.present));
        Outbox outbox(notePath, kEvent);
        if (c.removed)
            RemoveByRule(outbox, "Ann", kStatusNotAnnounced);
        NoteRecord note = Note(c.state);
        EXPECT_EQ(outbox.Commit(note), c.result);
        EXPECT_EQ(note.eventState, c.stateAfter);
        EXPECT_EQ(note.eventStatus, kStatusNotAnnounced);
        EXPECT_EQ(note.active, 1);
    }
}

TEST_F(EventLife, OnlyAGroupEventIsNotifiedAndOnlyByAKnownMode)
{
    Put("Ann", 3);
    NoteRecord ordinary = Note(kEventNone);
    EXPECT_EQ(IsGroupEvent(ordinary), 0);
    EXPECT_EQ(NotifyEvent(notePath, ordinary, kNotifyWithdrawal), 0);
    EXPECT_EQ(ordinary.active, 1);
    for (const int mode : {0, 2, 4, -1}) {
        NoteRecord note = Note(5);
        EXPECT_EQ(IsGroupEvent(note), 1);
        EXPECT_EQ(NotifyEvent(notePath, note, mode), 1);
        EXPECT_EQ(note.eventState, 5);
        EXPECT_EQ(note.eventStatus, kStatusNotAnnounced);
    }
    NoteRecord withdrawn = Note(kEventWithdrawn, kStatusWithdrawal);
    EXPECT_EQ(NotifyEvent(notePath, withdrawn, kNotifyChange), 1);
    EXPECT_EQ(withdrawn.eventState, kEventWithdrawn) << "the agent alone takes a note out of this state";
    EXPECT_THAT(People(), ElementsAre("Ann:3"));
}

TEST_F(EventLife, AllMeansAllAlsoPastThirtyAndOtherEventsAreNeverTouched)
{
    for (int i = 0; i < 33; ++i) {
        Put("p" + std::to_string(100 + i), 2);
        Put("q" + std::to_string(100 + i), 2, kOtherEvent);
    }
    const auto others = People(kOtherEvent);
    NoteRecord note = Note(kEventHasRecipients);
    NotifyEvent(notePath, note, kNotifyChange);
    for (const std::string& person : People())
        EXPECT_EQ(person.substr(4), ":1");
    NotifyEvent(notePath, note, kNotifyWithdrawal);
    for (const std::string& person : People())
        EXPECT_EQ(person.substr(4), ":8");
    EXPECT_EQ(People().size(), 33u);
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
    EXPECT_EQ(note.eventState, kEventWithdrawn);
    PurgeEvent(notePath, kEvent);
    other->UnlockRecord(held);
    EXPECT_THAT(People(), ElementsAre("Ann:1"));
}

TEST(StatusWord, HasAWordForEightNumbers)
{
    std::string word;
    for (const auto& [status, known] :
         {std::pair(1, "wait for send"), {3, "accepted"}, {6, "accepted"}, {8, "canceld"}}) {
        EXPECT_EQ(StatusWord(status, word), 1);
        EXPECT_EQ(word, known);
    }
    for (const int unknown : {0, 9, -1, 255}) {
        EXPECT_EQ(StatusWord(unknown, word), 0);
        EXPECT_EQ(word, "?");
    }
}

}  // namespace
}  // namespace jotlet
