// The account on the server: its password prompt, its form, and the registration against a server on this computer.

#include "net/server_setup.h"

#include <sys/stat.h>

#include <filesystem>

#include "net_fixture.h"
#include "platform/desktop/cursor.h"
#include "resources/dialog_ids.h"
#include "support/temp_folder.h"
#include "tests/net/core/marlin_server.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace std::chrono_literals;

constexpr int kPrompt = 100;
constexpr int kName = 100;
constexpr int kPassword = 101;
constexpr int kConfirm = 102;
constexpr int kServer = 103;
constexpr int kEmail = 104;
constexpr int kPort = 105;
constexpr int kRegister = 1000;
constexpr const char* kNoPermission = "Program can't do this. You don't have permission.";
constexpr const char* kNoConnection = "Unable to connect to server";

class ServerSetup : public NetFixture {
protected:
    static std::string Key(std::string_view key)
    {
        return GetSuiteIniPath().IniReadText("Marlin Server", key).value_or("(missing)");
    }
    static void SetKey(std::string_view key, std::string_view value)
    {
        ASSERT_EQ(GetSuiteIniPath().IniWriteText("Marlin Server", key, value), 1);
    }
    static void Fill(WindowHandle form, int id, std::string_view text)
    {
        SetItemTextOf(form, id, "");
        TypeInto(form, id, text);
    }
    static void FillAll(WindowHandle form, const std::string& server = "center.example", const std::string& port = "80")
    {
        Fill(form, kName, "Ann Other");
        Fill(form, kEmail, "ann@x.example");
        Fill(form, kPassword, "s3cret!");
        Fill(form, kConfirm, "s3cret!");
        Fill(form, kServer, server);
        Fill(form, kPort, port);
    }
    // Runs `act` inside the form, then closes its window when `act` left it open. The form's result.
    static int InForm(const std::function<void(WindowHandle form)>& act, std::chrono::milliseconds timeOut = 300ms)
    {
        ServerSetupDialog dialog([timeOut] {
            ServerClient client([](const std::string& host, std::uint16_t port, std::chrono::milliseconds limit) {
                EXPECT_TRUE(IsWaitCursorShown()) << "a person sees that the program is busy";
                return ConnectTcp(host, port, limit);
            });
            client.SetTimeOut(timeOut);
            return client;
        });
        WhenModal([&](WindowHandle form) {
            act(form);
            if (TopModal() == form)
                TestKey(DialogItem(form, kName), kKeyEscape);
        });
        return dialog.DoModal(nullptr, server_setup_ids::kDialog);
    }
};

TEST_F(ServerSetup, ButtonsFollowTheFieldsIndependently)
{
    InForm([](WindowHandle form) {
        EXPECT_EQ(WindowTitle(form), "Internet Marlin Server Setup");
        EXPECT_FALSE(CanPress(form, kIdOk));
        EXPECT_FALSE(CanPress(form, kRegister));
        Fill(form, kName, "A");
        EXPECT_FALSE(CanPress(form, kIdOk));
        Fill(form, kServer, "s");
        EXPECT_FALSE(CanPress(form, kRegister));
        Fill(form, kPort, "1");
        EXPECT_TRUE(CanPress(form, kRegister)) << "server and port are enough";
        EXPECT_FALSE(CanPress(form, kIdOk));
        Fill(form, kEmail, "e");
        Fill(form, kPassword, "p");
        EXPECT_FALSE(CanPress(form, kIdOk));
        Fill(form, kConfirm, "q");
        EXPECT_TRUE(CanPress(form, kIdOk)) << "all four, whether equal or not";
        TestKey(DialogItem(form, kServer), kKeyBack);
        EXPECT_FALSE(CanPress(form, kRegister));
        EXPECT_TRUE(CanPress(form, kIdOk));
    });
}

TEST_F(ServerSetup, EachMistakeIsNamedAndNothingIsWritten)
{
    ScopedAnswers answers;
    InForm([&](WindowHandle form) {
        FillAll(form, "s", "1");
        const struct {
            const char *name, *email, *password, *confirm;
            std::string told;
        } rows[] = {{"", "e", "p", "p", "Name"},
                    {"", "", "", "", "Name"},
                    {"A", "", "abc", "abd", "Password"},
                    {"A", "", "abc", "abc", "E-mail"},
                    {"A", "e", "", "", "Password"}};
        for (const auto& row : rows) {
            Fill(form, kName, row.name);
            Fill(form, kEmail, row.email);
            Fill(form, kPassword, row.password);
            Fill(form, kConfirm, row.confirm);
            TestPushItem(form, kRegister);
            ASSERT_FALSE(answers.texts.empty());
            EXPECT_EQ(answers.texts.back(), "Incorrect " + row.told);
            EXPECT_EQ(TopModal(), form);
        }
    });
    EXPECT_EQ(answers.texts.size(), 5u);
    EXPECT_EQ(Key("username"), "(missing)");
    EXPECT_EQ(Key("password"), "(missing)");
}

