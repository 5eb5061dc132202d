// What a fired alarm shows, plays and starts.

#include "notes/alarm_fired_dialog.h"

#include <functional>

#include "notes/open_target.h"
#include "platform/base/text.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "platform/desktop/test_input.h"
#include "resources/dialog_ids.h"
#include "support/window_test.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr int kDateText = 100;
constexpr int kTimeText = 101;
constexpr int kDescriptionEdit = 103;
constexpr int kTargetText = 104;
constexpr int kStartBox = 105;

class AlarmFired : public WindowTest {
protected:
    AlarmFired()
    {
        StoreText(note.title, "Milk");
        StoreText(note.text, "two bottles\r\nand cream");
        note.alarmDate = DateValue{31, 12, 2005};
        note.alarmTime = TimeValue{1, 40, 0, kAfterNoon};
        note.startKind = kStartDocument;
    }
    // Shows the alarm and gives what the dialog ended with; `act` looks at it and ends it.
    int Fire(const std::function<void(WindowHandle)>& act)
    {
        shellCalls.clear();
        WhenModal(act);
        AlarmFiredDialog dialog(note);
        const int result = dialog.DoModal(nullptr, alarm_fired_ids::kDialog);
        answered = dialog.Answered();
        return result;
    }
    static std::function<void(WindowHandle)> Push(int id)
    {
        return [id](WindowHandle dialog) { TestPushItem(dialog, id); };
    }

    NoteRecord note{};
    bool answered = false;
    std::vector<std::pair<std::string, std::string>> shellCalls;
    ScopedShellHook shell{
        [this](std::string_view verb, std::string_view target) { shellCalls.emplace_back(verb, target); }};
};

TEST_F(AlarmFired, ItShowsTheMomentAndTheTextToReadOnly)
{
    Fire([](WindowHandle dialog) {
        EXPECT_EQ(WindowTitle(dialog), "Alarm");
        EXPECT_EQ(ItemText(dialog, kDateText), "31/12/2005");
        EXPECT_EQ(ItemText(dialog, kTimeText), "13:40");
        EXPECT_EQ(ItemText(dialog, kDescriptionEdit), "two bottles\r\nand cream");
        TestType(DialogItem(dialog, kDescriptionEdit), "x");
        EXPECT_EQ(ItemText(dialog, kDescriptionEdit), "two bottles\r\nand cream");
        TestPushItem(dialog, kIdOk);
    });
}

TEST_F(AlarmFired, WithNothingToStartTheBoxIsGreyAndNoButtonStartsAnything)
{
    for (const int button : {kIdOk, kIdCancel}) {
        Fire([button](WindowHandle dialog) {
            EXPECT_FALSE(IsEnabled(DialogItem(dialog, kStartBox)));
            EXPECT_FALSE(IsItemChecked(dialog, kStartBox));
            EXPECT_EQ(ItemText(dialog, kTargetText), "");
            TestPushItem(dialog, button);
        });
        EXPECT_THAT(shellCalls, IsEmpty());
    }
}

TEST_F(AlarmFired, OkStartsTheTargetByItsKindAndOnlyThen)
{
    StoreText(note.startTarget, "anna@pinwell.example");
    note.startKind = kStartEmail;
    EXPECT_EQ(Fire(Push(kIdOk)), 1);
    EXPECT_THAT(shellCalls, ElementsAre(Pair("open", "mailto:anna@pinwell.example")));

    // An imported note has kind 0: its target is a document like any other.
    for (const std::uint8_t kind : {kStartUrl, kStartDocument, std::uint8_t{0}}) {
        note.startKind = kind;
        StoreText(note.startTarget, "/home/anna/list of 100%.txt");
        EXPECT_EQ(Fire(Push(kIdOk)), 1);
        EXPECT_THAT(shellCalls, ElementsAre(Pair("open", "/home/anna/list of 100%.txt"))) << int{kind};
    }
    EXPECT_EQ(Fire(Push(kIdCancel)), 0);
    EXPECT_THAT(shellCalls, IsEmpty());

    const struct {
        const char* target;
        std::uint8_t kind;
        bool opened;
    } bare[] = {{"letter.txt", kStartDocument, false},
                {"letters/anna.txt", 0, false},
                {"pinwell.example", kStartUrl, true},
                {"WWW.pinwell.example", kStartDocument, true},
                {"https://pinwell.example", kStartDocument, true}};
    for (const auto& row : bare) {
        ScopedAnswers boxes;
        note.startKind = row.kind;
        StoreText(note.startTarget, row.target);
        Fire(Push(kIdOk));
        EXPECT_EQ(!shellCalls.empty(), row.opened) << row.target;
        EXPECT_EQ(boxes.texts.empty(), row.opened) << row.target;
    }
}

