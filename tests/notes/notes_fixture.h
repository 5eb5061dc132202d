// What the tests of the notes windows share: a program folder of their own, a note file in it, a main window that holds
// the notes pane, and a second user of the same file.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "notes/bin_slot.h"
#include "notes/model/note_file.h"
#include "notes/model/note_record.h"
#include "notes/notes_pane.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "platform/desktop/dialog.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "platform/desktop/test_input.h"
#include "store/passwords.h"
#include "store/refresh_switch.h"
#include "support/temp_folder.h"
#include "support/window_test.h"
#include "toolkit/main_window.h"

namespace jotlet {

inline constexpr const char* kBeingEdited =
    "Program can't edit this entry. It is being edited by another user. Try again.";
inline constexpr const char* kNoPermission = "Program can't do this. You don't have permission.";

struct WantedNote {
    std::string title;
    std::string text = "text";
    std::string category = "";
    DateValue date = {};  // today when not given
    bool confidential = false;
};

class NotesFixture : public WindowTest {
protected:
    NotesFixture()
    {
        test::UsePortableProgram(folder.Path());
        BinSlot().Clear();
        NoteClipboard().Clear();
        path = folder.File("notes.jot");
        CreateNoteFile(path, WithExamples::No);
    }
    ~NotesFixture() override
    {
        TearDownBoard();
        ResumeRefresh();
        SetProgramPath("");
    }

    // Adds notes as somebody else would.
    RecordAddress Add(const WantedNote& wanted)
    {
        TableFile other(path, ownerPassword);
        NoteRecord note;
        InitNoteRecord(other, note);
        StoreText(note.title, wanted.title);
        StoreText(note.text, wanted.text);
        StoreText(note.category, wanted.category);
        note.colour = 0x65E7FF;
        note.confidential = wanted.confidential ? 1 : 0;
        if (wanted.date.year != 0)
            note.date = wanted.date;
        RecordAddress address = 0;
        EXPECT_EQ(other.AddRecord(BytesOf(note), &address), 1);
        return address;
    }

    // Changes a note as somebody else would.
    void Change(RecordAddress address, const std::function<void(NoteRecord&)>& change)
    {
        TableFile other(path, ownerPassword);
        NoteRecord note;
        ASSERT_EQ(other.ReadRecord(BytesOf(note), address), 1);
        change(note);
        ASSERT_EQ(other.WriteRecord(BytesOf(note), address), 1);
    }
    // From now on there are the passwords "boss", "help" and "look".
    void SetPasswords()
    {
        std::string current;
        ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
        ownerPassword = "boss";
    }

    // Opens the file in a pane inside a visible main window.
    void Show(const std::string& password = "")
    {
        file = std::make_unique<TableFile>(path, password);
        frame = std::make_unique<FrameWindow>();
        frame->Create(nullptr, kStyleVisible);
        SetMainWindow(frame->window);
        pane = std::make_unique<NotesPane>(PaneColours{.backColour = 0xC0FFFF}, "Work");
        pane->Create(frame.get(), kStyleDefault);
        frame->inner = pane.get();
        pane->Move(0, 0, 520, 480, 1);
        pane->Show();
        BringToForeground(frame->window);
        pane->OnFileOpened(file.get());
        pane->OnEntered();
        ServeEvents();
    }

    void TearDownBoard()
    {
        pane.reset();
        frame.reset();
        SetMainWindow(0);
        file.reset();
    }

    void Command(int id)
    {
        pane->Post(kWmCommand, id, 0);
        ServeEvents();
    }
    void Select(std::string_view title)
    {
        for (int i = 0; i < pane->GetList().GetCount(); ++i) {
            if (Titles()[static_cast<std::size_t>(i)] == title) {
                pane->GetList().SelectItem(i);
                return;
            }
        }
        FAIL() << "no note " << title << " on the board";
    }
    // Black pixels of a part of a window.
    static int Ink(WindowHandle window, const Rect& area)
    {
        ServeEvents();
        UpdateNow(window);
        int pixels = 0;
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                pixels += PixelAt(window, {x, y}) == 0 ? 1 : 0;
        return pixels;
    }
    WindowHandle Grid() { return pane->GetList().Grid().window; }

    // Titles on the board, in its order.
    std::vector<std::string> Titles()
    {
        std::vector<std::string> titles;
        for (int i = 0; i < pane->GetList().GetCount(); ++i) {
            const std::string name = pane->GetList().ItemName(i);
            titles.push_back(name.substr(0, name.find(": ")));
        }
        return titles;
    }
    // Every live note in the file, in its order.
    std::vector<NoteRecord> Stored()
    {
        std::vector<NoteRecord> notes;
        const TableFile reader(path, ownerPassword);
        const FieldRange whole{0, sizeof(NoteRecord)};
        reader.ForEachRecord(
            std::span(&whole, 1),
            [&](RecordAddress, std::span<const std::byte> bytes) {
                NoteRecord note;
                std::memcpy(&note, bytes.data(), sizeof note);
                notes.push_back(note);
                return true;
            },
            ScanScope::All);
        return notes;
    }
    std::vector<std::string> StoredTitles()
    {
        std::vector<std::string> titles;
        for (const NoteRecord& note : Stored())
            titles.emplace_back(FieldText(note.title));
        return titles;
    }
    NoteRecord StoredNote(std::string_view title)
    {
        for (const NoteRecord& note : Stored()) {
            if (FieldText(note.title) == title)
                return note;
        }
        ADD_FAILURE() << "no note " << title << " in the file";
        return NoteRecord{};
    }

    class FrameWindow : public MarlinWnd {
    public:
        void PrepareClass(WindowClass& windowClass) override { windowClass.name = "TestFrame"; }
        void PrepareCreate(CreateParameters& parameters) override
        {
            parameters.width = 540;
            parameters.height = 500;
        }
        void CollectTabStops(TabStops& stops) override
        {
            if (inner)
                inner->CollectTabStops(stops);
        }
        MarlinWnd* inner = nullptr;
    };

    test::TempFolder folder;
    std::string path;
    std::string ownerPassword;
    std::unique_ptr<TableFile> file;
    std::unique_ptr<FrameWindow> frame;
    std::unique_ptr<NotesPane> pane;
    ScopedShellHook shell{[this](std::string_view verb, std::string_view target) {
        if (verb == "play")
            played.emplace_back(target.substr(target.rfind('/') + 1));
        else
            opened.emplace_back(target);
    }};
    std::vector<std::string> opened, played;
};

}  // namespace jotlet
