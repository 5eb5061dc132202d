// The contact book and its picker by real events, with a second user on the same file.

#include "net_fixture.h"
#include "resources/dialog_ids.h"
#include "support/failing_file_system.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace e_book_ids;
using namespace e_book_record_ids;

class ContactBook : public NetFixture {
protected:
    // Runs `act` inside the book's dialog, then leaves it by Escape when `act` left it open.
    void InBook(const std::function<void(WindowHandle dialog, ContactList& list)>& act)
    {
        Show();
        bool shown = false;
        WhenModal([&](WindowHandle dialog) {
            shown = true;
            ServeEvents();
            auto& list = static_cast<EBookDialog*>(MarlinWnd::FromHandle(dialog))->GetList();
            act(dialog, list);
            if (TopModal() == dialog)
                TestKey(list.Grid().window, kKeyEscape);
        });
        EXPECT_EQ(ShowEBook(frame.get()), 1);
        EXPECT_TRUE(shown);
        EXPECT_EQ(BookTable(), nullptr) << "the book is closed with its dialog";
    }
    // The next record dialog gets these texts and ends with `button`.
    static void AnswerRecord(const std::string& name, const std::string& email, int button = kIdOk)
    {
        WhenModal([=](WindowHandle record) {
            ServeEvents();
            EXPECT_EQ(FocusedWindow(), DialogItem(record, kNameEdit));
            for (const auto& [id, text] : {std::pair{kNameEdit, name}, {kEmailEdit, email}}) {
                SetItemTextOf(record, id, "");
                TypeInto(record, id, text);
            }
            TestPushItem(record, button);
        });
    }
    static std::vector<std::string> Names(ContactList& list)
    {
        std::vector<std::string> names;
        for (int i = 0; i < list.GetCount(); ++i)
            names.push_back(list.ItemName(i));
        return names;
    }
    static std::vector<std::string> StoredNames()
    {
        EXPECT_EQ(OpenEBook(), 1);
        std::vector<std::string> names;
        for (const RecordAddress address : BookQuery()->Results()) {
            EBookRecord contact{};
            EXPECT_EQ(BookTable()->ReadRecord(BytesOf(contact), address), 1);
            EXPECT_EQ(contact.locked, 0);
            names.emplace_back(FieldText(contact.bookName));
        }
        CloseEBook();
        return names;
    }
};

TEST_F(ContactBook, NewEditAndDeleteKeepTheListInOrderAndTheChangedOneSelected)
{
    ScopedAnswers answers({Answer::No, Answer::Yes});
    InBook([&](WindowHandle dialog, ContactList& list) {
        const WindowHandle grid = list.Grid().window;
        for (const char* name : {"Rose", "ann", "Bob"}) {
            AnswerRecord(name, "x@x");
            FocusItem(dialog, kNewButton);
            TestPushItem(dialog, kNewButton);
            ServeEvents();
            EXPECT_EQ(FocusedWindow(), grid);
            EXPECT_EQ(list.ItemName(list.GetSelected()), name + std::string(", x@x"));
        }
        AnswerRecord("never", "never@x", kIdCancel);
        TestPushItem(dialog, kNewButton);
        EXPECT_THAT(Names(list), ElementsAre("ann, x@x", "Bob, x@x", "Rose, x@x"));
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), grid);
        EXPECT_GT(Ink(grid, {0, 0, 100, 48}), 20) << "names and addresses";
        EXPECT_EQ(Ink(grid, {0, 72, 100, 120}), 0) << "free cells";

        list.SelectItem(0);
        AnswerRecord(std::string(60, 'z'), std::string(300, 'e'));
        TestPushItem(dialog, kEditButton);
        const std::string longest = std::string(49, 'z') + ", " + std::string(259, 'e');
        EXPECT_THAT(Names(list), ElementsAre("Bob, x@x", "Rose, x@x", longest));
        EXPECT_EQ(list.GetSelected(), 2);
        AnswerRecord("Ada", "a@x");
        TestDoubleClick(grid, ContactPoint(list, 0));
        ServeEvents();
        EXPECT_THAT(Names(list), ElementsAre("Ada, a@x", "Rose, x@x", longest));
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), grid);

        answers.beeps = 0;
        for (const int left : {3, 2}) {
            TestPushItem(dialog, kDeleteButton);
            EXPECT_EQ(list.GetCount(), left);
        }
        list.SetCount(2);
        TestPushItem(dialog, kEditButton);
        TestPushItem(dialog, kDeleteButton);
        EXPECT_EQ(answers.beeps, 2) << "nothing is selected";
    });
    EXPECT_EQ(answers.texts, std::vector<std::string>(2, "Do you want to delete this E-Book record ?"));
    EXPECT_THAT(StoredNames(), ElementsAre("Rose", std::string(49, 'z')));
    EXPECT_THAT(played, ElementsAre("add.wav", "add.wav", "add.wav", "add.wav", "add.wav", "delete.wav"));
}

