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
#include "store/record_query.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

void Type(WindowHandle dialog, int id, std::string_view text)
{
    TestType(DialogItem(dialog, id), text);
}
bool CanOk(WindowHandle dialog)
{
    return IsEnabled(DialogItem(dialog, kIdOk));
}

class NewFileDialogTest : public CoreTest {
protected:
    int Run(std::function<void(WindowHandle)> act)
    {
        WhenModal(std::move(act));
        return dialog.DoModal(nullptr, new_file_dialog_ids::kDialog);
    }
    NewFileDialog dialog{"jot"};
};

TEST_F(NewFileDialogTest, OpensOnTheWorksFolderAndWaitsForAName)
{
    EXPECT_EQ(Run([this](WindowHandle d) {
                  EXPECT_EQ(ItemText(d, new_file_dialog_ids::kFolder), folder.File("Works"));
                  EXPECT_TRUE(IsItemChecked(d, new_file_dialog_ids::kExamples));
                  EXPECT_FALSE(CanOk(d));
                  Type(d, new_file_dialog_ids::kName, "plans.txt");
                  EXPECT_TRUE(CanOk(d));
                  TestPushItem(d, new_file_dialog_ids::kExamples);
                  TestPushItem(d, kIdOk);
              }),
              1);
    EXPECT_EQ(dialog.Path(), folder.File("Works/plans.txt.jot"));
    EXPECT_FALSE(std::filesystem::exists(dialog.Path())) << "it is made later";
    EXPECT_EQ(Setting("RecordExample"), "0");
}

TEST_F(NewFileDialogTest, AnExistingNameAndOneThatCannotBeMadeAreTold)
{
    MakeNotes("here.jot");
    EXPECT_EQ(Run([this](WindowHandle d) {
                  Type(d, new_file_dialog_ids::kName, "here");
                  TestPushItem(d, kIdOk);
                  Type(d, new_file_dialog_ids::kName, "/no such folder/x");
                  TestPushItem(d, kIdOk);
                  SetItemTextOf(d, new_file_dialog_ids::kName, std::string(252, 'n'));
                  TestPushItem(d, kIdOk);
                  TestPushItem(d, kIdCancel);
              }),
              0);
    EXPECT_THAT(boxes.texts, ElementsAre(HasSubstr("This file alredy exists."), "Error in creating a file.",
                                         "Error in creating a file."));
    EXPECT_EQ(Setting("RecordExample"), "") << "Cancel stores nothing";
}

TEST_F(NewFileDialogTest, BrowseTakesAFolderAndOnCancelKeepsTheOldOne)
{
    chosenFiles = {folder.Path()};
    Run([this](WindowHandle d) {
        Type(d, new_file_dialog_ids::kName, "a");
        TestPushItem(d, new_file_dialog_ids::kBrowse);
        EXPECT_EQ(ItemText(d, new_file_dialog_ids::kFolder), folder.Path());
        TestPushItem(d, new_file_dialog_ids::kBrowse);
        EXPECT_EQ(ItemText(d, new_file_dialog_ids::kFolder), folder.Path());
        SetItemTextOf(d, new_file_dialog_ids::kFolder, "");
        TestKey(DialogItem(d, new_file_dialog_ids::kName), kKeyBack);
        EXPECT_FALSE(CanOk(d));
        TestPushItem(d, kIdCancel);
    });
}

class PasswordTest : public CoreTest {
protected:
    const std::string path = MakeNotes("notes.jot", {"boss", "aide", "guest"});

    std::optional<std::string> Ask(const std::string& typed)
    {
        WhenModal([typed](WindowHandle d) {
            EXPECT_EQ(WindowTitle(d), "notes.jot");
            if (!typed.empty())
                Type(d, password_dialog_ids::kPassword, typed);
            TestPushItem(d, kIdOk);
        });
        return AskFilePasswordAndTell(nullptr, path);
    }
    Role RoleWith(const std::string& password) { return TableFile(path, password).GetRole(); }
};

