// Dialogs made from templates, driven control by control.
#include "platform/desktop/dialog.h"
#include "platform/desktop/application.h"
#include "platform/desktop/device_context.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/test_input.h"
#include "support/window_test.h"

namespace jotlet {
namespace {

using testing::ElementsAre;
using Kind = ControlKind;

enum Ids {
    kName = 100,
    kNotes = 101,
    kMark = 102,
    kFirst = 103,
    kSecond = 104,
    kThird = 105,
    kList = 106,
    kCategory = 107,
    kColour = 108,
    kMail = 109,
    kSecret = 110,
    kLabel = 111,
    kGrey = 112,
};

DialogTemplate Form()
{
    DialogTemplate form{.id = 9, .caption = "Form", .x = 4, .y = 8, .width = 200, .height = 160};
    const auto radio = [](int id, int x, std::uint32_t style) {
        return ControlTemplate{
            .kind = Kind::Radio, .id = id, .text = "r", .x = x, .y = 84, .width = 20, .height = 10, .style = style};
    };
    form.controls = {
        {.kind = Kind::Text, .id = kLabel, .text = "&Name", .x = 3, .y = 3, .width = 40, .height = 8},
        {.kind = Kind::Edit, .id = kName, .x = 3, .y = 12, .width = 80, .height = 12},
        {.kind = Kind::Edit, .id = kNotes, .x = 3, .y = 28, .width = 80, .height = 40, .style = kControlMultiLine},
        {.kind = Kind::Check, .id = kMark, .text = "Mark", .x = 3, .y = 72, .width = 40, .height = 10},
        radio(kFirst, 3, kControlGroup),
        radio(kSecond, 25, 0),
        radio(kThird, 50, kControlGroup),
        {.kind = Kind::ListBox, .id = kList, .x = 90, .y = 3, .width = 60, .height = 50, .style = kControlSorted},
        {.kind = Kind::Combo, .id = kCategory, .x = 90, .y = 60, .width = 60, .height = 60},
        {.kind = Kind::DropList, .id = kColour, .x = 90, .y = 80, .width = 60, .height = 60},
        {.kind = Kind::Edit, .id = kMail, .x = 90, .y = 100, .width = 60, .height = 12, .style = kControlLowerCase},
        {.kind = Kind::Edit, .id = kSecret, .x = 90, .y = 120, .width = 60, .height = 12, .style = kControlPassword},
        {.kind = Kind::DefaultPush, .id = kIdOk, .text = "OK", .x = 155, .y = 3, .width = 40, .height = 14},
        {.kind = Kind::Push, .id = kGrey, .x = 155, .y = 40, .width = 40, .height = 14, .style = kControlDisabled},
        {.kind = Kind::Push, .id = kIdCancel, .text = "Cancel", .x = 155, .y = 20, .width = 40, .height = 14},
    };
    return form;
}

class DialogTest : public WindowTest {
protected:
    DialogTest()
    {
        dialog = CreateDialogWindow(Form(), 0, Procedure, this);
        ShowNative(dialog, true);
        ServeUntil([this] { return IsForeground(dialog); }, Milliseconds(1000));
        commands.clear();
    }
    ~DialogTest() override { DestroyNativeWindow(dialog); }

    static MessageParam Procedure(WindowHandle window, std::uint32_t message, MessageParam wParam, MessageParam)
    {
        auto* self = static_cast<DialogTest*>(UserWord(window));
        self->messages.push_back(message);
        if (message == kWmCommand)
            self->commands.emplace_back(LowWord(wParam), HighWord(wParam));
        return message == kWmInitDialog ? 1 : 0;
    }

    WindowHandle Item(int id) const { return DialogItem(dialog, id); }
    std::string Text(int id) const { return ItemText(dialog, id); }
    void Type(int id, std::string_view text) { TestType(Item(id), text); }

