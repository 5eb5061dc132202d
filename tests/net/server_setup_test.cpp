// The account on the server: its password prompt, its form, and the registration.

#include "net/server_setup.h"

#include <sys/stat.h>

#include "net_fixture.h"
#include "platform/desktop/cursor.h"
#include "resources/dialog_ids.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using namespace server_password_ids;
using namespace server_setup_ids;

// A server that answers each frame with one status.
class Answering : public ByteStream {
public:
    explicit Answering(std::byte status) : status(status) {}
    SocketError SendAll(std::span<const std::byte>) override { return SocketError::None; }
    SocketError ReceiveAll(std::span<std::byte> bytes) override
    {
        bytes[0] = status;
        return SocketError::None;
    }

private:
    std::byte status;
};

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
    static void Fill(WindowHandle form, const std::vector<std::pair<int, std::string>>& texts)
    {
        for (const auto& [id, text] : texts) {
            SetItemTextOf(form, id, "");
            TypeInto(form, id, text.empty() ? "x" : text);
            if (text.empty())
                TestKey(DialogItem(form, id), kKeyBack);
        }
    }
    static void FillAll(WindowHandle form)
    {
        Fill(form, {{kNameEdit, "Ann Other"},
                    {kEmailEdit, "ann@x.example"},
                    {kPasswordEdit, "s3cret!"},
                    {kConfirmEdit, "s3cret!"},
                    {kServerEdit, "center.example"},
                    {kPortEdit, "80"}});
    }
    // Runs `act` inside the form, then closes its window when `act` left it open. The form's result.
    int InForm(const std::function<void(WindowHandle form)>& act)
    {
        ServerSetupDialog dialog([this] {
            return ServerClient([this](const std::string& host, std::uint16_t port, std::chrono::milliseconds) {
                EXPECT_TRUE(IsWaitCursorShown()) << "a person sees that the program is busy";
                connected.push_back(host + ":" + std::to_string(port));
                const std::byte status{static_cast<unsigned char>(connected.size() - 1)};
                return ConnectResult{std::make_unique<Answering>(status), SocketError::None, 0};
            });
        });
        WhenModal([&](WindowHandle form) {
            act(form);
            if (TopModal() == form)
                TestKey(DialogItem(form, kNameEdit), kKeyEscape);
        });
        return dialog.DoModal(nullptr, server_setup_ids::kDialog);
    }

    std::vector<std::string> connected;
};

TEST_F(ServerSetup, ButtonsFollowTheFieldsAndEachMistakeIsNamedAndNothingWritten)
{
    ScopedAnswers answers;
    InForm([&](WindowHandle form) {
        struct Case {
            std::string name, email, password, confirm, server, port;
            bool ok, registers;
            std::string told = "";
        };
        for (const Case& c :
             {Case{"", "", "", "", "", "", false, false}, Case{"A", "e", "p", "", "s", "", false, false},
              Case{"A", "e", "", "p", "", "1", false, false},
              Case{"A", "", "p", "q", "s", "1", false, true, "Incorrect Password"},
              Case{"", "", "", "", "s", "1", false, true, "Incorrect Name"},
              Case{"A", "", "p", "p", "s", "1", false, true, "Incorrect E-mail"},
              Case{"A", "e", "", "", "s", "1", false, true, "Incorrect Password"},
              Case{"A", "e", "p", "q", "", "", true, false, "Incorrect Password"}}) {
            Fill(form, {{kNameEdit, c.name},
                        {kEmailEdit, c.email},
                        {kPasswordEdit, c.password},
                        {kConfirmEdit, c.confirm},
                        {kServerEdit, c.server},
                        {kPortEdit, c.port}});
            SCOPED_TRACE(c.name + c.email + c.password + c.confirm + c.server + c.port);
            EXPECT_EQ(CanPress(form, kIdOk), c.ok);
            EXPECT_EQ(CanPress(form, kRegisterButton), c.registers);
            answers.texts.assign(1, "");
            TestPushItem(form, c.ok ? kIdOk : kRegisterButton);
            EXPECT_EQ(answers.texts.back(), c.told);
            ASSERT_EQ(TopModal(), form);
            if (c.told.empty())
                continue;
            const int wrong = c.told.ends_with("Name")   ? kNameEdit
                              : c.told.ends_with("mail") ? kEmailEdit
                                                         : kPasswordEdit;
            EXPECT_EQ(FocusedWindow(), DialogItem(form, wrong));
        }
    });
    EXPECT_EQ(Key("username"), "(missing)");
    EXPECT_THAT(connected, testing::IsEmpty());
}