TEST_F(AlarmFired, AProgramStartsOnlyWhenTheUserSaysSoAndAnUncheckedBoxStartsNothing)
{
    for (const char* program : {"/bin/true", "file:///bin/true"}) {
        StoreText(note.startTarget, program);
        ScopedAnswers boxes({Answer::No, Answer::Ok});
        Fire(Push(kIdOk));
        EXPECT_THAT(shellCalls, IsEmpty());
        Fire(Push(kIdOk));
        EXPECT_THAT(shellCalls, ElementsAre(Pair("open", program)));
        EXPECT_THAT(boxes.texts, testing::Each(testing::HasSubstr(program)));
    }
    for (const char* file : {"/home/anna/a.Desktop", "b.JAR", "/bin/true"})
        EXPECT_TRUE(MayRun(file)) << file;
    for (const char* file : {"/etc/passwd", "/etc", "jar", ""})
        EXPECT_FALSE(MayRun(file)) << file;
    Fire([](WindowHandle dialog) {
        EXPECT_TRUE(IsItemChecked(dialog, kStartBox));
        TestPushItem(dialog, kStartBox);
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(shellCalls, IsEmpty());
}

TEST_F(AlarmFired, TheToneIsPlayedOnceAndEndsWithTheWindow)
{
    StoreText(note.toneFile, "/home/anna/bell.wav");
    Fire([this](WindowHandle dialog) {
        EXPECT_THAT(shellCalls, ElementsAre(Pair("play", "/home/anna/bell.wav")));
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(shellCalls, ElementsAre(Pair("play", "/home/anna/bell.wav"), Pair("stop", "")));
}

// The target of a note from somebody else must be seen whole, or its end could hide what it does.
TEST_F(AlarmFired, TheWholeTargetIsOnViewWhateverItsLength)
{
    int shortHeight = 0;
    for (const std::string& target :
         {std::string("a"), std::string(259, 'W'), "/home/anna/" + std::string(120, 'i') + "/ " + std::string(120, 'm'),
          "https://pinwell.example/?" + std::string(230, '&')}) {
        SCOPED_TRACE(target);
        StoreText(note.startTarget, target);
        Fire([&](WindowHandle dialog) {
            EXPECT_EQ(ItemText(dialog, kTargetText), target);
            const Rect place = ItemRect(dialog, kTargetText);
            const Rect client = ClientRect(dialog);
            EXPECT_LE(ItemTextHeight(dialog, kTargetText), place.Height());
            EXPECT_LT(place.bottom, client.bottom);
            EXPECT_LT(place.right, client.right);
            if (target.size() == 1)
                shortHeight = client.Height();
            else
                EXPECT_GT(client.Height(), shortHeight);
            TestPushItem(dialog, kIdCancel);
        });
    }
}

TEST_F(AlarmFired, LineBreaksAndTurnedLettersCannotHideWhatATargetIs)
{
    const std::string target = "/list\r\n\r\n\xE2\x80\xAEtxt.sh";
    StoreText(note.startTarget, target);
    Fire([](WindowHandle dialog) {
        EXPECT_EQ(ItemText(dialog, kTargetText), "/list<U+000D><U+000A><U+000D><U+000A><U+202E>txt.sh");
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(shellCalls, ElementsAre(Pair("open", target))) << "what starts is what was stored";
}

TEST_F(AlarmFired, OnlyAButtonOrEscapeIsAnAnswer)
{
    Fire(Push(kIdCancel));
    EXPECT_TRUE(answered);
    Fire([](WindowHandle dialog) { TestKey(DialogItem(dialog, kDescriptionEdit), kKeyEscape); });
    EXPECT_TRUE(answered);
    Fire([](WindowHandle dialog) { DestroyNativeWindow(dialog); });
    EXPECT_FALSE(answered);
}

}  // namespace
}  // namespace jotlet
