// The dialogs of the document by real events: new file, passwords, options, skins; and the commands that show them.
#include "core/document_commands.h"
#include "core/general_options_dialog.h"
#include "core/new_file_dialog.h"
#include "core/password_dialogs.h"
#include "core/skins_dialog.h"
#include "core_fixture.h"
#include "platform/base/session.h"
#include "resources/dialog_ids.h"
#include "store/open_table.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

void Type(WindowHandle dialog, int id, std::string_view text)
{
    SetItemTextOf(dialog, id, "");
    TestType(DialogItem(dialog, id), text);
}
bool CanOk(WindowHandle dialog)
{
    return IsEnabled(DialogItem(dialog, kIdOk));
}

TEST_F(CoreTest, ANewFileGetsAFolderANameAndExamplesAndMistakesAreTold)
{
    namespace ids = new_file_dialog_ids;
    MakeNotes("here.jot");
    chosenFiles = {folder.Path()};
    for (const int button : {kIdCancel, kIdOk}) {
        NewFileDialog dialog("jot");
        WhenModal([&](WindowHandle d) {
            ServeEvents();
            EXPECT_EQ(FocusedWindow(), DialogItem(d, ids::kName));
            EXPECT_EQ(ItemText(d, ids::kFolder), folder.File("Works"));
            EXPECT_TRUE(IsItemChecked(d, ids::kExamples));
            EXPECT_FALSE(CanOk(d));
            for (const std::string& wrong :
                 {std::string("here"), std::string("/no such folder/x"), std::string(252, 'n')}) {
                Type(d, ids::kName, wrong);
                EXPECT_TRUE(CanOk(d));
                TestPushItem(d, kIdOk);
                EXPECT_EQ(TopModal(), d);
            }
            EXPECT_THAT(boxes.texts, ElementsAre(HasSubstr("This file alredy exists."), "Error in creating a file.",
                                                 "Error in creating a file."));
            boxes.texts.clear();
            const std::string before = ItemText(d, ids::kFolder);
            TestPushItem(d, ids::kBrowse);
            EXPECT_EQ(ItemText(d, ids::kFolder), button == kIdCancel ? folder.Path() : before) << "the 2nd: Cancel";
            Type(d, ids::kName, "plans.txt");
            TestPushItem(d, ids::kExamples);
            TestPushItem(d, button);
        });
        EXPECT_EQ(dialog.DoModal(nullptr, ids::kDialog), button == kIdOk ? 1 : 0);
        EXPECT_EQ(Setting("RecordExample"), button == kIdOk ? "0" : "");
        if (button == kIdOk) {
            EXPECT_EQ(dialog.Path(), folder.File("Works/plans.txt.jot"));
        }
        EXPECT_FALSE(std::filesystem::exists(folder.File("Works/plans.txt.jot"))) << "it is made later";
    }
}

class PasswordTest : public CoreTest {
protected:
    const std::string path = MakeNotes("notes.jot", {"boss", "aide", "guest"});

    // The role that the typed password opens the file with; none when it does not.
    std::optional<Role> Ask(const std::string& typed, int button = kIdOk)
    {
        WhenModal([=](WindowHandle d) {
            EXPECT_EQ(WindowTitle(d), "notes.jot");
            EXPECT_TRUE(CanOk(d));
            const WindowHandle edit = DialogItem(d, password_dialog_ids::kPassword);
            TestType(edit, "x");
            TestKey(edit, kKeyBack);
            EXPECT_FALSE(CanOk(d)) << "once it was typed into, it may not be empty";
            if (typed.empty())
                SetItemTextOf(d, password_dialog_ids::kPassword, "");
            else
                TestType(edit, typed);
            TestPushItem(d, button);
        });
        const auto password = AskFilePasswordAndTell(nullptr, path);
        return password ? std::optional(TableFile(path, *password).GetRole()) : std::nullopt;
    }
};

