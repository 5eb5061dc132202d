// The import from the first page to the line that tells what came of it, by real events.

#include "interchange/import_wizard.h"
#include "interchange/import_command.h"
#include "notes/notes_fixture.h"
#include "platform/desktop/file_dialog.h"
#include "resources/dialog_ids.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using namespace import_wizard_ids;

class Importing : public NotesFixture {
protected:
    std::string Source(const std::string& text, const std::string& name = "in.csv")
    {
        test::WriteAll(folder.File(name), text);
        return folder.File(name);
    }
    // Runs the command; `drive` gets the wizard's window.
    std::size_t Run(const std::function<void(WindowHandle)>& drive)
    {
        if (!file)
            Show();
        ScopedAnswers box;
        WhenModal([&](WindowHandle wizard) {
            drive(wizard);
            if (TopModal() == wizard)
                TestPushItem(wizard, kIdCancel);
        });
        const std::size_t added = RunImport(frame.get(), *file);
        said = box.texts;
        beeps = box.beeps;
        return added;
    }
    static void GoToMap(WindowHandle wizard, const std::string& path)
    {
        SetItemTextOf(wizard, kPathEdit, path);
        TestPushItem(wizard, kNextButton);
        TestPushItem(wizard, kNextButton);
    }
    static std::vector<std::string> Rows(WindowHandle wizard, int list)
    {
        std::vector<std::string> rows;
        for (int i = 0; i < RowCount(wizard, list); ++i)
            rows.push_back(RowText(wizard, list, i));
        return rows;
    }
    static void Map(WindowHandle wizard, int column, std::string_view field)
    {
        TestPickRow(wizard, kTargetList, column);
        const auto fields = Rows(wizard, kFieldCombo);
        const auto at = std::find(fields.begin(), fields.end(), field);
        TestPickRow(wizard, kFieldCombo, static_cast<int>(at - fields.begin()));
    }

    std::vector<std::string> said;
    int beeps = 0;
};

TEST_F(Importing, ForthAndBackKeepsTheChoicesAndFinishTellsWhatCameIn)
{
    const std::string path = Source("Subject,Body,Color\r\nmilk,two,1\r\nbread,,7\r\nmilk,two,1\r\n");
    const std::size_t added = Run([&](WindowHandle wizard) {
        EXPECT_FALSE(IsEnabled(DialogItem(wizard, kBackButton)));
        SetItemTextOf(wizard, kPathEdit, path);
        TestPushItem(wizard, kNextButton);
        EXPECT_THAT(ItemText(wizard, kPreviewEdit), HasSubstr("bread,,7"));
        EXPECT_TRUE(IsItemChecked(wizard, kNamesYes));
        EXPECT_TRUE(IsItemChecked(wizard, kCommaRadio));
        EXPECT_EQ(RowText(wizard, kQualifierCombo, SelectedRow(wizard, kQualifierCombo)), "None");
        TestPushItem(wizard, kBackButton);
        EXPECT_FALSE(IsVisible(DialogItem(wizard, kPreviewEdit)));
        EXPECT_FALSE(IsEnabled(DialogItem(wizard, kBackButton)));
        GoToMap(wizard, ItemText(wizard, kPathEdit));
        EXPECT_EQ(ItemText(wizard, kNextButton), "&Finish");
        EXPECT_THAT(Rows(wizard, kSourceList), ElementsAre("Subject", "Body", "Color"));
        EXPECT_THAT(Rows(wizard, kTargetList), ElementsAre("Title", "Text", "Color"));
        TestPushItem(wizard, kBackButton);
        EXPECT_EQ(ItemText(wizard, kNextButton), "&Next");
        TestPushItem(wizard, kNextButton);
        TestPushItem(wizard, kNextButton);
    });
    EXPECT_EQ(added, 2u);
    EXPECT_THAT(said, ElementsAre("2 notes were imported, 1 row was dropped."));
    EXPECT_THAT(StoredTitles(), ElementsAre("milk", "bread"));
    EXPECT_EQ(StoredNote("milk").colour.Get(), 0x76E476u);
    // The path is offered again next time.
    Run([&](WindowHandle wizard) { EXPECT_EQ(ItemText(wizard, kPathEdit), path); });
}