TEST_F(PasswordTest, EachOfTheThreePasswordsOpensTheFileWithItsRole)
{
    struct Case {
        const char* typed;
        Role role;
    };
    for (const Case& c : {Case{"boss", Role::Owner}, Case{"aide", Role::Assistant}, Case{"guest", Role::Reader}}) {
        const auto password = Ask(c.typed);
        ASSERT_TRUE(password) << c.typed;
        EXPECT_EQ(RoleWith(*password), c.role) << c.typed;
    }
    EXPECT_THAT(boxes.texts, IsEmpty());
}

TEST_F(PasswordTest, AWrongOneIsRefusedOnceAndCaseCounts)
{
    EXPECT_FALSE(Ask("Boss"));
    EXPECT_FALSE(Ask("bossboss901234567890")) << "20 characters match nothing";
    EXPECT_FALSE(Ask("")) << "no role is without a password";
    EXPECT_THAT(boxes.texts, testing::Each("Program can't open this file. Incorrect password."));
    EXPECT_EQ(boxes.texts.size(), 3u);
}

TEST_F(PasswordTest, TheUntouchedEmptyBoxOpensAFileWhoseAssistantHasNoPassword)
{
    std::string owner = "boss";
    ASSERT_EQ(SetNetworkPasswords(path, owner, {"boss", "", ""}), 1);
    const auto password = Ask("");
    ASSERT_TRUE(password);
    EXPECT_EQ(RoleWith(*password), Role::Assistant);
}

TEST_F(PasswordTest, ClearingTheBoxDisablesOk)
{
    WhenModal([](WindowHandle d) {
        EXPECT_TRUE(CanOk(d));
        Type(d, password_dialog_ids::kPassword, "x");
        EXPECT_TRUE(CanOk(d));
        TestKey(DialogItem(d, password_dialog_ids::kPassword), kKeyBack);
        EXPECT_FALSE(CanOk(d));
        TestPushItem(d, kIdCancel);
    });
    EXPECT_FALSE(AskFilePasswordAndTell(nullptr, path));
}

TEST_F(PasswordTest, NobodyIsAskedWithoutAnOwnerPassword)
{
    std::string owner = "boss";
    ASSERT_EQ(SetNetworkPasswords(path, owner, {"", "aide", "guest"}), 1);
    EXPECT_EQ(AskFilePasswordAndTell(nullptr, path), "");
    EXPECT_EQ(RoleWith(""), Role::Owner);
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

    NetworkPasswords Stored()
    {
        NetworkPasswords stored;
        ReadNetworkPasswords(path, stored);
        return stored;
    }
    // Fills the three boxes, then lets `verify` work the second dialog.
    static void Fill(WindowHandle d, const char* owner, const char* assistant, const char* reader)
    {
        Type(d, network_passwords_ids::kOwner, owner);
        Type(d, network_passwords_ids::kAssistant, assistant);
        Type(d, network_passwords_ids::kReader, reader);
    }
};

TEST_F(NetworkPasswordsTest, AMismatchInTheSecondDialogIsToldAndAskedAgain)
{
    WhenModal([](WindowHandle d) {
        EXPECT_FALSE(CanOk(d));
        Fill(d, "boss", "aide", "aaaaaaaaaaaaaaaaaaaa");
        EXPECT_TRUE(CanOk(d));
        TestPushItem(d, kIdOk);
        ASSERT_EQ(TopModal(), d) << "20 bytes cannot be stored, and are not cut unseen";
        SetItemTextOf(d, network_passwords_ids::kReader, "guest");
        WhenModal([](WindowHandle first) {
            Fill(first, "boss", "aide", "gust");
            WhenModal([](WindowHandle second) {
                EXPECT_EQ(ItemText(second, network_passwords_ids::kOwner), "");
                Fill(second, "boss", "aide", "guest");
                TestPushItem(second, kIdOk);
            });
            TestPushItem(first, kIdOk);
        });
        TestPushItem(d, kIdOk);
    });
    EXPECT_EQ(RunNetworkPasswords(nullptr, path, current), 1);
    EXPECT_THAT(boxes.texts, ElementsAre(testing::StartsWith("A password may have at most 19 bytes"),
                                         "You did not enter the same password. Try again."));
    EXPECT_EQ(Stored().owner, "boss");
    EXPECT_EQ(Stored().assistant, "aide");
    EXPECT_EQ(Stored().reader, "guest");
    EXPECT_EQ(current, "boss") << "this copy stays Owner";
}

