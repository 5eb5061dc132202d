#include "notes/note_editor_dialog.h"

#include <utility>

#include "notes/alarm_dialog.h"
#include "notes/attachment_dialog.h"
#include "notes/model/palette.h"
#include "platform/base/text.h"
#include "resources/dialog_ids.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

using namespace note_editor_ids;

constexpr int kColourRowHeight = 13;
constexpr Colour kCurrentFrame = 0x000000;
constexpr Colour kSelectedFrame = 0x808080;

Colour RowColour(const DrawItemInfo& item)
{
    return static_cast<Colour>(item.data);
}

// Of the process: alarms wait while any editor is open, the board's or Find's.
int openEditors = 0;

}  // namespace

NoteEditorDialog::NoteEditorDialog(TableFile* file, NoteRecord& record, const DateValue& date, int mode)
    : record(record), mode(mode), role(file->GetRole()), file(file), date(date)
{
    ++openEditors;
    if (mode == kEditNew)
        InitNoteRecord(*file, record);
}

NoteEditorDialog::~NoteEditorDialog()
{
    --openEditors;
}

bool NoteEditorDialog::AnyOpen()
{
    return openEditors > 0;
}

void NoteEditorDialog::SetSave(Save newSave)
{
    save = std::move(newSave);
}

MessageParam NoteEditorDialog::OnInitDialog(WndMessage&)
{
    if (mode == kEditNew)
        FillNewRecord();
    LimitItemText(window, kTextEdit, static_cast<int>(sizeof record.text));
    LimitItemText(window, kTitleEdit, static_cast<int>(sizeof record.title));
    LimitItemText(window, kCategoryCombo, static_cast<int>(sizeof record.category) - 1);
    record.date = date;
    std::string shown;
    FormatDateValue(shown, date);
    SetItemText(kDateText, shown);
    SetItemText(kTextEdit, FieldText(record.text));
    SetItemText(kTitleEdit, FieldText(record.title));
    FillCategories();
    if (role == Role::Owner)
        CheckItem(window, kConfidentialBox, record.confidential != 0);
    else
        Enable(kConfidentialBox, false);
    FillColours();
    UpdateOkButton();
    CentreOverParent();
    FocusItem(window, kTextEdit);
    return 0;
}

void NoteEditorDialog::FillNewRecord()
{
    record.colour = kYellow;
    StoreText(record.title, "Untitled");
    StoreText(record.text, "");
    StoreText(record.toneFile, "");
    StoreText(record.startTarget, "");
    record.alarmState = kAlarmNone;
    record.startKind = kStartDocument;
    record.alarmDate = date;
    record.alarmTime = record.time;
}

void NoteEditorDialog::FillCategories()
{
    CategoryBlock block{};
    if (file->ReadCategories(block) == 1) {
        for (int i = 0; i < block.Count(); ++i)
            AddRow(window, kCategoryCombo, FieldText(block.entries[i].name));
    }
    if (const std::string_view category = FieldText(record.category); !category.empty())
        SelectRowByPrefix(window, kCategoryCombo, category);
}

void NoteEditorDialog::FillColours()
{
    for (const auto& [colour, index, name] : kPalette) {
        const int row = AddRow(window, kColourBox, "", static_cast<std::intptr_t>(colour));
        NameRow(window, kColourBox, row, name);
        if (colour == record.colour)
            SelectRow(window, kColourBox, row);
    }
}

// A note needs a title and a text; until both are there the dialog can only be cancelled.
void NoteEditorDialog::UpdateOkButton()
{
    Enable(kIdOk, !GetItemText(kTextEdit).empty() && !GetItemText(kTitleEdit).empty());
}

MessageParam NoteEditorDialog::OnCommand(WndMessage& message)
{
    switch (LowWord(message.wParam)) {
        case kTextEdit:
        case kTitleEdit:
            UpdateOkButton();
            return 1;
        case kAlarmButton: {
            AlarmDialog dialog(record, mode);
            dialog.DoModal(this, alarm_dialog_ids::kDialog);
            return 1;
        }
        case kAttachButton:
            return OnAttach();
        case kIdOk:
            return OnOk();
        default:
            return MarlinDialog::OnCommand(message);
    }
}

MessageParam NoteEditorDialog::OnAttach()
{
    AttachmentDialog dialog({record.attachmentKind, std::string(FieldText(record.attachmentPath))});
    if (dialog.DoModal(this, attachment_dialog_ids::kDialog) == 1) {
        record.attachmentKind = static_cast<std::uint8_t>(dialog.attachment.kind);
        StoreText(record.attachmentPath, dialog.attachment.path);
    }
    return 1;
}

// Typing stops at the limit. Only old text outgrows its field: an edit makes two or three bytes of each accent. Nothing
// of it is cut unasked.
bool NoteEditorDialog::FitsOrTell(int id, std::size_t fieldSize, const char* name)
{
    const std::size_t size = GetItemText(id).size();
    if (size <= fieldSize)
        return true;
    ShowTextMessage(window, std::string("The ") + name + " is " + std::to_string(size - (fieldSize - 1)) +
                                " bytes too long now. Shorten it, then try again. Nothing that you typed is lost.");
    FocusItem(window, id);
    return false;
}

MessageParam NoteEditorDialog::OnOk()
{
    if (!FitsOrTell(kTextEdit, sizeof record.text, "text") || !FitsOrTell(kTitleEdit, sizeof record.title, "title"))
        return 1;
    ReadControls();
    if (save) {
        if (const std::string problem = save(); !problem.empty()) {
            ShowTextMessage(window, problem);
            return 1;
        }
    }
    EndDialog(1);
    return 1;
}

void NoteEditorDialog::ReadControls()
{
    StoreText(record.text, GetItemText(kTextEdit));
    StoreText(record.title, GetItemText(kTitleEdit));
    record.confidential = Checked(kConfidentialBox) ? 1 : 0;
    StoreText(record.category, GetItemText(kCategoryCombo));
    if (const int row = SelectedRow(window, kColourBox); row >= 0)
        record.colour = static_cast<Colour>(RowData(window, kColourBox, row));
}

MessageParam NoteEditorDialog::OnMeasureItem(WndMessage& message)
{
    reinterpret_cast<MeasureItemInfo*>(message.lParam)->height = kColourRowHeight;
    return 1;
}

MessageParam NoteEditorDialog::OnDrawItem(WndMessage& message)
{
    const auto& item = *reinterpret_cast<const DrawItemInfo*>(message.lParam);
    if (!item.dc)
        return 1;
    if (item.action == kDrawEntire) {
        item.dc->FillRect(item.area, RowColour(item));
        const int current = SelectedRow(window, kColourBox);
        if (current >= 0 && RowData(window, kColourBox, current) == item.data)
            item.dc->FrameRect(item.area, kCurrentFrame);
    }
    if (item.selected && (item.action == kDrawEntire || item.action == kDrawSelect))
        item.dc->FrameRect(item.area, kSelectedFrame);
    else if (!item.selected && item.action == kDrawSelect)
        item.dc->FrameRect(item.area, RowColour(item));
    return 1;
}

}  // namespace jotlet