TEST_F(PasswordTest, EachOfTheThreeOpensTheFileWithItsRoleAndAnotherIsRefused)
{
    EXPECT_EQ(Ask("boss"), Role::Owner);
    EXPECT_EQ(Ask("aide"), Role::Assistant);
    EXPECT_EQ(Ask("guest"), Role::Reader);
    EXPECT_THAT(boxes.texts, IsEmpty());
    EXPECT_EQ(Ask("Boss"), std::nullopt);
    EXPECT_EQ(Ask("boss", kIdCancel), std::nullopt);
    EXPECT_EQ(boxes.texts, std::vector<std::string>(2, "Program can't open this file. Incorrect password."));
    std::string owner = "boss";
    ASSERT_EQ(SetNetworkPasswords(path, owner, {"boss", "", ""}), 1);
    WhenModal([](WindowHandle d) { TestPushItem(d, kIdOk); });
    EXPECT_EQ(AskFilePasswordAndTell(nullptr, path), "") << "the untouched empty box, for an assistant without one";
    ASSERT_EQ(SetNetworkPasswords(path, owner, {"", "aide", "guest"}), 1);
    EXPECT_EQ(AskFilePasswordAndTell(nullptr, path), "") << "nobody is asked without an owner's";
}

TEST_F(PasswordTest, AFileThatIsNoneIsToldAsSuchAndStaysAsItIs)
{
    const std::string text = folder.File("letter.jot");
    test::WriteAll(text, std::string(5000, 'x'));
    const std::string cut = folder.File("cut.jot");
    test::WriteAll(cut, test::ReadAll(path).substr(0, 1000));
    for (const std::string& wrong : {text, cut, folder.File("missing.jot"), folder.Path()})
        EXPECT_FALSE(AskFilePasswordAndTell(nullptr, wrong)) << wrong;
    EXPECT_THAT(boxes.texts,
                ElementsAre(HasSubstr("This file is not a Jotlet file."), HasSubstr("This file is not a Jotlet file."),
                            HasSubstr("does not exist"), testing::_));
    EXPECT_EQ(test::ReadAll(text), std::string(5000, 'x'));
}

class NetworkPasswordsTest : public CoreTest {
protected:
    const std::string path = MakeNotes("notes.jot");
    std::string current;

    std::vector<std::string> Stored()
    {
        NetworkPasswords stored;
        ReadNetworkPasswords(path, stored);
        return {stored.owner, stored.assistant, stored.reader};
    }
    static void Fill(WindowHandle d, const std::vector<std::string>& texts)
    {
        for (std::size_t i = 0; i < texts.size(); ++i)
            Type(d, network_passwords_ids::kOwner + static_cast<int>(i), texts[i]);
    }
};

TEST_F(NetworkPasswordsTest, AMismatchInTheSecondDialogIsToldAndAskedAgain)
{
    WhenModal([](WindowHandle d) {
        EXPECT_FALSE(CanOk(d));
        Fill(d, {"boss", "aide", "aaaaaaaaaaaaaaaaaaaa"});
        EXPECT_TRUE(CanOk(d));
        TestPushItem(d, kIdOk);
        ASSERT_EQ(TopModal(), d) << "20 bytes cannot be stored, and are not cut unseen";
        Fill(d, {"boss", "aide", "guest"});
        WhenModal([](WindowHandle first) {
            Fill(first, {"boss", "aide", "gust"});
            WhenModal([](WindowHandle second) {
                EXPECT_EQ(ItemText(second, verify_passwords_ids::kOwner), "");
                Fill(second, {"boss", "aide", "guest"});
                TestPushItem(second, kIdOk);
            });
            TestPushItem(first, kIdOk);
        });
        TestPushItem(d, kIdOk);
    });
    EXPECT_EQ(RunNetworkPasswords(nullptr, path, current), 1);
    EXPECT_THAT(boxes.texts, ElementsAre(testing::StartsWith("A password may have at most 19 bytes"),
                                         "You did not enter the same password. Try again."));
    EXPECT_THAT(Stored(), ElementsAre("boss", "aide", "guest"));
    EXPECT_EQ(current, "boss") << "this copy stays Owner";

    std::string assistant = "aide";
    EXPECT_EQ(RunNetworkPasswords(nullptr, path, assistant), 0);
    EXPECT_EQ(boxes.texts.back(), "Program can't do this. You don't have permission.");
    for (const bool confirmed : {false, true}) {
        WhenModal([=](WindowHandle d) {
            EXPECT_EQ(ItemText(d, network_passwords_ids::kReader), "guest");
            const WindowHandle owner = DialogItem(d, network_passwords_ids::kOwner);
            for (int i = 0; i < 5; ++i)
                TestKey(owner, i == 0 ? kKeyEnd : kKeyBack);
            WhenModal([=](WindowHandle verify) {
                Fill(verify, {"", "aide", "guest"});
                TestPushItem(verify, confirmed ? kIdOk : kIdCancel);
            });
            TestPushItem(d, kIdOk);
        });
        EXPECT_EQ(RunNetworkPasswords(nullptr, path, current), confirmed ? 1 : 0);
        EXPECT_THAT(Stored(), ElementsAre(confirmed ? "" : "boss", "aide", "guest"));
    }
    WhenModal([](WindowHandle d) { TestPushItem(d, kIdCancel); });
    EXPECT_EQ(RunNetworkPasswords(nullptr, path, current), 0);
}