TEST_F(NetworkPasswordsTest, CancelInEitherDialogLeavesTheHeaderAlone)
{
    const std::string before = test::ReadAll(path);
    WhenModal([](WindowHandle d) { TestPushItem(d, kIdCancel); });
    EXPECT_EQ(RunNetworkPasswords(nullptr, path, current), 0);
    WhenModal([](WindowHandle d) {
        Fill(d, "boss", "", "");
        WhenModal([](WindowHandle verify) { TestPushItem(verify, kIdCancel); });
        TestPushItem(d, kIdOk);
    });
    EXPECT_EQ(RunNetworkPasswords(nullptr, path, current), 0);
    EXPECT_EQ(Stored().owner, "");
    EXPECT_EQ(test::ReadAll(path).substr(200, 100), before.substr(200, 100));
}

TEST_F(NetworkPasswordsTest, OnlyWhoHasTheOwnerPasswordMaySetThem)
{
    ASSERT_EQ(SetNetworkPasswords(path, current, {"boss", "aide", ""}), 1);
    std::string assistant = "aide";
    EXPECT_EQ(RunNetworkPasswords(nullptr, path, assistant), 0);
    EXPECT_THAT(boxes.texts, ElementsAre("Program can't do this. You don't have permission."));
}

TEST_F(NetworkPasswordsTest, ClearingTheOwnersBoxOpensTheFileToEverybody)
{
    ASSERT_EQ(SetNetworkPasswords(path, current, {"x", "", "guest"}), 1);
    WhenModal([](WindowHandle d) {
        EXPECT_EQ(ItemText(d, network_passwords_ids::kReader), "guest");
        TestKey(DialogItem(d, network_passwords_ids::kOwner), kKeyEnd);
        TestKey(DialogItem(d, network_passwords_ids::kOwner), kKeyBack);
        WhenModal([](WindowHandle verify) {
            Type(verify, network_passwords_ids::kReader, "guest");
            TestPushItem(verify, kIdOk);
        });
        TestPushItem(d, kIdOk);
    });
    EXPECT_EQ(RunNetworkPasswords(nullptr, path, current), 1);
    EXPECT_EQ(Stored().owner, "");
    EXPECT_EQ(TableFile(path, "").GetRole(), Role::Owner);
}

class CopyAndCompactTest : public CoreTest {
protected:
    const std::string path = MakeNotes("notes.jot");
};

TEST_F(CopyAndCompactTest, SaveAsTellsWhatStandsInTheWay)
{
    TableFile file(path, "");
    EXPECT_EQ(SaveAsCommand(nullptr, file), 0) << "Cancel";
    EXPECT_EQ(choosers.back().mode, FileDialogMode::Save);
    EXPECT_EQ(choosers.back().folder, folder.File("Works"));
    EXPECT_EQ(choosers.back().filter, "Jotlet file (*.jot)|*.jot||");
    const TableFile used(MakeNotes("used.jot"), "");
    chosenFiles = {path, used.Path(), folder.File("none/x.jot"), folder.File("good.jot")};
    EXPECT_EQ(SaveAsCommand(nullptr, file), 0);
    EXPECT_EQ(boxes.beeps, 1);
    EXPECT_EQ(SaveAsCommand(nullptr, file), 0);
    EXPECT_EQ(SaveAsCommand(nullptr, file), 0);
    EXPECT_THAT(boxes.texts,
                ElementsAre("Program can't use \"" + used.Path() + "\".\r\nAccess has been denied", HasSubstr("save")));
    std::string copy;
    EXPECT_EQ(SaveAsCommand(nullptr, file, &copy), 1);
    EXPECT_EQ(copy, folder.File("good.jot"));
}