TEST_F(ServerSetup, OkStoresTheAccountCutAtItsWidthsForItsUserAlone)
{
    test::WriteAll(GetSuiteIniPath().Path(), "[Preference]\r\nNetworkRefresh=5\r\n");
    EXPECT_EQ(InForm([](WindowHandle form) {
                  FillAll(form);
                  Fill(form, kName, std::string(60, 'n'));
                  EXPECT_EQ(ItemText(form, kName).size(), 50u);
                  Fill(form, kEmail, std::string(300, 'e'));
                  EXPECT_EQ(ItemText(form, kEmail).size(), 260u);
                  Fill(form, kPassword, "0123456789");
                  EXPECT_EQ(ItemText(form, kPassword), "012345678") << "a tenth character cannot be typed";
                  Fill(form, kConfirm, "012345678");
                  TestPushItem(form, kIdOk);
              }),
              1);
    EXPECT_EQ(Key("username"), std::string(49, 'n'));
    EXPECT_EQ(Key("email"), std::string(259, 'e'));
    EXPECT_EQ(Key("password"), "012345678");
    EXPECT_EQ(Key("server"), "center.example");
    EXPECT_EQ(Key("port"), "80");
    EXPECT_EQ(GetSuiteIniPath().IniReadText("Preference", "NetworkRefresh"), "5") << "other settings stay";
    struct stat info {};
    ASSERT_EQ(stat(GetSuiteIniPath().Path().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
}

TEST_F(ServerSetup, TheDefaultPortIsShownWhileNoneIsStoredAndThenStored)
{
    SetKey("defaultport", "8090");
    SetKey("port", "");
    InForm([](WindowHandle form) {
        EXPECT_EQ(ItemText(form, kPort), "8090");
        FillAll(form, "s", "");
        SetItemTextOf(form, kPort, "8090");
        TestPushItem(form, kIdOk);
    });
    EXPECT_EQ(Key("port"), "8090");
    SetKey("port", "91");
    InForm([](WindowHandle form) {
        EXPECT_EQ(ItemText(form, kPort), "91");
        Fill(form, kName, "Ann");
        SetKey("email", "another@x.example");
        TestPushItem(form, kIdOk);
    });
    EXPECT_EQ(Key("username"), "Ann");
    EXPECT_EQ(Key("email"), "another@x.example") << "what another copy changed and this one did not";

    ScopedAnswers answers;
    test::WriteAll(GetSuiteIniPath().Path(), std::string(kMaxProfileBytes + 1, '\n'));
    InForm([](WindowHandle form) {
        FillAll(form);
        TestPushItem(form, kIdOk);
        EXPECT_EQ(TopModal(), form) << "it stays open with what was typed";
    });
    EXPECT_THAT(answers.texts, ElementsAre(testing::StartsWith("The account could not be written to")));
}

TEST_F(ServerSetup, TheStoredPasswordIsAskedForBeforeTheFormOpens)
{
    SetKey("username", "Ann Other");
    SetKey("password", "0123456789");  // a tenth character, as another program may write it
    ScopedAnswers answers;
    int forms = 0;
    WhenModal([&](WindowHandle prompt) {
        EXPECT_EQ(WindowTitle(prompt), "Ann Other");
        TypeInto(prompt, kPrompt, "wrong");
        TestPushItem(prompt, kIdOk);
        EXPECT_THAT(answers.texts, ElementsAre("Incorrect Password"));
        ASSERT_EQ(TopModal(), prompt);
        Fill(prompt, kPrompt, "0123456789");
        WhenModal([&](WindowHandle form) {
            ++forms;
            EXPECT_EQ(ItemText(form, kPassword), "012345678");
            TestKey(DialogItem(form, kName), kKeyEscape);
        });
        TestKey(DialogItem(prompt, kPrompt), kKeyReturn);
    });
    EXPECT_EQ(RunServerSetup(nullptr), 0);
    EXPECT_EQ(forms, 1);

    WhenModal([&](WindowHandle prompt) { TestPushItem(prompt, kIdCancel); });
    EXPECT_EQ(RunServerSetup(nullptr), 0) << "no form after Cancel";
    SetKey("password", "");
    WhenModal([&](WindowHandle form) {
        EXPECT_EQ(WindowTitle(form), "Internet Marlin Server Setup");
        TestKey(DialogItem(form, kName), kKeyEscape);
    });
    EXPECT_EQ(RunServerSetup(nullptr), 0) << "no prompt without a password";
}

TEST_F(ServerSetup, RegistrationTellsTheServersAnswerAndKeepsTheFormOpen)
{
    test::MarlinServer server;
    test::MarlinServer strange(test::Conduct::Answer, std::string("\7\0\0\0", 4));
    ASSERT_TRUE(server && strange);
    ScopedAnswers answers;
    EXPECT_EQ(InForm([&](WindowHandle form) {
                  FillAll(form, server.Host(), std::to_string(server.Port()));
                  TestPushItem(form, kRegister);
                  TestPushItem(form, kRegister);
                  Fill(form, kPort, std::to_string(strange.Port()));
                  TestPushItem(form, kRegister);
                  EXPECT_FALSE(IsWaitCursorShown());
                  ASSERT_EQ(TopModal(), form);
                  TestPushItem(form, kIdOk);
              }),
              1);
    EXPECT_THAT(answers.texts, ElementsAre("Registration on server was successful.",
                                           "User with this e-mail address already exist.", kNoConnection));
    const auto frames = server.Frames();
    ASSERT_EQ(frames.size(), 2u);
    std::string expected = std::string("\1\0\0\0", 4) + "ann@x.example";
    expected.resize(68);
    expected += "s3cret!";
    expected.resize(100);
    EXPECT_EQ(frames[0], expected);
    std::vector<std::string> holders;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.Path()))
        if (entry.is_regular_file() && test::ReadAll(entry.path()).find("s3cret!") != std::string::npos)
            holders.push_back(entry.path().filename());
    EXPECT_THAT(holders, ElementsAre("Pinwell.ini")) << "the password lies nowhere else";
}