TEST_F(ContactBook, AContactIsHeldWhileItIsEditedAndOneThatAnotherCopyHoldsReplacedOrDeletedIsRefused)
{
    AddContacts({{"ann", "a@x"},
                 {"b\xf6"
                  "b",
                  "b@x"}});
    ScopedAnswers answers;
    InBook([&](WindowHandle dialog, ContactList& list) {
        list.SelectItem(1);
        WhenModal([](WindowHandle record) { TestPushItem(record, kIdOk); });
        TestPushItem(dialog, kEditButton);
        TableFile other(GetEBookPath(), "");
        const RecordAddress first = BookQuery()->Results()[0];
        list.SelectItem(0);
        WhenModal([&](WindowHandle record) {
            EXPECT_EQ(ItemText(record, kEmailEdit), "a@x");
            EXPECT_EQ(other.LockRecord(first), 0);
            TestPushItem(record, kIdCancel);
        });
        TestPushItem(dialog, kEditButton);
        EXPECT_THAT(answers.texts, IsEmpty());
        ASSERT_EQ(other.LockRecord(first), 1) << "given back by Cancel";
        ResumeRefresh();  // the switch belongs to the other copy's process
        const auto refused = [&] {
            answers.texts.clear();
            TestPushItem(dialog, kEditButton);
            TestPushItem(dialog, kDeleteButton);
            EXPECT_THAT(answers.texts, ElementsAre(kBeingEdited, kBeingEdited));
        };
        refused();
        ASSERT_EQ(other.DeleteRecord(first), 1);
        EXPECT_EQ(list.ItemName(0), "locked...");
        refused();
        EBookRecord stranger = MakeContact("eve", "e@x");
        ASSERT_EQ(AddContact(stranger), 1);
        EXPECT_EQ(list.ItemName(0), "eve, e@x") << "in the slot of the one that was chosen";
        refused();
        EXPECT_TRUE(IsRefreshEnabled());
    });
    EXPECT_THAT(StoredNames(), ElementsAre("b\xf6"
                                           "b",
                                           "eve"))
        << "bytes of another encoding stay";
}

TEST_F(ContactBook, AFullDiskIsToldAndTheBookStaysAsItWas)
{
    AddContacts({{"ann", "a@x"}});
    ScopedAnswers answers({Answer::Ok, Answer::Ok, Answer::Yes});
    InBook([&](WindowHandle dialog, ContactList& list) {
        list.SelectItem(0);
        test::FailingFileSystem disk;
        disk.failSyncs = true;
        const ScopedFileSystem full(disk);
        for (const int button : {kNewButton, kEditButton}) {
            AnswerRecord("zoe", "z@x");
            TestPushItem(dialog, button);
        }
        TestPushItem(dialog, kDeleteButton);
    });
    EXPECT_THAT(answers.texts,
                ElementsAre(HasSubstr("could not be written"), HasSubstr("could not be written"),
                            "Do you want to delete this E-Book record ?", HasSubstr("could not be written")));
    EXPECT_THAT(StoredNames(), ElementsAre("ann"));
}

TEST_F(ContactBook, AReaderOfTheBookChangesNothing)
{
    AddContacts({{"ann", "a@x"}});
    std::string current;
    ASSERT_EQ(SetNetworkPasswords(GetEBookPath(), current, {.owner = "boss", .assistant = "help", .reader = ""}), 1);
    ScopedAnswers answers;
    InBook([&](WindowHandle dialog, ContactList& list) {
        list.SelectItem(0);
        TestPushItem(dialog, kEditButton);
        TestPushItem(dialog, kDeleteButton);
    });
    EXPECT_EQ(answers.texts, std::vector<std::string>(2, kNoPermission));
}

TEST_F(ContactBook, ThePickerOpensUnderItsButtonAndIsLeftByAPressAKeyOrEscape)
{
    AddContacts({{"ann", "a@x"}, {"bob", "b@x"}});
    Add({.title = "party"});
    Show();
    InEvents("party", [&](WindowHandle dialog) {
        const auto pick = [&](const std::function<void(ContactList&)>& act) {
            WhenModal([&](WindowHandle window) {
                const Rect button = ItemRect(dialog, internet_events_ids::kInviteButton);
                const Point corner = ClientToScreen(dialog, {button.left, button.bottom});
                EXPECT_EQ(WindowRect(window).left, corner.x);
                EXPECT_EQ(WindowRect(window).top, corner.y);
                ServeEvents();
                auto& list = static_cast<EBookPicker*>(MarlinWnd::FromHandle(window))->GetList();
                EXPECT_EQ(FocusedWindow(), list.Grid().window);
                act(list);
            });
            TestPushItem(dialog, internet_events_ids::kInviteButton);
            EXPECT_EQ(BookTable(), nullptr);
        };
        pick([](ContactList& list) {
            TestKey(list.Grid().window, kKeyReturn);
            ServeEvents();
            TestKey(list.Grid().window, kKeyEscape);
        });
        EXPECT_THAT(Rows(dialog), IsEmpty()) << "nothing was selected";
        pick([](ContactList& list) {
            for (const int key : {kKeyDown, kKeyDown, kKeyReturn})
                TestKey(list.Grid().window, key);
        });
        played.clear();
        pick([](ContactList& list) { PressContact(list, 0); });
        EXPECT_THAT(played, ElementsAre("open.wav", "close.wav"));
        EXPECT_THAT(Rows(dialog), ElementsAre("bob:1", "ann:1"));
    });
}

TEST_F(ContactBook, AFileThatIsNoBookIsReportedAndLeftAsItIs)
{
    Add({.title = "party"});
    Show();
    for (const std::string& content : {std::string("hello"), test::ReadAll(path)}) {
        test::WriteAll(GetEBookPath(), content);
        ScopedAnswers answers;
        EXPECT_EQ(ShowEBook(nullptr), 1);
        InEvents("party", [&](WindowHandle dialog) {
            TestPushItem(dialog, internet_events_ids::kInviteButton);
            EXPECT_EQ(TopModal(), dialog) << "no picker without a book";
        });
        EXPECT_THAT(answers.texts, ElementsAre(HasSubstr(GetEBookPath()), HasSubstr(GetEBookPath())));
        EXPECT_EQ(test::ReadAll(GetEBookPath()), content);
    }
}

}  // namespace
}  // namespace jotlet
