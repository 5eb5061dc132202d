// The import from the first page to the line that tells what came of it, by real events.

#include "interchange/import_wizard.h"
#include "interchange/import_command.h"
#include "notes/notes_fixture.h"
#include "platform/desktop/file_dialog.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr int kPathEdit = 98;
constexpr int kBrowseButton = 99;
constexpr int kPreviewEdit = 100;
constexpr int kNamesYes = 101;
constexpr int kNamesNo = 102;
constexpr int kCommaRadio = 103;
constexpr int kTabRadio = 104;
constexpr int kQualifierCombo = 105;
constexpr int kSourceList = 200;
constexpr int kTargetList = 201;
constexpr int kFieldCombo = 202;
constexpr int kDefaultMap = 203;
constexpr int kClearMap = 204;
constexpr int kBack = 3000;
constexpr int kNext = 3001;

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
        std::size_t added = 0;
        {
            ScopedAnswers box;
            WhenModal([&](WindowHandle wizard) {
                drive(wizard);
                if (TopModal() == wizard)
                    TestPushItem(wizard, kIdCancel);
            });
            added = RunImport(frame.get(), *file);
            said = box.texts;
            beeps = box.beeps;
        }
        return added;
    }
    static void GoToMap(WindowHandle wizard, const std::string& path)
    {
        SetItemTextOf(wizard, kPathEdit, path);
        TestPushItem(wizard, kNext);
        TestPushItem(wizard, kNext);
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
        EXPECT_FALSE(IsEnabled(DialogItem(wizard, kBack)));
        SetItemTextOf(wizard, kPathEdit, path);
        TestPushItem(wizard, kNext);
        EXPECT_THAT(ItemText(wizard, kPreviewEdit), HasSubstr("bread,,7"));
        EXPECT_TRUE(IsItemChecked(wizard, kNamesYes));
        EXPECT_TRUE(IsItemChecked(wizard, kCommaRadio));
        EXPECT_EQ(RowText(wizard, kQualifierCombo, SelectedRow(wizard, kQualifierCombo)), "None");
        TestPushItem(wizard, kBack);
        EXPECT_EQ(ItemText(wizard, kPathEdit), path);
        EXPECT_FALSE(IsEnabled(DialogItem(wizard, kBack)));
        TestPushItem(wizard, kNext);
        TestPushItem(wizard, kNext);
        EXPECT_EQ(ItemText(wizard, kNext), "&Finish");
        EXPECT_THAT(Rows(wizard, kSourceList), ElementsAre("Subject", "Body", "Color"));
        EXPECT_THAT(Rows(wizard, kTargetList), ElementsAre("Title", "Text", "Color"));
        TestPushItem(wizard, kBack);
        EXPECT_EQ(ItemText(wizard, kNext), "&Next");
        TestPushItem(wizard, kNext);
        TestPushItem(wizard, kNext);
    });
    EXPECT_EQ(added, 2u);
    EXPECT_THAT(said, ElementsAre("2 notes were imported, 1 row was dropped."));
    EXPECT_THAT(StoredTitles(), ElementsAre("milk", "bread"));
    EXPECT_EQ(StoredNote("milk").colour.Get(), 0x76E476u);
    EXPECT_EQ(StoredNote("bread").colour.Get(), 0x65E7FFu);
    // The path is offered again next time.
    Run([&](WindowHandle wizard) { EXPECT_EQ(ItemText(wizard, kPathEdit), path); });
}

