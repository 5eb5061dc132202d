// Setting an alarm: what the dialog shows of a note and what it leaves in the note; and what a fired one shows, plays
// and starts.

#include "notes/alarm_dialog.h"

#include "notes/alarm_fired_dialog.h"
#include "notes/note_editor_dialog.h"
#include "notes/open_target.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "platform/desktop/file_dialog.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "resources/dialog_ids.h"
#include "support/temp_folder.h"
#include "toolkit/widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace alarm_dialog_ids;
using namespace alarm_fired_ids;

class Alarms : public WindowTest {
protected:
    Alarms()
    {
        note.date = DateValue{5, 3, 2010};
        note.time = TimeValue{9, 30, 0, kBeforeNoon};
        note.alarmDate = DateValue{6, 4, 2011};
        note.alarmTime = TimeValue{3, 15, 0, kAfterNoon};
        note.startKind = kStartDocument;
    }
    int Set(const std::function<void(WindowHandle)>& act, int mode = kEditExisting)
    {
        WhenModal(act);
        return AlarmDialog(note, mode).DoModal(nullptr, alarm_dialog_ids::kDialog);
    }
    // What the dialog of the fired alarm ended with; `act` looks at it and ends it.
    int Fire(const std::function<void(WindowHandle)>& act)
    {
        calls.clear();
        WhenModal(act);
        AlarmFiredDialog dialog(note);
        const int result = dialog.DoModal(nullptr, alarm_fired_ids::kDialog);
        answered = dialog.Answered();
        return result;
    }
    int Fire(int button)
    {
        return Fire([=](WindowHandle dialog) { TestPushItem(dialog, button); });
    }
    static void Type(WindowHandle dialog, int id, std::string_view text)
    {
        SetItemTextOf(dialog, id, "");
        TestType(DialogItem(dialog, id), text);
    }
    static std::vector<int> Checked(WindowHandle dialog)
    {
        std::vector<int> checked;
        for (const int id : {kEmailRadio, kUrlRadio, kDocumentRadio, kSetRadio, kCancelRadio})
            if (IsItemChecked(dialog, id))
                checked.push_back(id);
        return checked;
    }

    NoteRecord note{};
    bool answered = false;
    std::vector<std::string> calls;
    ScopedShellHook shell{[this](std::string_view verb, std::string_view target) {
        calls.push_back(std::string(verb) + " " + std::string(target));
    }};
};

TEST_F(Alarms, WhatIsSetIsStoredAndOpensAsItIsAndCancelLeavesItAlone)
{
    const int result = Set([](WindowHandle dialog) {
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), DialogItem(dialog, kCancelRadio));
        EXPECT_THAT(Checked(dialog), ElementsAre(kDocumentRadio, kCancelRadio));
        for (const int radio : {kCancelRadio, kSetRadio}) {
            TestPushItem(dialog, radio);
            for (const int id : {kDateButton, kTimeButton, kToneEdit, kPlayButton, kBrowseToneButton, kTargetEdit,
                                 kBrowseTargetButton, kEmailRadio, kUrlRadio, kDocumentRadio})
                EXPECT_EQ(IsEnabled(DialogItem(dialog, id)), radio == kSetRadio) << id;
        }
        Type(dialog, kToneEdit, std::string(300, 'x'));
        EXPECT_EQ(ItemText(dialog, kToneEdit).size(), 260u);
        TestPushItem(dialog, kEmailRadio);
        Type(dialog, kTargetEdit, std::string(258, 'x') + "é");
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(result, 1);
    EXPECT_EQ(note.alarmState, kAlarmSet);
    EXPECT_EQ(FieldText(note.toneFile), std::string(259, 'x'));
    EXPECT_EQ(note.startKind, kStartEmail);
    EXPECT_EQ(FieldText(note.startTarget), std::string(258, 'x')) << "a whole character";
    EXPECT_EQ(note.alarmDate.Get(), (DateValue{6, 4, 2011})) << "an existing note keeps its alarm's moment";

    EXPECT_EQ(Set([this](WindowHandle dialog) {
                  ServeEvents();
                  EXPECT_EQ(FocusedWindow(), DialogItem(dialog, kToneEdit));
                  EXPECT_THAT(Checked(dialog), ElementsAre(kEmailRadio, kSetRadio));
                  EXPECT_EQ(ItemText(dialog, kDateButton), "6/4/2011");
                  EXPECT_EQ(ItemText(dialog, kTimeButton), "15:15");
                  EXPECT_EQ(ItemText(dialog, kToneEdit), FieldText(note.toneFile));
                  EXPECT_EQ(ItemText(dialog, kTargetEdit), FieldText(note.startTarget));
                  TestPushItem(dialog, kCancelRadio);
                  TestPushItem(dialog, kIdCancel);
              }),
              0);
    EXPECT_EQ(note.alarmState, kAlarmSet);
}