TEST_F(ServerSetup, AServerThatFailsIsToldWithinTheTimeOutAndTheAccountIsKept)
{
    test::MarlinServer hanging(test::Conduct::Hang);
    test::MarlinServer closing(test::Conduct::CloseAtOnce);
    ASSERT_TRUE(hanging && closing);
    const auto start = std::chrono::steady_clock::now();
    ScopedAnswers answers;
    InForm([&](WindowHandle form) {
        FillAll(form, "127.0.0.1");
        for (const std::string& port :
             {std::to_string(hanging.Port()), std::to_string(closing.Port()), std::string("no digits")}) {
            Fill(form, kPort, port);
            TestPushItem(form, kRegister);
            EXPECT_EQ(Key("port"), port) << "stored before the exchange";
            EXPECT_FALSE(IsWaitCursorShown());
        }
    });
    EXPECT_EQ(answers.texts, std::vector<std::string>(3, kNoConnection));
    EXPECT_LT(std::chrono::steady_clock::now() - start, 10s);
}

TEST_F(ServerSetup, TheCommandIsForTheOwnerOfAnOwnFile)
{
    ScopedAnswers answers;
    EXPECT_EQ(ServerSetupCommand(nullptr, nullptr), 0);
    std::string current;
    ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
    for (const char* password : {"help", "look", "nobody"}) {
        TableFile mine(path, password);
        EXPECT_EQ(ServerSetupCommand(&mine, nullptr), 0);
    }
    EXPECT_EQ(answers.texts, std::vector<std::string>(4, kNoPermission));
    answers.texts.clear();

    TableFile mine(path, "boss");
    SetKey("server", "center.example");
    ASSERT_EQ(GetSuiteIniPath().IniWriteText("Gateway", "server", "gate.example"), 1);
    WhenModal([](WindowHandle form) {
        FillAll(form);
        TestPushItem(form, kIdOk);
    });
    EXPECT_EQ(ServerSetupCommand(&mine, nullptr), 1);
    TableHeader header;
    ASSERT_EQ(mine.ReadHeader(header), 1);
    EXPECT_EQ(FieldText(header.server), "gate.example") << "the file carries the gateway";

    StoreText(header.fileOwner.name, "Rose Tree");
    ASSERT_EQ(mine.WriteHeader(header), 1);
    EXPECT_EQ(ServerSetupCommand(&mine, nullptr), 0);
    EXPECT_THAT(answers.texts, ElementsAre(kNoPermission)) << "somebody else's file";
}

}  // namespace
}  // namespace jotlet
