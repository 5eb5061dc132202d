// Report and export through their dialogs: what the controls allow, and what lies on the disk afterwards.

#include "interchange/report_dialogs.h"

#include "interchange/report_command.h"
#include "notes/notes_fixture.h"
#include "platform/desktop/file_dialog.h"
#include "platform/desktop/system_metrics.h"
#include "resources/dialog_ids.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using namespace report_dialog_ids;
using namespace export_dialog_ids;

class Reports : public NotesFixture {
protected:
    Reports()
    {
        Add({.title = "milk", .text = "two", .category = "Calls", .date = {1, 3, 2004}});
        Add({.title = "bread", .text = "one", .date = {2, 3, 2004}});
        Show();
    }
    void Run(ReportKind kind, std::uint64_t currentId, const std::function<void(WindowHandle)>& drive)
    {
        ScopedAnswers box;
        WhenModal([&](WindowHandle dialog) {
            drive(dialog);
            if (TopModal() == dialog)
                TestPushItem(dialog, kIdCancel);
        });
        EXPECT_EQ(ReportCommand(frame.get(), kind, *file, currentId), 1);
        said = box.texts;
    }

    std::vector<std::string> said;
};

TEST_F(Reports, MakeReportUnfoldsTheViewOnceAndEnablesPrint)
{
    Run(ReportKind::Report, 0, [&](WindowHandle dialog) {
        EXPECT_TRUE(IsItemChecked(dialog, kAllRadio));
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kCurrentRadio)));
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kPrintButton)));
        EXPECT_FALSE(IsVisible(DialogItem(dialog, kReportView)));
        const Rect desktop = DesktopRect();
        const Rect folded = WindowRect(dialog);
        const int view = ClientRect(dialog).bottom;
        MoveTo(dialog, Rect::At(30, desktop.bottom - folded.Height(), folded.Width(), folded.Height()));
        for (int times = 0; times < 2; ++times) {
            TestPushItem(dialog, kIdOk);
            EXPECT_EQ(WindowRect(dialog),
                      Rect::At(30, desktop.bottom - folded.Height() - 300, folded.Width(), folded.Height() + 300));
            EXPECT_EQ(ItemRect(dialog, kReportView).top, view);
            EXPECT_EQ(ItemRect(dialog, kReportView).Height(), 290);
        }
        EXPECT_THAT(ItemText(dialog, kReportView), HasSubstr("Title: milk\r\nNotes: two\r\n"));
        EXPECT_TRUE(IsEnabled(DialogItem(dialog, kPrintButton)));
        EXPECT_EQ(ItemText(dialog, kFromButton), ItemText(dialog, kToButton)) << "both begin with today";
        TestPushItem(dialog, kPrintButton);
    });
    EXPECT_EQ(opened.size(), 1u);
    EXPECT_THAT(said, IsEmpty());
}

TEST_F(Reports, TheCurrentRecordIgnoresATextToFind)
{
    Run(ReportKind::Report, StoredNote("bread").uniqueId.Get(), [&](WindowHandle dialog) {
        TestPushItem(dialog, kCurrentRadio);
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kFindEdit)));
        TestPushItem(dialog, kFindBox);
        TestType(DialogItem(dialog, kFindEdit), "milk");
        TestPushItem(dialog, kIdOk);
        EXPECT_THAT(ItemText(dialog, kReportView), HasSubstr("Title: bread"));
        EXPECT_THAT(ItemText(dialog, kReportView), Not(HasSubstr("milk")));
    });
}

TEST_F(Reports, ARangeWhoseEndsAreOutOfOrderIsRefused)
{
    ReportRequest request;
    request.table = file.get();
    request.fromDate = {10, 3, 2004};
    request.toDate = {12, 3, 2004};
    PrintReportDialog report(request);
    ScopedAnswers box;
    // Steps the picker to the month before or after with its own button, and takes it.
    const auto pick = [](WindowHandle dialog, int button, bool later) {
        WhenModal([later](WindowHandle picker) {
            const Rect client = ClientRect(picker);
            const Point step{later ? client.right - 10 : 10, client.bottom - 34};
            const Point screen = ClientToScreen(picker, step);
            const WindowHandle arrow = WindowFromScreenPoint(screen);
            TestClick(arrow, ScreenToClient(arrow, screen));
            ServeEvents();
            TestPushItem(picker, kIdOk);
        });
        TestPushItem(dialog, button);
    };
    WhenModal([&](WindowHandle dialog) {
        EXPECT_FALSE(IsEnabled(DialogItem(dialog, kFromButton)));
        TestPushItem(dialog, kRangeRadio);
        pick(dialog, kFromButton, true);
        EXPECT_EQ(request.fromDate, (DateValue{10, 3, 2004}));
        pick(dialog, kToButton, false);
        EXPECT_EQ(request.toDate, (DateValue{12, 3, 2004}));
        EXPECT_EQ(box.texts.size(), 2u);
        pick(dialog, kFromButton, false);
        EXPECT_EQ(request.fromDate, (DateValue{10, 2, 2004}));
        EXPECT_EQ(ItemText(dialog, kFromButton), "10/2/2004");
        TestPushItem(dialog, kIdCancel);
    });
    report.DoModal(frame.get(), report_dialog_ids::kDialog);
    EXPECT_THAT(box.texts, testing::Each(HasSubstr("From date must be earlier")));
}

TEST_F(Reports, ExportWritesTheFileStoresItsPathAndSaysSo)
{
    const std::string target = folder.File("out.csv");
    Run(ReportKind::Export, 0, [&](WindowHandle dialog) {
        ScopedFileAnswer answer([&](const FileDialogRequest& asked) {
            EXPECT_EQ(asked.mode, FileDialogMode::Save);
            return target;
        });
        TestPushItem(dialog, kBrowseButton);
        TestPushItem(dialog, kFindBox);
        TestType(DialogItem(dialog, kFindEdit), "MIL");
        TestPushItem(dialog, kExportButton);
    });
    EXPECT_THAT(said, ElementsAre("Operation successful."));
    EXPECT_EQ(test::ReadAll(target),
              "\"Title\",\"Text\",\"Color\",\"Category\"\r\n\"milk\",\"two\",\"3\",\"Calls\"\r\n");
    Add({.title = "\"mild\" soap", .date = {3, 3, 2004}});
    Run(ReportKind::Export, 0, [&](WindowHandle dialog) {
        EXPECT_EQ(ItemText(dialog, kExportEdit), target);
        TestPushItem(dialog, kExportButton);
    });
    EXPECT_THAT(said, ElementsAre(testing::EndsWith("may not come back as it is from an import. Such notes: 1.")));
}

TEST_F(Reports, AnExportThatCannotBeWrittenSaysWhyAndStaysOpen)
{
    const std::string before = test::ReadAll(path);
    const std::pair<std::string, const char*> targets[] = {{folder.File("no/such/folder.csv"), "could not be exported"},
                                                           {path, "could not be exported"},
                                                           {"", "Please give the file to export to."}};
    for (const auto& [target, reason] : targets) {
        Run(ReportKind::Export, 0, [&](WindowHandle dialog) {
            SetItemTextOf(dialog, kExportEdit, target);
            TestPushItem(dialog, kExportButton);
            EXPECT_EQ(TopModal(), dialog);
        });
        EXPECT_THAT(said, ElementsAre(HasSubstr(reason)));
    }
    EXPECT_EQ(test::ReadAll(path), before);
}

}  // namespace
}  // namespace jotlet