TEST_F(Importing, TheDefaultMapGoesByNamesAndAFieldIsMappedOnce)
{
    const std::string path = Source("Category,note title,SUBJECT,Notes Body\r\nCalls,a,b,text\r\n");
    Run([&](WindowHandle wizard) {
        GoToMap(wizard, path);
        EXPECT_THAT(Rows(wizard, kTargetList), ElementsAre("Title", "Text", "Color", "Category"));
        TestPushItem(wizard, kDefaultMap);
        EXPECT_THAT(Rows(wizard, kTargetList), ElementsAre("Category", "Title", "IGNORE THIS FIELD", "Text"));
        TestPickRow(wizard, kSourceList, 2);
        EXPECT_EQ(SelectedRow(wizard, kTargetList), 2);
        EXPECT_EQ(RowText(wizard, kFieldCombo, SelectedRow(wizard, kFieldCombo)), "IGNORE THIS FIELD");
        Map(wizard, 2, "Title");
        EXPECT_THAT(Rows(wizard, kTargetList), ElementsAre("Category", "IGNORE THIS FIELD", "Title", "Text"));
        TestPushItem(wizard, kClearMap);
        EXPECT_THAT(Rows(wizard, kTargetList), ElementsAre("Title", "Text", "Color", "Category"));
        TestPushItem(wizard, kDefaultMap);
        TestPushItem(wizard, kNext);
    });
    const NoteRecord note = StoredNote("a");
    EXPECT_EQ(FieldText(note.category), "Calls");
    EXPECT_EQ(FieldText(note.text), "text");
}

TEST_F(Importing, WithNothingMappedFinishOnlyBeeps)
{
    const std::string path = Source("a,b\r\n1,2\r\n");
    EXPECT_EQ(Run([&](WindowHandle wizard) {
                  GoToMap(wizard, path);
                  Map(wizard, 0, "IGNORE THIS FIELD");
                  Map(wizard, 1, "IGNORE THIS FIELD");
                  TestPushItem(wizard, kNext);
                  EXPECT_EQ(TopModal(), wizard);
              }),
              0u);
    EXPECT_EQ(beeps, 1);
    EXPECT_THAT(Stored(), IsEmpty());
}

TEST_F(Importing, WithoutNamesTheFirstRowIsANoteAndTheMapButtonsAreGone)
{
    const std::string path = Source("milk\ttwo\r\nbread\tone\r\n", "in.txt");
    EXPECT_EQ(Run([&](WindowHandle wizard) {
                  SetItemTextOf(wizard, kPathEdit, path);
                  TestPushItem(wizard, kNext);
                  EXPECT_TRUE(IsItemChecked(wizard, kTabRadio));
                  TestPushItem(wizard, kNamesNo);
                  TestPushItem(wizard, kNext);
                  EXPECT_FALSE(IsVisible(DialogItem(wizard, kDefaultMap)));
                  TestPushItem(wizard, kNext);
              }),
              2u);
    EXPECT_THAT(StoredTitles(), ElementsAre("milk", "bread"));
}

TEST_F(Importing, CancelOnAnyPageChangesNothing)
{
    const std::string path = Source("Title,Text\r\nmilk,two\r\n");
    for (int pages = 0; pages < 3; ++pages) {
        SCOPED_TRACE(pages);
        EXPECT_EQ(Run([&](WindowHandle wizard) {
                      SetItemTextOf(wizard, kPathEdit, path);
                      for (int i = 0; i < pages; ++i)
                          TestPushItem(wizard, kNext);
                      TestPushItem(wizard, kIdCancel);
                  }),
                  0u);
        EXPECT_THAT(said, IsEmpty());
    }
    EXPECT_THAT(Stored(), IsEmpty());
}

TEST_F(Importing, FilesThatAreNotThereOrVanishAreToldAndHarmNothing)
{
    Run([&](WindowHandle wizard) {
        SetItemTextOf(wizard, kPathEdit, folder.File("nowhere.csv"));
        TestPushItem(wizard, kNext);
        EXPECT_TRUE(IsVisible(DialogItem(wizard, kPathEdit)));
    });
    EXPECT_THAT(said, ElementsAre("Import file could not be found."));

    Run([&](WindowHandle wizard) {
        SetItemTextOf(wizard, kPathEdit, folder.Path());
        TestPushItem(wizard, kNext);
        EXPECT_TRUE(IsVisible(DialogItem(wizard, kPathEdit)));
    });
    EXPECT_EQ(said.size(), 1u);

    const std::string path = Source("Title\r\nmilk\r\n");
    Run([&](WindowHandle wizard) {
        SetItemTextOf(wizard, kPathEdit, path);
        TestPushItem(wizard, kNext);
        std::filesystem::resize_file(path, std::uintmax_t{3} << 30);
        TestPushItem(wizard, kNext);
        EXPECT_THAT(Rows(wizard, kSourceList), IsEmpty());
    });
    EXPECT_THAT(said, ElementsAre(HasSubstr("at most 2 GB")));
    Run([&](WindowHandle wizard) {
        SetItemTextOf(wizard, kPathEdit, Source("Title\r\nmilk\r\n"));
        TestPushItem(wizard, kNext);
        std::filesystem::remove(path);
        TestPushItem(wizard, kNext);
        EXPECT_THAT(Rows(wizard, kSourceList), IsEmpty());
        TestPushItem(wizard, kNext);
        EXPECT_EQ(TopModal(), wizard);
    });
    EXPECT_EQ(beeps, 1);
    EXPECT_THAT(Stored(), IsEmpty());
}