TEST_F(CoreTest, SaveAsAndCompactTellWhatStandsInTheWay)
{
    const std::string path = MakeNotes("notes.jot");
    TableFile file(path, "");
    EXPECT_EQ(SaveAsCommand(nullptr, file), 0) << "Cancel";
    EXPECT_EQ(choosers.back().mode, FileDialogMode::Save);
    EXPECT_EQ(choosers.back().folder, folder.File("Works"));
    EXPECT_EQ(choosers.back().filter, "Jotlet file (*.jot)|*.jot||");
    const TableFile used(MakeNotes("used.jot"), "");
    const std::string denied = "Program can't use \"" + used.Path() + "\".\r\nAccess has been denied";
    chosenFiles = {path, used.Path(), folder.File("none/x.jot"), folder.File("good.jot")};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(SaveAsCommand(nullptr, file), 0);
    EXPECT_EQ(boxes.beeps, 1) << "onto itself";
    EXPECT_THAT(boxes.texts, ElementsAre(denied, HasSubstr("save")));
    std::string copy;
    EXPECT_EQ(SaveAsCommand(nullptr, file, &copy), 1);
    EXPECT_EQ(copy, folder.File("good.jot"));

    boxes.texts.clear();
    test::WriteAll(folder.File("letter.jot"), "Dear Sir");
    chosenFiles = {used.Path(), folder.File("letter.jot"), folder.File("gone.jot")};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(CompactCommand(nullptr), 0);
    EXPECT_THAT(boxes.texts,
                ElementsAre(denied, HasSubstr("This file is not a Jotlet file."), HasSubstr("does not exist")));
    EXPECT_EQ(test::ReadAll(folder.File("letter.jot")), "Dear Sir");
    TableFile(copy, "").DeleteRecord(kFirstRecordOffset);
    const auto before = std::filesystem::file_size(copy);
    chosenFiles = {copy};
    EXPECT_EQ(CompactCommand(nullptr), 1);
    EXPECT_EQ(std::filesystem::file_size(copy), before - kNoteRecordSize);
}

class OptionsTest : public CoreTest {
protected:
    void Run(std::function<void(WindowHandle)> act)
    {
        WhenModal(std::move(act));
        RunGeneralOptions(nullptr);
    }
};

