// Setting an alarm: what the dialog shows of a note and what it leaves in the note.

#include "notes/alarm_dialog.h"

#include <fstream>

#include "notes/note_editor_dialog.h"
#include "platform/base/paths.h"
#include "platform/base/text.h"
#include "platform/desktop/file_dialog.h"
#include "platform/desktop/shell.h"
#include "resources/dialog_ids.h"
#include "support/temp_folder.h"
#include "toolkit/widget_host.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kDateButton = 100;
constexpr int kTimeButton = 101;
constexpr int kToneEdit = 103;
constexpr int kPlayButton = 104;
constexpr int kBrowseToneButton = 105;
constexpr int kTargetEdit = 106;
constexpr int kEmailRadio = 110;
constexpr int kUrlRadio = 111;
constexpr int kDocumentRadio = 112;
constexpr int kSetRadio = 120;
constexpr int kCancelRadio = 121;

class SettingAnAlarm : public WindowTest {
protected:
    SettingAnAlarm()
    {
        note.date = DateValue{5, 3, 2010};
        note.time = TimeValue{9, 30, 0, kBeforeNoon};
        note.alarmDate = DateValue{6, 4, 2011};
        note.alarmTime = TimeValue{3, 15, 0, kAfterNoon};
        note.startKind = kStartDocument;
    }
    int Run(const std::function<void(WindowHandle)>& act, int mode = kEditExisting)
    {
        WhenModal(act);
        return AlarmDialog(note, mode).DoModal(nullptr, alarm_dialog_ids::kDialog);
    }
    static void Type(WindowHandle dialog, int id, std::string_view text)
    {
        SetItemTextOf(dialog, id, "");
        TestType(DialogItem(dialog, id), text);
    }
    static std::vector<int> CheckedOf(WindowHandle dialog, std::initializer_list<int> ids)
    {
        std::vector<int> checked;
        for (const int id : ids) {
            if (IsItemChecked(dialog, id))
                checked.push_back(id);
        }
        return checked;
    }

    NoteRecord note{};
    std::vector<std::string> played;
    ScopedShellHook shell{[this](std::string_view verb, std::string_view target) {
        if (verb == "play" || verb == "stop")
            played.emplace_back(verb == "play" ? target : verb);
    }};
};

