// The board beside a second process that works on the same file.

#include "notes_fixture.h"
#include "resources/command_ids.h"
#include "support/forked_process.h"

namespace jotlet {
namespace {

using testing::ElementsAre;

class Refreshing : public NotesFixture {
protected:
    // The other user's process, with the Owner's password; it does what it is told and says "done".
    static int Work(test::Line& line, const std::string& path, const std::string& password, RecordAddress address)
    {
        TableFile table(path, password);
        line.Say("ready");
        for (std::string told = line.Hear(); !told.empty(); told = line.Hear()) {
            NoteRecord note;
            int done = 1;
            if (told == "lock")
                done = table.LockRecord(address);
            else if (told == "delete")
                done = table.DeleteRecord(address);
            else if (table.ReadRecord(BytesOf(note), address) == 1) {
                StoreText(note.text, told);
                done = table.WriteRecord(BytesOf(note), address);
            }
            line.Say(done == 1 ? "done" : "failed");
        }
        return 0;
    }
    void Begin(const std::string& password)
    {
        address = Add({.title = "milk", .text = "old", .date = {1, 2, 2003}});
        std::string current;
        ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
        ownerPassword = "boss";
        other = std::make_unique<test::ForkedProcess>(
            [this](test::Line& line) { return Work(line, path, "boss", address); });
        ASSERT_EQ(other->Talk().Hear(), "ready");
        Show(password);
        Select("milk");
    }
    void Tell(const std::string& what)
    {
        other->Talk().Say(what);
        ASSERT_EQ(other->Talk().Hear(), "done") << what;
    }
    RecordAddress address = 0;
    std::unique_ptr<test::ForkedProcess> other;
};

TEST_F(Refreshing, AChangeOfAnotherProcessShowsAtTheTickAndNothingIsSelectedThen)
{
    Begin("boss");
    ASSERT_EQ(pane->GetList().GetSelected(), 0);
    Add({.title = "apples"});
    Tell("their text");
    pane->GetList().Send(kWmTimer, MarlinWndListView::kRefreshTimerId, 0);
    ServeEvents();
    EXPECT_THAT(Titles(), ElementsAre("apples", "milk"));
    EXPECT_EQ(pane->GetList().GetSelected(), -1);
    ScopedAnswers answers({Answer::Yes});
    Command(kCommandDeleteNote);
    EXPECT_EQ(Stored().size(), 2u) << "Delete does nothing until something is selected again";
    Tell("delete");
    pane->GetList().Send(kWmTimer, MarlinWndListView::kRefreshTimerId, 0);
    EXPECT_THAT(Titles(), ElementsAre("apples"));
}

TEST_F(Refreshing, WhileANoteIsHeldNothingReloadsAndAfterwardsEverythingIsThere)
{
    Add({.title = "theirs"});
    Begin("boss");
    int seenWhileOpen = 0;
    WhenModal([&](WindowHandle editor) {
        Add({.title = "apples"});
        pane->GetList().Send(kWmTimer, MarlinWndListView::kRefreshTimerId, 0);
        ServeEvents();
        seenWhileOpen = pane->GetList().GetCount();
        other->Talk().Say("lock");
        EXPECT_EQ(other->Talk().Hear(), "failed") << "the note that the editor holds";
        TestPushItem(editor, kIdCancel);
    });
    Command(kCommandEditNote);
    EXPECT_EQ(seenWhileOpen, 2);
    EXPECT_THAT(Titles(), ElementsAre("apples", "milk", "theirs"));
    EXPECT_EQ(pane->SelectedId(), StoredNote("milk").uniqueId.Get());
    Tell("lock");
}

}  // namespace
}  // namespace jotlet