TEST_F(Importing, OddTextsGetAReasonAndNoCrash)
{
    struct Case {
        const char* name;
        std::string text;
        std::size_t added;
    };
    for (const Case& c :
         {Case{"empty", "", 0}, Case{"open quote", "Title\r\n\"milk", 0}, Case{"unix line ends", "Title\nmilk\n", 1},
          Case{"byte order mark", "\xEF\xBB\xBFTitle\r\nbread\r\n", 1},
          Case{"utf-16",
               std::string("\xFF\xFE"
                           "T\0\r\0\n\0"
                           "x\0\r\0\n\0",
                           14),
               1},
          Case{"zero byte", std::string("Title\r\nbutter\r\n\0tail\r\n", 22), 2}}) {
        SCOPED_TRACE(c.name);
        const std::string path = Source(c.text);
        EXPECT_EQ(Run([&](WindowHandle wizard) {
                      GoToMap(wizard, path);
                      TestPushItem(wizard, kNext);
                  }),
                  c.added);
        EXPECT_FALSE(said.empty()) << "the user is told in every case";
    }
}

TEST_F(Importing, ARowOfVeryManyColumnsOrOneHugeFieldIsMappedAndImported)
{
    constexpr int kColumns = 30'000;
    std::string names = "Note Title";
    std::string row = "milk";
    for (int i = 1; i < kColumns; ++i) {
        names += ",Text";
        row += ",two";
    }
    const std::string wide = Source(names + "\r\n" + row + "\r\n", "wide.csv");
    EXPECT_EQ(Run([&](WindowHandle wizard) {
                  GoToMap(wizard, wide);
                  EXPECT_EQ(RowCount(wizard, kTargetList), kColumns);
                  TestPushItem(wizard, kDefaultMap);
                  EXPECT_EQ(RowText(wizard, kTargetList, 1), "Text");
                  EXPECT_EQ(RowText(wizard, kTargetList, kColumns - 1), "IGNORE THIS FIELD");
                  TestPushItem(wizard, kNext);
              }),
              1u);
    EXPECT_EQ(FieldText(StoredNote("milk").text), "two");

    const std::string huge = std::string(20 << 20, 'x');
    const std::string tall = Source(huge + ",Text\r\n" + huge + ",one\r\n", "tall.csv");
    EXPECT_EQ(Run([&](WindowHandle wizard) {
                  GoToMap(wizard, tall);
                  EXPECT_EQ(RowText(wizard, kSourceList, 0), std::string(254, 'x'));
                  TestPushItem(wizard, kNext);
              }),
              1u);
    EXPECT_EQ(FieldText(Stored().back().text), "one");
}

TEST_F(Importing, TheBrowserFillsThePathAndAReaderIsRefused)
{
    const std::string path = Source("Title\r\nmilk\r\n");
    Run([&](WindowHandle wizard) {
        ScopedFileAnswer answer([&](const FileDialogRequest&) { return path; });
        TestPushItem(wizard, kBrowseButton);
        EXPECT_EQ(ItemText(wizard, kPathEdit), path);
    });
    std::string current;
    SetNetworkPasswords(this->path, current, {.owner = "boss", .assistant = "help", .reader = "look"});
    ScopedAnswers box;
    TableFile reader(this->path, "look");
    EXPECT_EQ(RunImport(frame.get(), reader), 0u);
    EXPECT_THAT(box.texts, ElementsAre("Program can't do this. You don't have permission."));
}

}  // namespace
}  // namespace jotlet