TEST_F(SettingAnAlarm, WhatIsSetIsStoredAndAWaitingAlarmOpensAsItIs)
{
    const int result = Run([](WindowHandle dialog) {
        EXPECT_EQ(CheckedOf(dialog, {kSetRadio, kCancelRadio}), std::vector{kCancelRadio});
        TestPushItem(dialog, kSetRadio);
        Type(dialog, kToneEdit, "/home/anna/bell.wav");
        TestPushItem(dialog, kEmailRadio);
        Type(dialog, kTargetEdit, "anna@pinwell.example");
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(result, 1);
    EXPECT_EQ(note.alarmState, kAlarmSet);
    EXPECT_EQ(FieldText(note.toneFile), "/home/anna/bell.wav");
    EXPECT_EQ(note.startKind, kStartEmail);
    EXPECT_EQ(FieldText(note.startTarget), "anna@pinwell.example");
    EXPECT_EQ(note.alarmDate.Get(), (DateValue{6, 4, 2011})) << "an existing note keeps its alarm's moment";

    Run([](WindowHandle dialog) {
        EXPECT_EQ(CheckedOf(dialog, {kSetRadio, kCancelRadio}), std::vector{kSetRadio});
        EXPECT_EQ(CheckedOf(dialog, {kEmailRadio, kUrlRadio, kDocumentRadio}), std::vector{kEmailRadio});
        EXPECT_EQ(ItemText(dialog, kDateButton), "6/4/2011");
        EXPECT_EQ(ItemText(dialog, kTimeButton), "15:15");
        EXPECT_EQ(ItemText(dialog, kToneEdit), "/home/anna/bell.wav");
        EXPECT_EQ(ItemText(dialog, kTargetEdit), "anna@pinwell.example");
        TestPushItem(dialog, kIdCancel);
    });
}

TEST_F(SettingAnAlarm, ASpentAlarmOpensAsCancelledAndOkMakesItSo)
{
    note.alarmState = kAlarmFired;
    EXPECT_EQ(Run([](WindowHandle dialog) { TestPushItem(dialog, kIdCancel); }), 0);
    EXPECT_EQ(note.alarmState, kAlarmFired);
    Run([](WindowHandle dialog) {
        EXPECT_EQ(CheckedOf(dialog, {kSetRadio, kCancelRadio}), std::vector{kCancelRadio});
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(note.alarmState, kAlarmNone);
}

TEST_F(SettingAnAlarm, TheControlsFollowTheRadioButtons)
{
    const auto expectEnabled = [](WindowHandle dialog, bool enabled) {
        for (const int id : {100, 101, 103, 104, 105, 106, 107, 110, 111, 112})
            EXPECT_EQ(IsEnabled(DialogItem(dialog, id)), enabled) << id;
    };
    Run([&](WindowHandle dialog) {
        expectEnabled(dialog, false);
        TestPushItem(dialog, kSetRadio);
        expectEnabled(dialog, true);
        TestPushItem(dialog, kCancelRadio);
        expectEnabled(dialog, false);
        TestPushItem(dialog, kIdCancel);
    });
}

TEST_F(SettingAnAlarm, ANewNotesAlarmStartsOnTheNotesOwnMomentEachTime)
{
    for (int i = 0; i < 2; ++i) {
        note.alarmDate = DateValue{1, 1, 2001};
        note.alarmTime = TimeValue{0, 0, 0, kBeforeNoon};
        Run(
            [](WindowHandle dialog) {
                EXPECT_EQ(ItemText(dialog, kDateButton), "5/3/2010");
                EXPECT_EQ(ItemText(dialog, kTimeButton), "09:30");
                TestPushItem(dialog, kIdCancel);
            },
            kEditNew);
        EXPECT_EQ(note.alarmDate.Get(), (DateValue{5, 3, 2010}));
        EXPECT_EQ(note.alarmTime.Get(), note.time.Get());
    }
}

TEST_F(SettingAnAlarm, AnImportedNoteHasNoStartKindUntilOneIsChosen)
{
    note.startKind = 0;
    Run([](WindowHandle dialog) {
        EXPECT_THAT(CheckedOf(dialog, {kEmailRadio, kUrlRadio, kDocumentRadio}), IsEmpty());
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(note.startKind, 0);
    Run([](WindowHandle dialog) {
        TestPushItem(dialog, kSetRadio);
        TestPushItem(dialog, kUrlRadio);
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(note.startKind, kStartUrl);
}

TEST_F(SettingAnAlarm, ATimePickedBeforeCancelStaysInTheNote)
{
    const int result = Run([](WindowHandle dialog) {
        TestPushItem(dialog, kSetRadio);
        WhenModalHasFocus([](WindowHandle picker) {
            TestKey(FocusedWindow(), kKeyDown);
            ServeEvents();
            TestPushItem(picker, kIdOk);
        });
        TestPushItem(dialog, kTimeButton);
        EXPECT_EQ(ItemText(dialog, kTimeButton), "15:20");
        WhenModalHasFocus([](WindowHandle picker) {
            TestKey(FocusedWindow(), kKeyDown);
            ServeEvents();
            TestPushItem(picker, kIdCancel);
        });
        TestPushItem(dialog, kTimeButton);
        EXPECT_EQ(ItemText(dialog, kTimeButton), "15:20");
        TestPushItem(dialog, kIdCancel);
    });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(note.alarmTime.Get(), (TimeValue{3, 20, 0, kAfterNoon}));
    EXPECT_EQ(note.alarmState, kAlarmNone);
}

TEST_F(SettingAnAlarm, ADatePickedIsShownAtOnce)
{
    Run([](WindowHandle dialog) {
        TestPushItem(dialog, kSetRadio);
        WhenModalHasFocus([](WindowHandle picker) {
            TestKey(FocusedWindow(), kKeyRight);
            ServeEvents();
            TestPushItem(picker, kIdOk);
        });
        TestPushItem(dialog, kDateButton);
        EXPECT_EQ(ItemText(dialog, kDateButton), "7/4/2011");
        TestPushItem(dialog, kIdCancel);
    });
    EXPECT_EQ(note.alarmDate.Get(), (DateValue{7, 4, 2011}));
}

TEST_F(SettingAnAlarm, PlaySoundsTheToneThatStandsInTheEditUntilTheDialogEnds)
{
    const test::TempFolder program;
    SetProgramPath(program.File("jotlet"));
    std::ofstream(program.File("Bell.wav")) << "RIFF";
    Run([&](WindowHandle dialog) {
        TestPushItem(dialog, kSetRadio);
        TestPushItem(dialog, kPlayButton);
        EXPECT_THAT(played, IsEmpty());
        Type(dialog, kToneEdit, "ring.wav");
        TestPushItem(dialog, kPlayButton);
        Type(dialog, kToneEdit, "Bell.wav");
        TestPushItem(dialog, kPlayButton);
        ScopedFileAnswer answer([&](const FileDialogRequest& asked) {
            EXPECT_EQ(asked.folder + "/", program.File(""));
            return std::nullopt;
        });
        TestPushItem(dialog, kBrowseToneButton);
        EXPECT_THAT(played, ElementsAre("ring.wav", program.File("Bell.wav")));
        TestPushItem(dialog, kIdCancel);
    });
    EXPECT_EQ(FieldText(note.toneFile), "");
    EXPECT_EQ(played.back(), "stop");
    SetProgramPath("");
}

TEST_F(SettingAnAlarm, PathsEndAtTheFieldsWidthInAWholeCharacter)
{
    Run([](WindowHandle dialog) {
        TestPushItem(dialog, kSetRadio);
        Type(dialog, kToneEdit, std::string(300, 'x'));
        EXPECT_EQ(ItemText(dialog, kToneEdit).size(), 260u);
        Type(dialog, kTargetEdit, std::string(258, 'x') + "é");
        TestPushItem(dialog, kIdOk);
    });
    EXPECT_EQ(FieldText(note.toneFile), std::string(259, 'x'));
    EXPECT_EQ(FieldText(note.startTarget), std::string(258, 'x'));
}

}  // namespace
}  // namespace jotlet