TEST_F(CopyAndCompactTest, CompactRefusesAFileInUseAndShrinksAnother)
{
    {
        TableFile file(path, "");
        chosenFiles = {path};
        EXPECT_EQ(CompactCommand(nullptr), 0);
        EXPECT_THAT(boxes.texts, ElementsAre("Program can't use \"" + path + "\".\r\nAccess has been denied"));
        RecordQuery all;
        all.PrepareResults();
        all.AddAllTerm();
        file.RunQuery(all);
        ASSERT_EQ(file.DeleteRecord(all.Results()[0]), 1);
    }
    const auto before = std::filesystem::file_size(path);
    chosenFiles = {path};
    EXPECT_EQ(CompactCommand(nullptr), 1);
    EXPECT_EQ(std::filesystem::file_size(path), before - kNoteRecordSize);
}

TEST_F(CopyAndCompactTest, CompactLeavesWhatIsNoTableFileAlone)
{
    test::WriteAll(folder.File("letter.jot"), "Dear Sir");
    chosenFiles = {folder.File("letter.jot"), folder.File("gone.jot")};
    EXPECT_EQ(CompactCommand(nullptr), 0);
    EXPECT_EQ(CompactCommand(nullptr), 0);
    EXPECT_THAT(boxes.texts, ElementsAre(HasSubstr("This file is not a Jotlet file."), HasSubstr("does not exist")));
    EXPECT_EQ(test::ReadAll(folder.File("letter.jot")), "Dear Sir");
}

class OptionsTest : public CoreTest {
protected:
    void Run(std::function<void(WindowHandle)> act)
    {
        WhenModal(std::move(act));
        RunGeneralOptions(nullptr);
    }
};

TEST_F(OptionsTest, WithoutSettingsAllIsOnAndTwoSeconds)
{
    Run([](WindowHandle d) {
        for (const int box :
             {general_options_ids::kSound, general_options_ids::kAnimation, general_options_ids::kSplash})
            EXPECT_TRUE(IsItemChecked(d, box));
        EXPECT_EQ(RowCount(d, general_options_ids::kRefresh), 120);
        EXPECT_EQ(RowText(d, general_options_ids::kRefresh, 119), "120 sec.");
        EXPECT_EQ(SelectedRow(d, general_options_ids::kRefresh), 1);
        EXPECT_TRUE(IsEnabled(DialogItem(d, general_options_ids::kTray)));
        TestPushItem(d, kIdCancel);
    });
    EXPECT_FALSE(std::filesystem::exists(folder.File("Pinwell.ini"))) << "Cancel writes nothing";
}

TEST_F(OptionsTest, OkStoresAndAppliesTheBoxes)
{
    SetSuite("Sound", "2");
    SetAnimationEnabled(1);
    Run([this](WindowHandle d) {
        SetSuite("Splash", "0");  // by another copy
        SetSuite("Annimation", "1");
        EXPECT_FALSE(IsItemChecked(d, general_options_ids::kSound)) << "only the exact 1 sets the box";
        TestPushItem(d, general_options_ids::kAnimation);
        TestPickRow(d, general_options_ids::kRefresh, 89);
        TestPushItem(d, kIdOk);
    });
    EXPECT_EQ(SuiteSetting("Sound"), "0");
    EXPECT_EQ(SuiteSetting("Annimation"), "0");
    EXPECT_EQ(SuiteSetting("Splash"), "0") << "not touched here";
    EXPECT_EQ(SuiteSetting("NetworkRefresh"), "90");
    EXPECT_EQ(IsSoundEnabled(), 0);
    EXPECT_EQ(IsAnimationEnabled(), 0);
}