TEST_F(Alarms, ASpentOneOpensAsCancelledAndAnImportedNoteHasNoStartKindUntilOneIsChosen)
{
    note.alarmState = kAlarmFired;
    note.startKind = 0;
    Set([](WindowHandle dialog) {
        EXPECT_THAT(Checked(dialog), ElementsAre(kCancelRadio));
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(note.alarmState, kAlarmNone);
    EXPECT_EQ(note.startKind, 0);
    Set([](WindowHandle dialog) {
        TestPushItem(dialog, kSetRadio);
        TestPushItem(dialog, kUrlRadio);
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(note.startKind, kStartUrl);
}

TEST_F(Alarms, AMomentPickedStaysInTheNoteAndANewNotesAlarmStartsOnTheNotesOwn)
{
    const auto pick = [](WindowHandle dialog, int button, int key, int end) {
        WhenModalHasFocus([=](WindowHandle picker) {
            TestKey(FocusedWindow(), key);
            ServeEvents();
            TestPushItem(picker, end);
        });
        TestPushItem(dialog, button);
        ServeEvents();
        EXPECT_EQ(FocusedWindow(), DialogItem(dialog, kToneEdit));
    };
    Set([&](WindowHandle dialog) {
        TestPushItem(dialog, kSetRadio);
        for (const int end : {kIdOk, kIdCancel}) {
            pick(dialog, kTimeButton, kKeyDown, end);
            pick(dialog, kDateButton, kKeyRight, end);
            EXPECT_EQ(ItemText(dialog, kTimeButton), "15:20");
            EXPECT_EQ(ItemText(dialog, kDateButton), "7/4/2011");
        }
        TestPushItem(dialog, kIdCancel);
    });
    EXPECT_EQ(note.alarmTime.Get(), (TimeValue{3, 20, 0, kAfterNoon})) << "also when the dialog is cancelled";
    EXPECT_EQ(note.alarmState, kAlarmNone);
    Set([](WindowHandle dialog) { TestPushItem(dialog, kIdCancel); }, kEditNew);
    EXPECT_EQ(note.alarmDate.Get(), (DateValue{5, 3, 2010}));
    EXPECT_EQ(note.alarmTime.Get(), note.time.Get());
}

TEST_F(Alarms, PlaySoundsTheToneThatStandsInTheEditUntilTheDialogEnds)
{
    const test::TempFolder program;
    SetProgramPath(program.File("jotlet"));
    test::WriteAll(program.File("Bell.wav"), "RIFF");
    std::vector<std::string> asked;
    const ScopedFileAnswer answer([&](const FileDialogRequest& request) {
        asked.push_back(request.title + request.folder);
        return std::optional<std::string>("/tmp/chosen");
    });
    ScopedAnswers answers;
    Set([&](WindowHandle dialog) {
        TestPushItem(dialog, kSetRadio);
        TestPushItem(dialog, kPlayButton);
        EXPECT_EQ(answers.beeps, 1) << "no tone yet";
        for (const char* tone : {"ring.wav", "Bell.wav"}) {
            Type(dialog, kToneEdit, tone);
            TestPushItem(dialog, kPlayButton);
        }
        for (const auto& [browse, edit] :
             {std::pair(kBrowseToneButton, kToneEdit), {kBrowseTargetButton, kTargetEdit}}) {
            TestPushItem(dialog, browse);
            EXPECT_EQ(ItemText(dialog, edit), "/tmp/chosen");
        }
        TestPushItem(dialog, kIdCancel);
    });
    EXPECT_THAT(asked, ElementsAre("Tone file" + program.Path(), "Start"));
    EXPECT_THAT(calls, ElementsAre("play ring.wav", "play " + program.File("Bell.wav"), "stop "));
    SetProgramPath("");
}

TEST_F(Alarms, AFiredOneShowsItsMomentAndTextToReadAndStartsItsTargetByOkAlone)
{
    StoreText(note.text, "two bottles\r\nand cream");
    EXPECT_EQ(Fire([](WindowHandle dialog) {
                  EXPECT_EQ(ItemText(dialog, kDateText), "6/4/2011");
                  EXPECT_EQ(ItemText(dialog, kTimeText), "15:15");
                  ServeEvents();
                  EXPECT_EQ(FocusedWindow(), DialogItem(dialog, kDescriptionEdit));
                  TestType(DialogItem(dialog, kDescriptionEdit), "x");
                  EXPECT_EQ(ItemText(dialog, kDescriptionEdit), "two bottles\r\nand cream");
                  EXPECT_FALSE(IsEnabled(DialogItem(dialog, kStartBox)) || IsItemChecked(dialog, kStartBox));
                  EXPECT_FALSE(IsEnabled(DialogItem(dialog, kTargetText)));
                  TestPushItem(dialog, kIdOk);
              }),
              1);
    EXPECT_THAT(calls, IsEmpty());

    struct Case {
        std::uint8_t kind;
        const char* target;
        std::vector<std::string> calls;
        std::size_t told = 0;
    };
    // An imported note has kind 0: its target is a document like any other. A document's bare name is not looked for.
    for (const Case& c : {Case{kStartEmail, "anna@pinwell.example", {"open mailto:anna@pinwell.example"}},
                          Case{0, "letters/anna.txt", {}, 1}, Case{kStartDocument, "letter.txt", {}, 1},
                          Case{kStartUrl, "pinwell.example", {"open pinwell.example"}},
                          Case{kStartDocument, "WWW.pinwell.example", {"open WWW.pinwell.example"}},
                          Case{0, "/home/anna/100%.txt", {"open /home/anna/100%.txt"}}}) {
        ScopedAnswers boxes;
        note.startKind = c.kind;
        StoreText(note.startTarget, c.target);
        Fire(kIdOk);
        EXPECT_EQ(calls, c.calls) << c.target;
        EXPECT_EQ(boxes.texts.size(), c.told) << c.target;
    }
    EXPECT_EQ(Fire(kIdCancel), 0);
    Fire([](WindowHandle dialog) {
        TestPushItem(dialog, kStartBox);
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_THAT(calls, IsEmpty()) << "the box was cleared";
    StoreText(note.toneFile, "/tmp/ring.wav");
    Fire(kIdCancel);
    EXPECT_THAT(calls, ElementsAre("play /tmp/ring.wav", "stop "));
}

TEST_F(Alarms, AProgramStartsOnlyWhenTheUserSaysSo)
{
    StoreText(note.startTarget, "file:///bin/true");
    ScopedAnswers boxes({Answer::No, Answer::Ok});
    Fire(kIdOk);
    EXPECT_THAT(calls, IsEmpty());
    Fire(kIdOk);
    EXPECT_THAT(calls, ElementsAre("open file:///bin/true"));
    EXPECT_THAT(boxes.texts, testing::Each(testing::HasSubstr("file:///bin/true")));
    for (const char* file : {"/home/anna/a.Desktop", "b.JAR", "/bin/true"})
        EXPECT_TRUE(MayRun(file)) << file;
    for (const char* file : {"/etc/passwd", "/etc", "jar", ""})
        EXPECT_FALSE(MayRun(file)) << file;
}

TEST_F(Alarms, AFiredOneShowsTheWholeTargetAndStartsWhatWasStored)
{
    const std::string hostile = "/list\r\n\xE2\x80\xAEtxt.sh";
    int height = 0;
    for (const std::string& target : {std::string("/a"), "/" + std::string(250, 'W'), hostile}) {
        StoreText(note.startTarget, target);
        Fire([&](WindowHandle dialog) {
            EXPECT_EQ(ItemText(dialog, kTargetText),
                      target == hostile ? "/list<U+000D><U+000A><U+202E>txt.sh" : target);
            EXPECT_GE(ItemRect(dialog, kTargetText).Height(), ItemTextHeight(dialog, kTargetText));
            EXPECT_LT(ItemRect(dialog, kTargetText).bottom, ClientRect(dialog).bottom);
            if (target.size() == 2)
                height = ClientRect(dialog).Height();
            else
                EXPECT_EQ(ClientRect(dialog).Height() > height, target != hostile);
            TestPushItem(dialog, kIdOk);
        });
    }
    EXPECT_THAT(calls, ElementsAre("open " + hostile));
}

TEST_F(Alarms, OnlyAButtonOrEscapeIsAnAnswer)
{
    Fire([](WindowHandle dialog) { DestroyNativeWindow(dialog); });
    EXPECT_FALSE(answered);
    Fire([](WindowHandle dialog) { TestKey(DialogItem(dialog, kDescriptionEdit), kKeyEscape); });
    EXPECT_TRUE(answered);
    Fire(kIdOk);
    EXPECT_TRUE(answered);
}

}  // namespace
}  // namespace jotlet
