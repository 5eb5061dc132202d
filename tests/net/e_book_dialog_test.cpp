// The contact book and its picker by real events, with a second user on the same file.

#include <filesystem>
#include <fstream>

#include "net_fixture.h"
#include "resources/dialog_ids.h"
#include "support/failing_file_system.h"
#include "support/temp_folder.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kNew = 101;
constexpr int kEdit = 102;
constexpr int kDelete = 103;
constexpr int kName = 100;
constexpr int kEmail = 101;
class ContactBook : public NetFixture {
protected:
    // Runs `act` inside the book's dialog, then leaves it by Escape when `act` left it open.
    void InBook(const std::function<void(WindowHandle dialog, ContactList& list)>& act)
    {
        if (!frame)
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
    static void AnswerRecord(std::string name, std::string email, int button = kIdOk)
    {
        WhenModal([=](WindowHandle record) {
            for (const auto& [id, text] : {std::pair{kName, name}, {kEmail, email}}) {
                SetItemTextOf(record, id, "");
                FocusItem(record, id);
                TestType(DialogItem(record, id), text);
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
    // Runs `act` inside a picker and closes it when `act` left it open. The picker's result.
    int Pick(EBookRecord& picked, const std::function<void(ContactList& list)>& act)
    {
        if (!frame)
            Show();
        EBookPicker picker(picked);
        WhenModal([&](WindowHandle window) {
            ServeEvents();
            act(picker.GetList());
            ServeEvents();
            if (TopModal() == window)
                TestKey(window, kKeyEscape);
        });
        return picker.DoModal(frame.get(), e_book_picker_ids::kDialog);
    }
    static EBookRecord StoredContact(std::size_t index)
    {
        EBookRecord contact{};
        EXPECT_EQ(OpenEBook(), 1);
        const auto results = BookQuery()->Results();
        EXPECT_LT(index, results.size());
        if (index < results.size()) {
            EXPECT_EQ(BookTable()->ReadRecord(BytesOf(contact), results[index]), 1);
        }
        CloseEBook();
        return contact;
    }
};

TEST_F(ContactBook, TheFirstUseMakesAnEmptyBookAndNewFillsItInOrder)
{
    ASSERT_FALSE(std::filesystem::exists(GetEBookPath()));
    InBook([&](WindowHandle dialog, ContactList& list) {
        EXPECT_EQ(list.GetCount(), 0);
        EXPECT_EQ(FocusedWindow(), list.Grid().window);
        for (const char* name : {"Rose", "ann", "Bob", "ann"}) {
            AnswerRecord(name, EmailOf(name));
            TestPushItem(dialog, kNew);
            ServeEvents();
            EXPECT_THAT(list.ItemName(list.GetSelected()), testing::StartsWith(name)) << "the new one is selected";
        }
        AnswerRecord("never", "never@x.example", kIdCancel);
        TestPushItem(dialog, kNew);
        EXPECT_THAT(Names(list), ElementsAre("ann, ann@x.example", "ann, ann@x.example", "Bob, Bob@x.example",
                                             "Rose, Rose@x.example"));
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), list.Grid().window);
        AnswerRecord("", "");
        TestPushItem(dialog, kNew);
        EXPECT_EQ(list.GetCount(), 5) << "empty texts are stored";
    });
    EXPECT_THAT(opened, IsEmpty());
}

TEST_F(ContactBook, EditKeepsTheContactSelectedAtItsNewPlace)
{
    AddContacts({{"ann", "a@x"}, {"bob", "b@x"}, {"cid", "c@x"}});
    InBook([&](WindowHandle dialog, ContactList& list) {
        PressContact(list, 0);
        ServeEvents();
        AnswerRecord("zoe", "z@x");
        TestPushItem(dialog, kEdit);
        EXPECT_THAT(Names(list), ElementsAre("bob, b@x", "cid, c@x", "zoe, z@x"));
        EXPECT_EQ(list.GetSelected(), 2);
        list.SelectItem(0);
        const RecordAddress address = BookQuery()->Results()[0];
        TableFile other(GetEBookPath(), "");
        WhenModal([&](WindowHandle record) {
            EXPECT_EQ(other.LockRecord(address), 0) << "held against other copies";
            EXPECT_FALSE(IsRefreshEnabled());
            TestPushItem(record, kIdCancel);
        });
        TestPushItem(dialog, kEdit);
        EXPECT_TRUE(IsRefreshEnabled());
        EXPECT_EQ(other.LockRecord(address), 1) << "given back by Cancel";
        other.UnlockRecord(address);
        ResumeRefresh();  // the switch belongs to the other copy's process
        AnswerRecord("bea", "bea@x");
        TestDoubleClick(list.Grid().window, ContactPoint(list, 0));
        ServeEvents();
        EXPECT_THAT(Names(list), ElementsAre("bea, bea@x", "cid, c@x", "zoe, z@x"));
        TestPushItem(dialog, kIdCancel);
    });
    EXPECT_EQ(FieldText(StoredContact(2).bookEmail), "z@x") << "cancel undoes nothing";
}

TEST_F(ContactBook, DeleteAsksAndNothingSelectedBeeps)
{
    AddContacts({{"ann", "a@x"}, {"bob", "b@x"}});
    ScopedAnswers answers({Answer::No, Answer::Yes});
    InBook([&](WindowHandle dialog, ContactList& list) {
        TestPushItem(dialog, kEdit);
        TestPushItem(dialog, kDelete);
        EXPECT_EQ(answers.beeps, 2);
        list.SelectItem(0);
        TestPushItem(dialog, kDelete);
        EXPECT_EQ(list.GetCount(), 2);
        TestPushItem(dialog, kDelete);
        EXPECT_THAT(Names(list), ElementsAre("bob, b@x"));
    });
    EXPECT_THAT(answers.texts, ElementsAre("Do you want to delete this E-Book record ?",
                                           "Do you want to delete this E-Book record ?"));
    EXPECT_EQ(FieldText(StoredContact(0).bookName), "bob");
}

TEST_F(ContactBook, AContactThatAnotherCopyHoldsOrHasDeletedIsRefusedWithAMessage)
{
    AddContacts({{"ann", "a@x"}, {"bob", "b@x"}});
    ScopedAnswers answers;
    InBook([&](WindowHandle dialog, ContactList& list) {
        TableFile other(GetEBookPath(), "");
        const RecordAddress first = BookQuery()->Results()[0];
        ASSERT_EQ(other.LockRecord(first), 1);
        ResumeRefresh();  // the switch belongs to the other copy's process
        list.SelectItem(0);
        TestPushItem(dialog, kEdit);
        TestPushItem(dialog, kDelete);
        EXPECT_THAT(answers.texts, ElementsAre(kBeingEdited, kBeingEdited));
        EXPECT_EQ(other.DeleteRecord(first), 1);
        EXPECT_EQ(list.ItemName(0), "locked...") << "gone under the list";
        TestPushItem(dialog, kEdit);
        EXPECT_THAT(answers.texts, ElementsAre(kBeingEdited, kBeingEdited, kBeingEdited));
        list.RefreshNow();
        EXPECT_THAT(Names(list), ElementsAre("bob, b@x"));
        EXPECT_TRUE(IsRefreshEnabled());
    });
}

TEST_F(ContactBook, AFullDiskIsToldAndTheContactStaysAsItWas)
{
    AddContacts({{"ann", "a@x"}});
    ScopedAnswers answers;
    InBook([&](WindowHandle dialog, ContactList& list) {
        list.SelectItem(0);
        test::FailingFileSystem disk;
        const ScopedFileSystem full(disk);
        WhenModal([&](WindowHandle record) {
            TypeInto(record, kName, "x");
            disk.failAt = disk.changes + 1;
            TestPushItem(record, kIdOk);
        });
        TestPushItem(dialog, kEdit);
        EXPECT_EQ(disk.failedCall, "write");
    });
    EXPECT_THAT(answers.texts, ElementsAre(testing::HasSubstr("could not be written")));
    EXPECT_EQ(FieldText(StoredContact(0).bookName), "ann");
}

TEST_F(ContactBook, ThePickerOpensUnderItsButtonAndEndsAtOnePress)
{
    AddContacts({{"ann", "a@x"}, {"bob", "b@x"}});
    Add({.title = "party"});
    Show();
    InEvents("party", [&](WindowHandle dialog) {
        Rect picker;
        WhenModal([&](WindowHandle window) {
            picker = WindowRect(window);
            PressContact(static_cast<EBookPicker*>(MarlinWnd::FromHandle(window))->GetList(), 1);
        });
        TestPushItem(dialog, kEventsInvite);
        const Rect button = ItemRect(dialog, kEventsInvite);
        const Point corner = ClientToScreen(dialog, {button.left, button.bottom});
        EXPECT_EQ(picker.left, corner.x);
        EXPECT_EQ(picker.top, corner.y);
        EXPECT_THAT(Rows(dialog), ElementsAre("bob:1"));
        EXPECT_EQ(BookTable(), nullptr);
    });
}

TEST_F(ContactBook, ThePickerIsLeftByEscapeWithoutAChoiceAndPicksByKeys)
{
    AddContacts({{"ann", "a@x"}, {"bob", "b@x"}});
    EBookRecord picked{};
    EXPECT_EQ(Pick(picked, [](ContactList& list) { TestKey(list.Grid().window, kKeyEscape); }), 0);
    EXPECT_EQ(FieldText(picked.bookName), "");
    EXPECT_EQ(Pick(picked, [](ContactList& list) { TestKey(list.Grid().window, kKeyReturn); }), 0)
        << "nothing is selected yet";
    EXPECT_EQ(Pick(picked,
                   [](ContactList& list) {
                       const WindowHandle grid = list.Grid().window;
                       EXPECT_EQ(FocusedWindow(), grid);
                       TestKey(grid, kKeyDown);
                       TestKey(grid, kKeyDown);
                       TestKey(grid, kKeyReturn);
                   }),
              1);
    EXPECT_EQ(FieldText(picked.bookName), "bob");
}

TEST_F(ContactBook, AFileThatIsNoBookIsReportedAndLeftAsItIs)
{
    Add({.title = "party"});
    Show();
    const std::string notes = test::ReadAll(path);
    for (const std::string& content : {std::string("hello"), notes}) {
        test::WriteAll(GetEBookPath(), content);
        ScopedAnswers answers;
        EXPECT_EQ(ShowEBook(nullptr), 1);
        EXPECT_THAT(answers.texts, ElementsAre(testing::HasSubstr(GetEBookPath())));
        InEvents("party", [&](WindowHandle dialog) {
            TestPushItem(dialog, kEventsInvite);
            EXPECT_EQ(TopModal(), dialog) << "no picker without a book";
            EXPECT_THAT(Rows(dialog), IsEmpty());
        });
        EXPECT_EQ(answers.texts.size(), 2u);
        EXPECT_EQ(test::ReadAll(GetEBookPath()), content);
    }
}

}  // namespace
}  // namespace jotlet