    WindowHandle dialog = 0;
    std::vector<std::uint32_t> messages;
    std::vector<std::pair<int, int>> commands;
};

using Command = std::pair<int, int>;

TEST_F(DialogTest, InitComesFirstAndFocusIsOnTheFirstControlThatTakesIt)
{
    EXPECT_EQ(messages.front(), kWmInitDialog);
    EXPECT_EQ(FocusedWindow(), Item(kName));
    EXPECT_EQ(WindowTitle(dialog), "Form");
    EXPECT_EQ(ClassNameOf(Item(kName)), "Edit");
    EXPECT_EQ(ClassNameOf(Item(kIdOk)), "Button");
    EXPECT_EQ(ClassNameOf(Item(kList)), "ListBox");
    EXPECT_EQ(ClassNameOf(Item(kCategory)), "ComboBox");
    EXPECT_EQ(ParentOf(Item(kName)), dialog);
    EXPECT_EQ(DialogItem(dialog, 4711), 0U);
    EXPECT_FALSE(IsEnabled(Item(kGrey)));
    EXPECT_TRUE(IsEnabled(Item(kIdOk)));
}

TEST_F(DialogTest, TypingNotifiesAndTheProgramsOwnTextDoesNot)
{
    SetItemTextOf(dialog, kName, "abc");
    SetItemTextOf(dialog, kNotes, "abc");
    SetItemTextOf(dialog, kCategory, "abc");
    EXPECT_TRUE(commands.empty());
    Type(kName, "x");
    Type(kNotes, "y");
    Type(kCategory, "z");
    EXPECT_THAT(commands, ElementsAre(Command{kName, kEditChanged}, Command{kNotes, kEditChanged},
                                      Command{kCategory, kComboEditChanged}));
}

TEST_F(DialogTest, UntouchedTextComesBackByteForByte)
{
    const std::string odd = "caf\xE9 \x01 lone\rreturn\nfeed\r\nend\t\xC3";
    for (const int id : {kName, kNotes, kCategory}) {
        SCOPED_TRACE(id);
        SetItemTextOf(dialog, id, odd);
        EXPECT_EQ(Text(id), odd);
    }
    Type(kNotes, "!");
    EXPECT_NE(Text(kNotes), odd);
    TestKey(Item(kNotes), kKeyBack);
    EXPECT_EQ(Text(kNotes), odd);
}

TEST_F(DialogTest, LimitCountsBytesAndNeverSplitsACharacter)
{
    for (const int id : {kName, kNotes, kCategory}) {
        SCOPED_TRACE(id);
        LimitItemText(dialog, id, 5);
        const auto type = [&](std::string_view text) { return Type(id, text), Text(id); };
        EXPECT_EQ(type("ab\xC3\xA4"), "ab\u00e4");
        EXPECT_EQ(type("\xC3\xA4"), "ab\u00e4");
        EXPECT_EQ(type("cd"), "ab\u00e4c");
        TestKey(Item(id), kKeyBack);
        EXPECT_EQ(type("e"), "ab\u00e4e");
    }
}

TEST_F(DialogTest, PasteLeavesOutWhatAFieldCannotHold)
{
    using namespace std::string_view_literals;
    struct Case {
        int id;
        int limit;
        std::optional<std::string_view> pasted;
        std::string_view held;
        int beeps = 0;
    };
    constexpr auto kLines =
        "a\0b\r\nc\xE2\x80\xA8"
        "d\xE2\x80\xA9"
        "e\rf\n"sv;
    for (const Case& c : {Case{kNotes, 0, std::nullopt, ""},
                          {kNotes, 0, "", ""},
                          {kName, 0, std::nullopt, ""},
                          {kNotes, 0, "a\0b\nc"sv, "ab\r\nc"},
                          {kName, 0, kLines, "ab c d e f "},
                          {kCategory, 0, kLines, "ab c d e f "},
                          {kName, 3, "a\r\nbc", "a b", 1},
                          {kNotes, 3, "abcd", "abc", 1},
                          {kNotes, 4, "abcd", "abcd"}}) {
        SCOPED_TRACE(c.held);
        SetItemTextOf(dialog, c.id, "");
        LimitItemText(dialog, c.id, c.limit);
        const ScopedAnswers boxes;
        TestPaste(Item(c.id), c.pasted);
        EXPECT_EQ(Text(c.id), c.held);
        EXPECT_EQ(boxes.beeps, c.beeps);
    }
}

TEST_F(DialogTest, TypedTextIsStoredAsUtf8WithCrLfWithinTheLimitAndInTheTemplatesCase)
{
    const struct {
        int id;
        int limit;  // 0: none
        std::string_view before, typed, held;
    } rows[] = {
        {kNotes, 0, "caf\xE9", "a\nb", "a\r\nbcaf\xC3\xA9"},
        {kNotes, 4, "", "a\nbc", "a\r\nb"},
        {kNotes, 4, "", "abc\n", "abc"},
        {kName, 3, "abcdef", "x", "abcdef"},
        {kMail, 0, "", "Ann@Example.ORG", "ann@example.org"},
        {kName, 0, "", "Ann", "Ann"},
    };
    for (const auto& row : rows) {
        LimitItemText(dialog, row.id, row.limit);
        SetItemTextOf(dialog, row.id, row.before);
        Type(row.id, row.typed);
        EXPECT_EQ(Text(row.id), row.held);
    }
    LimitItemText(dialog, kName, 3);
    SetItemTextOf(dialog, kName, "abcdef");
    TestKey(Item(kName), kKeyDelete);
    EXPECT_EQ(Text(kName), "bcdef") << "what is too long already may shrink";
}

TEST_F(DialogTest, ReturnPressesTheDefaultButtonAndEscapeCancels)
{
    TestKey(Item(kName), kKeyReturn);
    TestKey(Item(kName), kKeyEscape);
    TestKey(Item(kIdCancel), kKeyReturn);
    TestKey(Item(kNotes), kKeyEscape);
    SendTo(dialog, kWmClose, 0, 0);
    EXPECT_THAT(commands, ElementsAre(Command{1, 0}, Command{2, 0}, Command{2, 0}, Command{2, 0}, Command{2, 0}));
    commands.clear();
    for (const int id : {int{kNotes}, int{kIdCancel}})
        TestKey(Item(id), kKeyReturn, {.control = true});
    EXPECT_THAT(commands, ElementsAre(Command{1, 0}, Command{1, 0}));
    commands.clear();
    EnableItem(dialog, kIdOk, false);
    TestKey(Item(kName), kKeyReturn);
    TestKey(Item(kNotes), kKeyReturn, {.control = true});
    TestPushItem(dialog, kIdOk);
    ShowItem(dialog, kIdCancel, false);
    TestPushItem(dialog, kIdCancel);
    EXPECT_TRUE(commands.empty());
    EXPECT_FALSE(IsEnabled(Item(kIdOk)));
    EXPECT_FALSE(IsVisible(Item(kIdCancel)));
}

TEST_F(DialogTest, RadioButtonsExcludeEachOtherWithinTheirGroupAlone)
{
    CheckItem(dialog, kFirst, true);
    CheckItem(dialog, kThird, true);
    TestPushItem(dialog, kSecond);
    EXPECT_FALSE(IsItemChecked(dialog, kFirst));
    EXPECT_TRUE(IsItemChecked(dialog, kSecond));
    EXPECT_TRUE(IsItemChecked(dialog, kThird));
    EXPECT_THAT(commands, ElementsAre(Command{kSecond, kButtonClicked}));
    CheckItem(dialog, kFirst, true);
    EXPECT_FALSE(IsItemChecked(dialog, kSecond));
    CheckItem(dialog, kFirst, false);
    EXPECT_FALSE(IsItemChecked(dialog, kFirst));
    TestPushItem(dialog, kMark);
    EXPECT_TRUE(IsItemChecked(dialog, kMark));
}

TEST_F(DialogTest, SortedBoxPlacesRowsWithoutRegardToCase)
{
    EXPECT_EQ(AddRow(dialog, kList, "pear", 1), 0);
    EXPECT_EQ(AddRow(dialog, kList, "Apple", 2), 0);
    EXPECT_EQ(AddRow(dialog, kList, "banana", 3), 1);
    EXPECT_EQ(RowCount(dialog, kList), 3);
    EXPECT_EQ(RowText(dialog, kList, 0) + RowText(dialog, kList, 1), "Applebanana");
    EXPECT_EQ(RowData(dialog, kList, 2), 1);
    EXPECT_EQ(SelectedRow(dialog, kList), -1);
    EXPECT_EQ(SelectRowByPrefix(dialog, kList, "PE"), 2);
    EXPECT_EQ(SelectedRow(dialog, kList), 2);
    EXPECT_EQ(SelectRowByPrefix(dialog, kList, "x"), -1);
    EXPECT_TRUE(commands.empty());
    TestPickRow(dialog, kList, 0);
    EXPECT_THAT(commands, ElementsAre(Command{kList, kListSelectionChanged}));
    RemoveRow(dialog, kList, 0);
    EXPECT_EQ(SelectedRow(dialog, kList), -1);
    ClearRows(dialog, kList);
    EXPECT_EQ(RowCount(dialog, kList), 0);
    EXPECT_EQ(commands.size(), 1U);
}

TEST_F(DialogTest, NothingIsChosenInAComboBeforeSomebodyChooses)
{
    for (const int id : {kCategory, kColour}) {
        SCOPED_TRACE(id);
        AddRow(dialog, id, "Calls");
        AddRow(dialog, id, "ideas \xE9");
        EXPECT_EQ(SelectedRow(dialog, id), -1);
        EXPECT_EQ(Text(id), "");
        EXPECT_EQ(SelectRowByPrefix(dialog, id, ""), -1);
        EXPECT_EQ(SelectRowByPrefix(dialog, id, "IDE"), 1);
        EXPECT_EQ(Text(id), "ideas \xE9");
        TestPickRow(dialog, id, 0);
        EXPECT_EQ(Text(id), "Calls");
    }
    EXPECT_THAT(commands,
                ElementsAre(Command{kCategory, kComboSelectionChanged}, Command{kColour, kComboSelectionChanged}));
    Type(kCategory, "!");
    EXPECT_EQ(Text(kCategory), "Calls!");
}

TEST_F(DialogTest, ControlsOfADeadDialogAnswerNothing)
{
    const WindowHandle edit = Item(kName);
    DestroyNativeWindow(dialog);
    ServeEvents();
    EXPECT_FALSE(IsWindow(edit));
    EXPECT_EQ(ItemText(dialog, kName), "");
    EXPECT_EQ(AddRow(dialog, kList, "a"), -1);
    SetItemTextOf(dialog, kName, "x");
    TestPushItem(dialog, kIdOk);
}

TEST_F(DialogTest, TabStopsAtAToolkitChildThatAsksForIt)
{
    RegisterWindowClass({.procedure = DefaultProcedure, .name = "DialogTestChild"});
    const WindowHandle plain =
        CreateNativeWindow("DialogTestChild", "", kStyleDefault, Rect::At(0, 200, 10, 10), dialog);
    const WindowHandle stop =
        CreateNativeWindow("DialogTestChild", "", kStyleDefault | kStyleTabStop, Rect::At(20, 200, 10, 10), dialog);
    FocusItem(dialog, kIdCancel);
    TestKey(Item(kIdCancel), kKeyTab);
    EXPECT_EQ(FocusedWindow(), stop);
    TestKey(stop, kKeyTab);
    EXPECT_EQ(FocusedWindow(), Item(kName));
    TestKey(Item(kName), kKeyTab, {.shift = true});
    EXPECT_EQ(FocusedWindow(), stop);
    FocusItem(dialog, kNotes);
    TestKey(Item(kNotes), kKeyTab);
    EXPECT_EQ(FocusedWindow(), Item(kMark)) << "a tab is no text of a note";
    // Return and Escape are the dialog's, wherever the focus is.
    commands.clear();
    TestKey(stop, kKeyReturn);
    TestKey(plain, kKeyEscape);
    EXPECT_THAT(commands, ElementsAre(Command{1, 0}, Command{2, 0}));
}

struct OwnerDrawn {
    std::vector<DrawItemInfo> drawn;
    int measured = 0;
};

TEST_F(DialogTest, OwnerDrawnRowsAreMeasuredAndDrawnByTheDialog)
{
    DialogTemplate form{.id = 10, .width = 120, .height = 100};
    form.controls = {
        {.kind = Kind::ListBox, .id = 1, .x = 3, .y = 3, .width = 80, .height = 50, .style = kControlOwnerDrawn},
        {.kind = Kind::DropList, .id = 2, .x = 3, .y = 60, .width = 60, .height = 60, .style = kControlOwnerDrawn}};
    OwnerDrawn log;
    const WindowHandle drawing = CreateDialogWindow(
        form, 0,
        [](WindowHandle window, std::uint32_t message, MessageParam, MessageParam lParam) -> MessageParam {
            auto& owner = *static_cast<OwnerDrawn*>(UserWord(window));
            if (message == kWmMeasureItem) {
                reinterpret_cast<MeasureItemInfo*>(lParam)->height = 13;
                ++owner.measured;
            }
            if (message == kWmDrawItem) {
                const auto& info = *reinterpret_cast<const DrawItemInfo*>(lParam);
                info.dc->FillRect(info.area, static_cast<Colour>(info.data));
                owner.drawn.push_back(info);
            }
            return message == kWmInitDialog ? 1 : 0;
        },
        &log);
    AddRow(drawing, 1, "a\nb\n5", 0x112233);
    AddRow(drawing, 1, "c", 0x445566);
    AddRow(drawing, 2, "", 0x65E7FF);
    SelectRow(drawing, 2, 0);
    ShowNative(drawing, true);
    ServeUntil([&] { return log.drawn.size() >= 3; }, Milliseconds(2000));
    ASSERT_GE(log.drawn.size(), 3U);
    EXPECT_GE(log.measured, 1);
    bool row = false;
    bool field = false;
    for (const DrawItemInfo& info : log.drawn) {
        row = row || (info.controlId == 1 && info.index == 0 && info.text == "a\nb\n5" && info.data == 0x112233 &&
                      info.area.Height() == 13);
        field = field || (info.controlId == 2 && info.index == 0 && info.data == 0x65E7FF);
    }
    EXPECT_TRUE(row);
    EXPECT_TRUE(field);
    DestroyNativeWindow(drawing);
}

}  // namespace
}  // namespace jotlet
