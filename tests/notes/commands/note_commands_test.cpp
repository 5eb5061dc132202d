// What is done to a note, on real files: every command with every role, beside another copy that holds, removed, hid or
// changed the note since it was chosen; and with every write and sync failing in turn.

#include "notes/commands/note_commands.h"

#include <algorithm>
#include <cstring>

#include "notes/model/note_file.h"
#include "platform/base/text.h"
#include "store/passwords.h"
#include "support/failing_file_system.h"
#include "support/outbox_file.h"
#include "support/temp_folder.h"

namespace jotlet {
namespace {

using testing::ElementsAre;

const DateValue kDay{1, 2, 2003};
const DateValue kOtherDay{9, 9, 2009};

enum class Act { Edit, Delete, Cut, Copy, Move, CopyToDay, New, Paste, Restore };
constexpr Act kOnOneNote[] = {Act::Edit, Act::Delete, Act::Cut, Act::Copy, Act::Move, Act::CopyToDay};
constexpr const char* kActNames[] = {"edit", "delete", "cut", "copy", "move", "copy to day", "new", "paste", "restore"};

enum class Other { Nothing, Holds, Deleted, TookItsPlace, Hid, Changed };
constexpr const char* kOtherNames[] = {"nothing", "holds", "deleted", "took its place", "hid", "changed"};

class Commands : public testing::Test {
protected:
    // A new file with the note "milk".
    void Begin(std::uint8_t eventState = kEventNone)
    {
        file.reset();
        path = folder.File(std::to_string(++files) + ".jot");
        ASSERT_EQ(CreateNoteFile(path, WithExamples::No), 1);
        TableFile maker(path, "");
        before = Note("milk");
        before.eventState = eventState;
        before.eventStatus = kStatusChange;
        ASSERT_EQ(maker.AddRecord(BytesOf(before), &address), 1);
        std::string none;
        ASSERT_EQ(SetNetworkPasswords(path, none, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
    }
    void Open(const std::string& password = "boss") { file = std::make_unique<TableFile>(path, password); }
    ChosenRecord Chosen() const { return {address, before.uniqueId}; }
    NoteRecord Note(std::string_view title)
    {
        NoteRecord note{};
        note.recordSize = kNoteRecordSize;
        note.active = 1;
        note.uniqueId = RandomId();
        note.date = kDay;
        StoreText(note.title, title);
        StoreText(note.text, "old");
        return note;
    }
    // One command from its beginning to its end; what it read or made is in `result`.
    NoteResult Do(Act act)
    {
        HeldNote held;
        NoteResult taken;
        switch (act) {
            case Act::Edit:
                if (taken = TakeForEdit(held, file.get(), Chosen()); !taken)
                    return taken;
                StoreText(held.note.text, "my " + std::string(FieldText(held.note.text)));
                result = held.note;
                return SaveEdited(held, Participants::Tell);
            case Act::Delete:
                if (taken = held.Take(file.get(), Chosen()); !taken)
                    return taken;
                result = held.note;
                return RemoveHeld(held, Participants::Tell);
            case Act::Cut:
                return CutNote(file.get(), Chosen(), result);
            case Act::Copy:
                return CopyNote(file.get(), Chosen(), result);
            case Act::Move:
                return MoveNoteToDay(file.get(), Chosen(), kOtherDay, result);
            case Act::CopyToDay:
                return CopyNoteToDay(file.get(), Chosen(), kOtherDay, result);
            case Act::New:
                result = Note("new");
                return AddNote(*file, result);
            case Act::Paste:
                result = before;
                return PasteNote(*file, result, kOtherDay);
            case Act::Restore:
                result = before;
                return RestoreNote(*file, result);
        }
        return taken;
    }
    // "title: text, day" of every live note, hidden ones with a mark, in file order.
    std::vector<std::string> Stored()
    {
        std::vector<std::string> notes;
        const FieldRange whole{0, sizeof(NoteRecord)};
        const TableFile reader(path, "boss");
        reader.ForEachRecord(std::span(&whole, 1), [&](RecordAddress, std::span<const std::byte> bytes) {
            NoteRecord note;
            std::memcpy(&note, bytes.data(), sizeof note);
            notes.push_back(std::string(FieldText(note.title)) + ": " + std::string(FieldText(note.text)) + ", " +
                            std::to_string(note.date.Get().day) + (note.confidential ? " hidden" : "") +
                            (note.locked ? " locked" : "") + (note.eventState ? " event" : ""));
            return true;
        });
        return notes;
    }
    void LetOther(Other other, TableFile& copy, std::optional<RecordHold>& hold)
    {
        NoteRecord note;
        ASSERT_EQ(copy.ReadRecord(BytesOf(note), address), 1);
        if (other == Other::Holds)
            hold.emplace(copy, address);
        else if (other == Other::Deleted || other == Other::TookItsPlace)
            ASSERT_EQ(copy.DeleteRecord(address), 1);
        else if (other == Other::Hid)
            note.confidential = 1;
        else if (other == Other::Changed)
            StoreText(note.text, "their");
        if (other == Other::TookItsPlace) {
            ASSERT_EQ(copy.AddRecord(BytesOf(Note("theirs"))), 1);
        }
        if (other == Other::Hid || other == Other::Changed) {
            ASSERT_EQ(copy.WriteRecord(BytesOf(note), address), 1);
        }
    }
    void ExpectDone(Act act, Other other)
    {
        const std::string text = other == Other::Changed ? "their" : "old";
        const std::string mark = other == Other::Hid ? " hidden" : "";
        const std::string there = "milk: " + text + ", 1" + mark;
        const std::string moved = "milk: " + text + ", 9" + mark;
        switch (act) {
            case Act::Edit:
                EXPECT_THAT(Stored(), ElementsAre("milk: my " + text + ", 1" + mark));
                break;
            case Act::Move:
                EXPECT_THAT(Stored(), ElementsAre(moved));
                break;
            case Act::CopyToDay:
                EXPECT_THAT(Stored(), ElementsAre(there, moved));
                EXPECT_NE(result.uniqueId, before.uniqueId);
                break;
            case Act::Copy:
                EXPECT_THAT(Stored(), ElementsAre(there));
                break;
            default:
                EXPECT_THAT(Stored(), ElementsAre());
        }
        EXPECT_TRUE(FieldText(result.text).ends_with(text)) << "read anew under the lock";
    }

    test::TempFolder folder;
    int files = 0;
    std::string path;
    RecordAddress address = 0;
    NoteRecord before{};
    NoteRecord result{};
    std::unique_ptr<TableFile> file;
};

TEST_F(Commands, RoleAndOtherCopyDecideHowACommandEnds)
{
    for (const Act act : kOnOneNote)
        for (const std::string password : {"boss", "help", "look", "wrong"})
            for (const Other other :
                 {Other::Nothing, Other::Holds, Other::Deleted, Other::TookItsPlace, Other::Hid, Other::Changed}) {
                SCOPED_TRACE(std::string(kActNames[static_cast<int>(act)]) + ", " + password + ", " +
                             kOtherNames[static_cast<int>(other)]);
                const bool mayChange = password == "boss" || password == "help";
                if (!mayChange && other != Other::Nothing)
                    continue;
                Begin();
                Open(password);
                TableFile copy(path, "boss");
                std::optional<RecordHold> hold;
                LetOther(other, copy, hold);
                const auto untouched = Stored();
                const bool showsIt = act != Act::Move && act != Act::CopyToDay;
                const Outcome expected =
                    password == "look" || password == "wrong" ? Outcome::NoPermission
                    : other == Other::Holds || other == Other::Deleted || other == Other::TookItsPlace ? Outcome::Locked
                    : other == Other::Hid && password == "help" && showsIt                             ? Outcome::Hidden
                                                                                                       : Outcome::Done;
                EXPECT_EQ(Do(act).outcome, expected);
                if (expected == Outcome::Done)
                    ExpectDone(act, other);
                else
                    EXPECT_EQ(Stored(), untouched);
                hold.reset();
                EXPECT_TRUE(IsRefreshEnabled());
                EXPECT_TRUE(other == Other::Deleted || copy.LockRecord(address) == 1 || act == Act::Delete ||
                            act == Act::Cut);
                ResumeRefresh();
            }
}

TEST_F(Commands, WithoutANoteOrAFileNothingIsDone)
{
    Begin();
    Open();
    NoteRecord note;
    EXPECT_EQ(CutNote(file.get(), std::nullopt, note).outcome, Outcome::NothingChosen);
    EXPECT_EQ(CutNote(nullptr, Chosen(), note).outcome, Outcome::NoPermission);
}

// A failing call leaves the file as it was, and success is never claimed for what isn't on the disk.
TEST_F(Commands, EachCallThatFailsIsToldAndLeavesTheFileAsItWas)
{
    for (const Act act :
         {Act::Edit, Act::Delete, Act::Cut, Act::Move, Act::CopyToDay, Act::New, Act::Paste, Act::Restore}) {
        bool syncFailed = false;
        int unnoticed = 0;
        std::string failedCall = "none yet";
        for (int call = 1; !failedCall.empty(); ++call) {
            Begin();
            Open();
            test::FailingFileSystem disk;
            disk.failAt = call;
            disk.failure = EIO;
            NoteResult ended;
            {
                const ScopedFileSystem failing(disk);
                ended = Do(act);
            }
            failedCall = disk.failedCall;
            SCOPED_TRACE(std::string(kActNames[static_cast<int>(act)]) + ", call " + std::to_string(call) + ", " +
                         failedCall);
            if (ended) {
                unnoticed += failedCall.empty() ? 0 : 1;
                continue;
            }
            syncFailed = syncFailed || failedCall.starts_with("sync");
            EXPECT_EQ(ended.outcome, Outcome::Failed);
            EXPECT_EQ(ended.error.systemError, EIO);
            EXPECT_THAT(Stored(), ElementsAre("milk: old, 1"));
        }
        EXPECT_TRUE(syncFailed);
        EXPECT_EQ(unnoticed, act >= Act::New ? 0 : 1) << "only giving back the lock of a finished change";
    }
}

TEST_F(Commands, ADeleteThatTheDiskDoesNotTakeAndThatCannotBePutBackIsToldAsSuch)
{
    Begin();
    Open();
    test::FailingFileSystem disk;
    Do(Act::Copy);
    {
        const ScopedFileSystem counting(disk);
        Do(Act::New);
    }
    HeldNote held;
    ASSERT_TRUE(held.Take(file.get(), Chosen()));
    disk.changes = 0;
    disk.failAt = 3;  // the slot and the header are written; neither the sync nor a new record is
    disk.andAllBehind = true;
    const ScopedFileSystem failing(disk);
    EXPECT_EQ(RemoveHeld(held, Participants::Tell).outcome, Outcome::Unconfirmed);
}

TEST_F(Commands, AFailedSaveKeepsItsHoldSoThatTheNextTryCountsAsOne)
{
    Begin();
    Open();
    HeldNote held;
    ASSERT_TRUE(TakeForEdit(held, file.get(), Chosen()));
    StoreText(held.note.text, "precious");
    test::FailingFileSystem disk;
    disk.failSyncs = true;
    {
        const ScopedFileSystem failing(disk);
        EXPECT_EQ(SaveEdited(held, Participants::Tell).outcome, Outcome::Failed);
    }
    EXPECT_THAT(Stored(), ElementsAre("milk: old, 1 locked"));
    EXPECT_TRUE(SaveEdited(held, Participants::Tell));
    held.GiveBack();
    EXPECT_THAT(Stored(), ElementsAre("milk: precious, 1"));
}

TEST_F(Commands, AReplacedFileTakesNothingAndTheNextTryGoesIntoTheNewOne)
{
    for (const bool isThere : {true, false}) {
        Begin();
        Open();
        HeldNote held;
        ASSERT_TRUE(TakeForEdit(held, file.get(), Chosen()));
        StoreText(held.note.text, "precious");
        const std::string old = path + ".old";
        std::filesystem::rename(path, old);
        EXPECT_EQ(SaveInNewFile(*file, held.note).outcome, Outcome::Failed);
        std::filesystem::copy_file(old, path);
        if (!isThere) {
            TableFile copy(path, "boss");
            ASSERT_EQ(copy.DeleteRecord(address), 1);
            ASSERT_EQ(copy.AddRecord(BytesOf(Note("theirs"))), 1);
        }
        EXPECT_EQ(SaveEdited(held, Participants::Tell).outcome, Outcome::Replaced);
        EXPECT_EQ(AddNote(*file, held.note).outcome, Outcome::Replaced);
        held.GiveBack();
        EXPECT_EQ(held.Lock(file.get(), Chosen()).outcome, Outcome::Replaced);
        EXPECT_TRUE(SaveInNewFile(*file, held.note));
        const auto notes = Stored();
        EXPECT_EQ(notes.size(), isThere ? 1u : 2u);
        EXPECT_EQ(notes.back(), "milk: precious, 1");
    }
}

TEST_F(Commands, WhatComesBackIsAnOrdinaryNoteAndNoTwoShareAnId)
{
    Begin(kEventHasRecipients);
    Open();
    before.reserved547 = 7;
    for (const Act act : {Act::Paste, Act::Restore, Act::CopyToDay}) {
        ASSERT_TRUE(Do(act));
        EXPECT_NE(result.uniqueId, before.uniqueId);
        EXPECT_EQ(result.eventState, kEventNone);
        EXPECT_EQ(result.eventStatus, kStatusNotAnnounced);
        EXPECT_EQ(result.locked, 0);
        EXPECT_TRUE(act == Act::CopyToDay || result.reserved547 == 0);
        EXPECT_EQ(result.date.Get(), act == Act::Restore ? kDay : kOtherDay);
    }
    Begin();
    Open();
    ASSERT_TRUE(Do(Act::Cut));
    ASSERT_TRUE(Do(Act::Restore));
    EXPECT_EQ(result.uniqueId, before.uniqueId) << "its own, since nobody has it";
}

TEST_F(Commands, AnEventIsFrozenWhenWithdrawnAndNeverCut)
{
    Begin(kEventWithdrawn);
    Open();
    EXPECT_EQ(Do(Act::Edit).outcome, Outcome::Withdrawn);
    Begin(kEventHasRecipients);
    Open();
    EXPECT_EQ(Do(Act::Cut).outcome, Outcome::GroupEvent);
    EXPECT_THAT(Stored(), ElementsAre("milk: old, 1 event"));
}

TEST_F(Commands, PeopleAreToldOfAChangeAndOfTheEndOrLeftAloneAndAListThatCannotBeReadIsTold)
{
    enum { Edit, Remove };
    using People = std::vector<std::string>;
    struct Case {
        int command;
        Participants participants;
        People before, after;
        bool stays;
    };
    const People people = {"ann:3", "bob:1"};
    for (const Case& c :
         {Case{Edit, Participants::Tell, people, {"ann:1", "bob:1"}, true},
          Case{Edit, Participants::LeaveAlone, people, people, true},
          Case{Remove, Participants::Tell, people, {"ann:8", "bob:8"}, true},
          Case{Remove, Participants::Tell, {}, {}, false}, Case{Remove, Participants::LeaveAlone, people, {}, false}})
        for (const bool readable : {true, false}) {
            SCOPED_TRACE(testing::Message() << c.command << " " << static_cast<int>(c.participants) << readable);
            Begin(kEventHasRecipients);
            Open();
            const test::OutboxFile outbox(path);
            for (const std::string& one : c.before)
                outbox.Put(one.substr(0, 3), static_cast<std::uint8_t>(one.back() - '0'), before.uniqueId);
            if (!readable) {
                std::filesystem::remove(outbox.Path());
                std::filesystem::create_directory(outbox.Path());
            }
            HeldNote held;
            EXPECT_TRUE(TakeForEdit(held, file.get(), Chosen()));
            const NoteResult ended =
                c.command == Edit ? SaveEdited(held, c.participants) : RemoveHeld(held, c.participants);
            held.GiveBack();
            EXPECT_TRUE(ended);
            const bool asks = c.command == Remove || c.participants == Participants::Tell;
            EXPECT_EQ(ended.missedParticipants, !readable && asks);
            if (!readable)
                continue;
            EXPECT_EQ(outbox.People(before.uniqueId), c.after);
            EXPECT_EQ(Stored(), c.stays ? People{"milk: old, 1 event"} : People{});
        }
}

}  // namespace
}  // namespace jotlet