TEST_F(OptionsTest, WithoutSettingsAllIsOnAndTwoSecondsAndTheCopiesAreToldAlsoAfterCancel)
{
    std::vector<std::uint32_t> heard;
    const auto receiver = BroadcastReceiver::Open([&](const BroadcastMessage& m) { heard.push_back(m.code); });
    ASSERT_TRUE(receiver);
    const auto look = [&](bool trayRuns) {
        Run([=](WindowHandle d) {
            for (const int box :
                 {general_options_ids::kSound, general_options_ids::kAnimation, general_options_ids::kSplash})
                EXPECT_TRUE(IsItemChecked(d, box));
            EXPECT_EQ(RowCount(d, general_options_ids::kRefresh), 120);
            EXPECT_EQ(RowText(d, general_options_ids::kRefresh, 119), "120 sec.");
            EXPECT_EQ(SelectedRow(d, general_options_ids::kRefresh), 1);
            EXPECT_EQ(IsEnabled(DialogItem(d, general_options_ids::kTray)), !trayRuns);
            EXPECT_EQ(IsItemChecked(d, general_options_ids::kTray), trayRuns);
            TestPushItem(d, kIdCancel);
        });
    };
    look(false);
    EXPECT_FALSE(std::filesystem::exists(folder.File("Pinwell.ini"))) << "Cancel writes nothing";
    SessionGuard tray;
    ASSERT_EQ(tray.Take("ClassMarlinTray"), GuardResult::Taken);
    look(true);
    receiver->Dispatch();
    EXPECT_THAT(heard, ElementsAre(kBroadcastSettingsChanged, kBroadcastSettingsChanged));
}

TEST_F(OptionsTest, OkStoresAndAppliesTheBoxes)
{
    SetSuite("Sound", "2");
    SetSuite("NetworkRefresh", "0");
    SetAnimationEnabled(1);
    Run([this](WindowHandle d) {
        EXPECT_EQ(SelectedRow(d, general_options_ids::kRefresh), -1);
        SetSuite("Splash", "0");  // by another copy
        SetSuite("Annimation", "1");
        EXPECT_FALSE(IsItemChecked(d, general_options_ids::kSound)) << "only the exact 1 sets the box";
        TestPushItem(d, general_options_ids::kAnimation);
        TestPickRow(d, general_options_ids::kRefresh, 89);
        TestPushItem(d, kIdOk);
    });
    EXPECT_EQ(SuiteSetting("Sound") + SuiteSetting("Annimation"), "00");
    EXPECT_EQ(SuiteSetting("Splash"), "0") << "not touched here";
    EXPECT_EQ(SuiteSetting("NetworkRefresh"), "90");
    EXPECT_EQ(IsSoundEnabled() + IsAnimationEnabled(), 0);
}

TEST_F(CoreTest, TheSkinsListSelectsTheCurrentOneAndStoresAPick)
{
    std::filesystem::create_directory(folder.File("Styles"));
    for (const auto& [file, name] : {std::pair{"1_Metallic.ini", "Metallic"}, {"2_Honey.ini", "Honey"}})
        test::WriteAll(folder.File("Styles/" + std::string(file)), "[Preference]\nname=" + std::string(name) + "\n");
    std::vector<std::uint32_t> heard;
    const auto receiver = BroadcastReceiver::Open([&](const BroadcastMessage& m) { heard.push_back(m.code); });
    constexpr int kList = skins_dialog_ids::kSkinList;
    for (const auto& [current, row] : {std::pair("2_HONEY.INI", "Honey"), {"9_Gone.ini", ""}}) {
        SetSuite("CurrSkin", current);
        WhenModal([&, selected = std::string(row)](WindowHandle d) {
            EXPECT_EQ(CanOk(d), !selected.empty());
            EXPECT_EQ(SelectedRow(d, kList) < 0 ? "" : RowText(d, kList, SelectedRow(d, kList)), selected);
            TestPickRow(d, kList, 1);
            EXPECT_TRUE(CanOk(d));
            TestPushItem(d, selected.empty() ? kIdOk : kIdCancel);
        });
        ShowSkinDialog(nullptr);
        EXPECT_EQ(SuiteSetting("CurrSkin"), *row ? current : "1_Metallic.ini");
    }
    receiver->Dispatch();
    EXPECT_THAT(heard, ElementsAre(kBroadcastSkinChanged));
    std::filesystem::remove_all(folder.File("Styles"));
    WhenModal([](WindowHandle d) {
        EXPECT_EQ(RowCount(d, kList), 0);
        EXPECT_FALSE(CanOk(d));
        TestPushItem(d, kIdCancel);
    });
    ShowSkinDialog(nullptr);
}

}  // namespace
}  // namespace jotlet