TEST_F(ServerSetup, OkStoresTheAccountCutAtItsWidthsForItsUserAlone)
{
    SetKey("defaultport", "8090");
    SetKey("port", "");
    EXPECT_EQ(InForm([](WindowHandle form) {
                  EXPECT_EQ(ItemText(form, kPortEdit), "8090");
                  FillAll(form);
                  Fill(form, {{kNameEdit, std::string(60, 'n')}, {kEmailEdit, std::string(300, 'e')}});
                  Fill(form, {{kPasswordEdit, "0123456789"}, {kConfirmEdit, "0123456789"}});
                  EXPECT_EQ(ItemText(form, kNameEdit).size(), 50u);
                  EXPECT_EQ(ItemText(form, kPasswordEdit), "012345678") << "a tenth character cannot be typed";
                  TestPushItem(form, kIdOk);
              }),
              1);
    EXPECT_EQ(Key("username"), std::string(49, 'n'));
    EXPECT_EQ(Key("email"), std::string(259, 'e'));
    EXPECT_EQ(Key("password"), "012345678");
    EXPECT_EQ(Key("server") + ":" + Key("port"), "center.example:80");
    struct stat info {};
    ASSERT_EQ(stat(GetSuiteIniPath().Path().c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0600u);
    InForm([](WindowHandle form) {
        EXPECT_EQ(ItemText(form, kConfirmEdit), "012345678");
        EXPECT_EQ(ItemText(form, kPortEdit), "80");
        Fill(form, {{kNameEdit, "Ann"}});
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
    const auto closeForm = [&](WindowHandle form) {
        ++forms;
        EXPECT_EQ(WindowTitle(form), "Internet Marlin Server Setup");
        TestKey(DialogItem(form, kNameEdit), kKeyEscape);
    };
    WhenModal([&](WindowHandle prompt) {
        EXPECT_EQ(WindowTitle(prompt), "Ann Other");
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), DialogItem(prompt, kPromptEdit));
        TypeInto(prompt, kPromptEdit, "wrong");
        TestPushItem(prompt, kIdOk);
        EXPECT_THAT(answers.texts, ElementsAre("Incorrect Password"));
        ASSERT_EQ(TopModal(), prompt);
        Fill(prompt, {{kPromptEdit, "0123456789"}});
        WhenModal(closeForm);
        TestKey(DialogItem(prompt, kPromptEdit), kKeyReturn);
    });
    EXPECT_EQ(RunServerSetup(nullptr), 0);
    EXPECT_EQ(forms, 1);
    WhenModal([&](WindowHandle prompt) { TestPushItem(prompt, kIdCancel); });
    EXPECT_EQ(RunServerSetup(nullptr), 0);
    EXPECT_EQ(forms, 1) << "no form after Cancel";
    SetKey("password", "");
    WhenModal(closeForm);
    EXPECT_EQ(RunServerSetup(nullptr), 0);
    EXPECT_EQ(forms, 2) << "no prompt without a password";
}

TEST_F(ServerSetup, RegistrationTellsTheServersAnswerAndKeepsTheFormOpen)
{
    ScopedAnswers answers;
    InForm([&](WindowHandle form) {
        FillAll(form);
        for (int i = 0; i < 3; ++i) {
            TestPushItem(form, kRegisterButton);
            EXPECT_EQ(TopModal(), form);
            EXPECT_EQ(WindowTitle(form), "Internet Marlin Server Setup");
            EXPECT_FALSE(IsWaitCursorShown());
        }
    });
    EXPECT_THAT(answers.texts,
                ElementsAre("Registration on server was successful.", "User with this e-mail address already exist.",
                            "Unable to connect to server"));
    EXPECT_EQ(connected, std::vector<std::string>(3, "center.example:80"));
    EXPECT_EQ(Key("email"), "ann@x.example") << "stored before the exchange";
}

TEST_F(ServerSetup, TheCommandIsForTheOwnerOfAnOwnFile)
{
    ScopedAnswers answers;
    std::string current;
    ASSERT_EQ(SetNetworkPasswords(path, current, {.owner = "boss", .assistant = "help", .reader = "look"}), 1);
    TableFile assistant(path, "help");
    TableFile mine(path, "boss");
    EXPECT_EQ(ServerSetupCommand(nullptr, nullptr), 0);
    EXPECT_EQ(ServerSetupCommand(&assistant, nullptr), 0);
    ASSERT_EQ(GetSuiteIniPath().IniWriteText("Gateway", "server", "gate.example"), 1);
    TableHeader header;
    for (const bool confirmed : {false, true}) {
        WhenModal([=](WindowHandle form) {
            FillAll(form);
            confirmed ? TestPushItem(form, kIdOk) : TestKey(DialogItem(form, kNameEdit), kKeyEscape);
        });
        EXPECT_EQ(ServerSetupCommand(&mine, nullptr), confirmed ? 1 : 0);
        ASSERT_EQ(mine.ReadHeader(header), 1);
        EXPECT_EQ(FieldText(header.server), confirmed ? "gate.example" : "") << "the file carries the gateway";
    }
    StoreText(header.fileOwner.name, "Rose Tree");
    ASSERT_EQ(mine.WriteHeader(header), 1);
    EXPECT_EQ(ServerSetupCommand(&mine, nullptr), 0) << "somebody else's file";
    EXPECT_EQ(answers.texts, std::vector<std::string>(3, kNoPermission));
}

}  // namespace
}  // namespace jotlet
