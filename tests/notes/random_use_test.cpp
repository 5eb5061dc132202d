// The window at random, beside another process that adds, edits and deletes in the same file, with a full disk now and
// then. After each command the file is compared with what it was: a note may go, or change, only when it was the one
// that the board showed as selected. JOTLET_RANDOM_SECONDS lets it run on from new seeds for that long.
#include <chrono>
#include <map>
#include <random>
#include <set>

#include "notes_fixture.h"
#include "resources/command_ids.h"
#include "support/failing_file_system.h"
#include "support/forked_process.h"
#include "toolkit/drag_commands.h"

namespace jotlet {
namespace {

using Contents = std::map<std::uint64_t, std::string>;  // id, title and text

// Does as many random changes to its own notes as it is told to, and answers with the ids that it believes to be there.
int WorkBeside(test::Line& line, const std::string& path, unsigned seed)
{
    TableFile table(path, "");
    std::mt19937 random(seed);
    std::map<std::uint64_t, RecordAddress> mine;
    line.Say("ready");
    std::uint64_t next = std::uint64_t{1} << 48;
    for (std::string told = line.Hear(); !told.empty(); told = line.Hear()) {
        for (int left = std::stoi(told); left > 0; --left) {
            NoteRecord note;
            if (mine.empty() || mine.size() < random() % 8) {
                InitNoteRecord(table, note);
                note.uniqueId = ++next;
                StoreText(note.title, "their " + std::to_string(random() % 30));
                StoreText(note.text, "text");
                RecordAddress address = 0;
                if (table.AddRecord(BytesOf(note), &address) == 1 && table.Flush() == 1)
                    mine[next] = address;
                continue;
            }
            const auto chosen = std::next(mine.begin(), static_cast<long>(random() % mine.size()));
            const auto [id, address] = *chosen;
            if (table.LockRecord(address) != 1)
                continue;
            if (table.ReadRecord(BytesOf(note), address) != 1 || note.uniqueId != id) {
                mine.erase(chosen);  // the window deleted it
            } else if (random() % 3 == 0) {
                StoreText(note.text, "their text " + std::to_string(random()));
                table.WriteRecord(BytesOf(note), address);
            } else if (table.DeleteRecord(address) == 1) {
                mine.erase(chosen);
            }
            table.UnlockRecord(address);
            table.Flush();
        }
        line.Say("done");
    }
    return 0;
}

class RandomUse : public NotesFixture {
protected:
    Contents Now()
    {
        Contents contents;
        for (const NoteRecord& note : Stored())
            contents[note.uniqueId] = std::string(FieldText(note.title)) + ": " + std::string(FieldText(note.text)) +
                                      " " + std::to_string(note.date.Get().day);
        return contents;
    }
    // One command, answered and typed into as `random` says.
    void Act(std::mt19937& random)
    {
        ScopedAnswers answers({random() % 3 ? Answer::Yes : Answer::No, random() % 2 ? Answer::Yes : Answer::No});
        DateValue day{static_cast<int>(1 + random() % 28), 5, 2015};
        const auto dropped = reinterpret_cast<MessageParam>(&day);
        // One waits at a time: an Edit that was refused leaves it for the next.
        const auto fill = [this, choice = random()](WindowHandle editor) {
            editWaits = false;
            TestType(DialogItem(editor, note_editor_ids::kTextEdit), "mine");
            TestPushItem(editor, choice % 4 ? kIdOk : kIdCancel);
            TestPushItem(editor, kIdCancel);  // where a full disk keeps it open
        };
        switch (random() % 10) {
            case 0:
            case 1:
                if (!std::exchange(editWaits, true))
                    WhenModal(fill);
                Command(kCommandEditNote);
                break;
            case 2:
                return Command(kCommandDeleteNote);
            case 3:
                return Command(kCommandCut);
            case 4:
                return Command(kCommandCopy);
            case 5:
                return Command(kCommandPaste);
            case 6:
                return Command(kCommandUndoDelete);
            case 7:
                pane->Send(kWmCommand, NotesPane::kBinId, kBinDropped);
                break;
            case 8:
                pane->Send(kWmCommand, MakeParam(NotesPane::kCalendarId, kDragMoveDrop), dropped);
                break;
            default:
                pane->Send(kWmCommand, MakeParam(NotesPane::kCalendarId, kDragCopyDrop), dropped);
                break;
        }
        ServeEvents();
    }
    void Run(unsigned seed, int rounds)
    {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        test::ForkedProcess other([&](test::Line& line) { return WorkBeside(line, path, seed); });
        ASSERT_EQ(other.Talk().Hear(), "ready");
        for (int round = 0; round < rounds; ++round) {
            if (random() % 3 == 0) {
                pane->GetList().RefreshNow();
                ServeEvents();
            }
            if (const int count = pane->GetList().GetCount(); count > 0 && random() % 4)
                pane->GetList().SelectItem(static_cast<int>(random() % static_cast<unsigned>(count)));
            ServeEvents();
            const std::uint64_t shown = pane->SelectedId();
            other.Talk().Say(std::to_string(random() % 5));
            ASSERT_EQ(other.Talk().Hear(), "done");
            const Contents before = Now();
            {
                test::FailingFileSystem disk;
                disk.andAllBehind = true;
                disk.failAt = random() % 4 ? 0 : static_cast<int>(1 + random() % 6);
                const ScopedFileSystem failing(disk);
                Act(random);
            }
            const Contents after = Now();
            for (const auto& [id, text] : before) {
                const auto now = after.find(id);
                const bool same = now != after.end() && now->second == text;
                ASSERT_TRUE(same || id == shown) << "round " << round << ": " << text;
            }
        }
    }

    bool editWaits = false;
};

TEST_F(RandomUse, NothingButTheSelectedNoteEverGoesOrChanges)
{
    for (int i = 0; i < 4; ++i)
        Add({.title = "first " + std::to_string(i)});
    Show();
    const char* const asked = getenv("JOTLET_RANDOM_SECONDS");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(asked ? atoi(asked) : 0);
    unsigned seed = 1;
    do
        Run(seed++, 300);
    while (!HasFatalFailure() && std::chrono::steady_clock::now() < end);
}

}  // namespace
}  // namespace jotlet