TEST_F(Importing, TheDefaultMapGoesByNamesAndAFieldIsMappedOnce)
{
    const std::string path = Source("Category,note title,SUBJECT," + std::string(300, 'x') + "\r\nCalls,a,b,text\r\n");
    Run([&](WindowHandle wizard) {
        GoToMap(wizard, path);
        EXPECT_THAT(Rows(wizard, kTargetList), ElementsAre("Title", "Text", "Color", "Category"));
        EXPECT_EQ(SelectedRow(wizard, kTargetList), 0);
        EXPECT_EQ(RowText(wizard, kSourceList, 3), std::string(254, 'x'));
        TestPushItem(wizard, kDefaultMapButton);
        EXPECT_THAT(Rows(wizard, kTargetList),
                    ElementsAre("Category", "Title", "IGNORE THIS FIELD", "IGNORE THIS FIELD"));
        TestPickRow(wizard, kSourceList, 2);
        EXPECT_EQ(SelectedRow(wizard, kTargetList), 2);
        EXPECT_EQ(RowText(wizard, kFieldCombo, SelectedRow(wizard, kFieldCombo)), "IGNORE THIS FIELD");
        Map(wizard, 2, "Title");
        EXPECT_THAT(Rows(wizard, kTargetList),
                    ElementsAre("Category", "IGNORE THIS FIELD", "Title", "IGNORE THIS FIELD"));
        TestPushItem(wizard, kClearMapButton);
        EXPECT_THAT(Rows(wizard, kTargetList), ElementsAre("Title", "Text", "Color", "Category"));
        for (int column = 0; column < 4; ++column)
            Map(wizard, column, "IGNORE THIS FIELD");
        TestPushItem(wizard, kNextButton);
        EXPECT_EQ(TopModal(), wizard) << "with nothing mapped Finish only beeps";
        TestPushItem(wizard, kDefaultMapButton);
        TestPushItem(wizard, kNextButton);
    });
    EXPECT_EQ(beeps, 1);
    EXPECT_EQ(FieldText(StoredNote("a").category), "Calls");
}

TEST_F(Importing, WithoutNamesTheFirstRowIsANoteAndTheMapButtonsAreGone)
{
    EXPECT_EQ(Run([&](WindowHandle wizard) {
                  const ScopedFileAnswer answer([&](const FileDialogRequest&) {
                      return Source("\"milk\"\ttwo\r\n\"bread\"\tone\r\n", "in.txt");
                  });
                  TestPushItem(wizard, kBrowseButton);
                  TestPushItem(wizard, kNextButton);
                  EXPECT_TRUE(IsItemChecked(wizard, kTabRadio));
                  TestPushItem(wizard, kNamesNo);
                  TestPushItem(wizard, kNextButton);
                  EXPECT_FALSE(IsVisible(DialogItem(wizard, kDefaultMapButton)));
                  TestPushItem(wizard, kNextButton);
              }),
              2u);
    EXPECT_THAT(StoredTitles(), ElementsAre("milk", "bread"));
}

TEST_F(Importing, FilesThatAreNotThereOrVanishAreToldAndHarmNothing)
{
    const std::pair<std::string, const char*> missing[] = {
        {folder.File("nowhere.csv"), "Import file could not be found."}, {folder.Path(), "cannot be read"}};
    for (const auto& [path, reason] : missing) {
        Run([&](WindowHandle wizard) {
            SetItemTextOf(wizard, kPathEdit, path);
            TestPushItem(wizard, kNextButton);
            EXPECT_TRUE(IsVisible(DialogItem(wizard, kPathEdit)));
        });
        EXPECT_THAT(said, ElementsAre(HasSubstr(reason)));
    }
    const std::pair<std::function<void(const std::string&)>, const char*> ends[] = {
        {[](const std::string& path) { std::filesystem::resize_file(path, std::uintmax_t{3} << 30); }, "at most 2 GB"},
        {[](const std::string& path) { std::filesystem::remove(path); }, "cannot be read"}};
    for (const auto& [end, reason] : ends) {
        const std::string path = Source("Title\r\nmilk\r\n");
        Run([&](WindowHandle wizard) {
            SetItemTextOf(wizard, kPathEdit, path);
            TestPushItem(wizard, kNextButton);
            end(path);
            TestPushItem(wizard, kNextButton);
            EXPECT_THAT(Rows(wizard, kSourceList), IsEmpty());
            TestPushItem(wizard, kNextButton);
            EXPECT_EQ(TopModal(), wizard);
        });
        EXPECT_THAT(said, ElementsAre(HasSubstr(reason)));
        EXPECT_EQ(beeps, 1);
    }
    EXPECT_THAT(Stored(), IsEmpty());
}

TEST_F(Importing, OddTextsGetAReasonAndNoCrash)
{
    const struct {
        std::string text;
        std::size_t added;
        const char* reason;
    } rows[] = {{"", 0, "No whole row was found"},
                {"Title\r\n\"milk", 0, "ends on line 1."},
                {"Title\nmilk\n", 1, "1 note was imported, 0 rows were dropped."},
                {std::string("\xFF\xFET\0\r\0\n\0x\0\r\0\n\0", 14), 1, "1 note"},
                {std::string("Title\r\nbutter\r\n\0tail\r\n", 22), 2, "2 notes"}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Run([&](WindowHandle wizard) {
                      GoToMap(wizard, Source(row.text));
                      TestPushItem(wizard, kNextButton);
                  }),
                  row.added);
        EXPECT_THAT(said, ElementsAre(HasSubstr(row.reason)));
    }
}

TEST_F(Importing, AReaderIsRefused)
{
    std::string current;
    SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"});
    Show("look");
    ScopedAnswers box;
    EXPECT_EQ(RunImport(frame.get(), *file), 0u);
    EXPECT_THAT(box.texts, ElementsAre("Program can't do this. You don't have permission."));
}

}  // namespace
}  // namespace jotlet