TEST_F(OptionsTest, ARefreshTimeOfNoneSelectsNothingAndIsStoredAsZero)
{
    SetSuite("NetworkRefresh", "0");
    Run([](WindowHandle d) {
        EXPECT_EQ(SelectedRow(d, general_options_ids::kRefresh), -1);
        TestPushItem(d, kIdOk);
    });
    EXPECT_EQ(SuiteSetting("NetworkRefresh"), "0");
}

TEST_F(OptionsTest, TheCopiesAreToldAlsoAfterCancel)
{
    std::vector<std::uint32_t> heard;
    const auto receiver = BroadcastReceiver::Open([&](const BroadcastMessage& m) { heard.push_back(m.code); });
    ASSERT_TRUE(receiver);
    Run([](WindowHandle d) { TestPushItem(d, kIdCancel); });
    receiver->Dispatch();
    EXPECT_THAT(heard, ElementsAre(kBroadcastSettingsChanged));
}

TEST_F(OptionsTest, WithTheTrayProgramRunningItsBoxIsSetAndFixed)
{
    SessionGuard tray;
    ASSERT_EQ(tray.Take("ClassMarlinTray"), GuardResult::Taken);
    Run([](WindowHandle d) {
        EXPECT_TRUE(IsItemChecked(d, general_options_ids::kTray));
        EXPECT_FALSE(IsEnabled(DialogItem(d, general_options_ids::kTray)));
        TestPushItem(d, kIdCancel);
    });
}

class SkinsDialogTest : public CoreTest {
protected:
    SkinsDialogTest()
    {
        std::filesystem::create_directory(folder.File("Styles"));
        for (const auto& [file, name] : {std::pair{"1_Metallic.ini", "Metallic"}, {"2_Honey.ini", "Honey"}})
            test::WriteAll(folder.File("Styles/" + std::string(file)),
                           "[Preference]\nname=" + std::string(name) + "\n");
    }
    void Run(std::function<void(WindowHandle)> act)
    {
        WhenModal(std::move(act));
        ShowSkinDialog(nullptr);
    }
};

TEST_F(SkinsDialogTest, TheCurrentSkinIsSelectedWithoutRegardToCase)
{
    SetSuite("CurrSkin", "2_HONEY.INI");
    Run([](WindowHandle d) {
        EXPECT_EQ(RowText(d, skins_dialog_ids::kSkinList, SelectedRow(d, skins_dialog_ids::kSkinList)), "Honey");
        EXPECT_TRUE(CanOk(d));
        TestPushItem(d, kIdCancel);
    });
    EXPECT_EQ(SuiteSetting("CurrSkin"), "2_HONEY.INI");
}

TEST_F(SkinsDialogTest, ASkinThatIsGoneSelectsNothingUntilTheUserPicks)
{
    SetSuite("CurrSkin", "9_Gone.ini");
    std::vector<std::uint32_t> heard;
    const auto receiver = BroadcastReceiver::Open([&](const BroadcastMessage& m) { heard.push_back(m.code); });
    Run([](WindowHandle d) {
        EXPECT_EQ(SelectedRow(d, skins_dialog_ids::kSkinList), -1);
        EXPECT_FALSE(CanOk(d));
        TestPickRow(d, skins_dialog_ids::kSkinList, 1);
        EXPECT_TRUE(CanOk(d));
        TestPushItem(d, kIdOk);
    });
    EXPECT_EQ(SuiteSetting("CurrSkin"), "1_Metallic.ini");
    receiver->Dispatch();
    EXPECT_THAT(heard, ElementsAre(kBroadcastSkinChanged));
}

TEST_F(SkinsDialogTest, NoSkinsGiveAnEmptyList)
{
    std::filesystem::remove_all(folder.File("Styles"));
    Run([](WindowHandle d) {
        EXPECT_EQ(RowCount(d, skins_dialog_ids::kSkinList), 0);
        EXPECT_FALSE(CanOk(d));
        TestPushItem(d, kIdCancel);
    });
}

}  // namespace
}  // namespace jotlet
