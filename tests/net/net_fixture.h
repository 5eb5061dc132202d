// What the tests of the network windows share: a board whose notes can be group events, the people invited to them as
// the outbox file holds them, and the contact book.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "net/core/e_book.h"
#include "net/core/identity.h"
#include "net/core/outbox.h"
#include "net/e_book_dialog.h"
#include "net/e_book_picker.h"
#include "net/internet_events_command.h"
#include "net/internet_events_dialog.h"
#include "notes/notes_fixture.h"
#include "resources/command_ids.h"
#include "resources/dialog_ids.h"
#include "support/outbox_file.h"

namespace jotlet {

struct Invited {
    std::string name;
    std::uint8_t status = kSendWaiting;
};

class NetFixture : public NotesFixture {
protected:
    ~NetFixture() override { CloseEBook(); }

    void Show(const std::string& password = "")
    {
        NotesFixture::Show(password);
        pane->editGroupEvent = EditGroupEvent;
    }

    static std::string EmailOf(std::string_view name) { return std::string(name) + "@x.example"; }

    // A note of this installation's owner that is a group event, with its people in the outbox file.
    RecordAddress AddEvent(const std::string& title, const std::vector<Invited>& people,
                           std::uint8_t eventState = kEventHasRecipients,
                           std::uint8_t eventStatus = kStatusNotAnnounced)
    {
        const RecordAddress address = Add({.title = title});
        Change(address, [&](NoteRecord& note) {
            note.eventState = eventState;
            note.eventStatus = eventStatus;
            StoreText(note.subject, "Subject of " + title);
        });
        for (const Invited& one : people)
            Put(one, StoredNote(title).uniqueId);
        return address;
    }
    void Put(const Invited& one, std::uint64_t event) { test::OutboxFile(path).Put(one.name, one.status, event); }
    std::string OutboxPath() const { return path + ".tsi"; }
    std::vector<std::string> People(std::uint64_t event) { return test::OutboxFile(path).People(event); }
    std::vector<std::string> People(const std::string& title) { return People(StoredNote(title).uniqueId); }

    void AddContacts(const std::vector<std::pair<std::string, std::string>>& contacts)
    {
        ASSERT_EQ(OpenEBook(), 1);
        for (const auto& [name, email] : contacts) {
            EBookRecord contact = MakeContact(name, email);
            ASSERT_EQ(AddContact(contact), 1);
        }
        CloseEBook();
    }

    // Runs `act` inside the Internet Events dialog of the note, then leaves it by Cancel when `act` left it open.
    void InEvents(std::string_view title, const std::function<void(WindowHandle dialog)>& act)
    {
        Select(title);
        bool shown = false;
        WhenModal([&](WindowHandle dialog) {
            shown = true;
            act(dialog);
            if (TopModal() == dialog)
                TestPushItem(dialog, kIdCancel);
        });
        Command(kCommandInternetEvents);
        EXPECT_TRUE(shown) << "the dialog did not open on " << title;
    }
    // "name:status" of the dialog's rows, in their order.
    static std::vector<std::string> Rows(WindowHandle dialog)
    {
        std::vector<std::string> rows;
        for (int i = 0; i < RowCount(dialog, internet_events_ids::kParticipantList); ++i) {
            const std::string item = RowText(dialog, internet_events_ids::kParticipantList, i);
            rows.push_back(ItemName(item) + ':' + std::to_string(ItemStatus(item)));
        }
        return rows;
    }
    static bool CanPress(WindowHandle dialog, int id) { return IsEnabled(DialogItem(dialog, id)); }
    // Presses Invite and then the contact at `index` of the book.
    static void Invite(WindowHandle dialog, int index)
    {
        bool picked = false;
        WhenModal([&](WindowHandle window) {
            picked = true;
            PressContact(static_cast<EBookPicker*>(MarlinWnd::FromHandle(window))->GetList(), index);
        });
        TestPushItem(dialog, internet_events_ids::kInviteButton);
        EXPECT_TRUE(picked);
    }
    static Point ContactPoint(ContactList& list, int index)
    {
        const Rect cell = list.GetItemRect(index).value();
        return ScreenToClient(list.Grid().window, {cell.left + 20, cell.top + 8});
    }
    static void PressContact(ContactList& list, int index) { TestClick(list.Grid().window, ContactPoint(list, index)); }
    static void TypeInto(WindowHandle dialog, int id, std::string_view text)
    {
        FocusItem(dialog, id);
        TestType(DialogItem(dialog, id), text);
        ServeEvents();
    }
};

}  // namespace jotlet
