#include "notes/find_dialog.h"

#include <algorithm>
#include <cstdio>
#include <optional>

#include "notes/edit_note.h"
#include "notes/note_cell.h"
#include "notes/tell_outcome.h"
#include "platform/base/text.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/system_metrics.h"
#include "resources/dialog_ids.h"
#include "skin/drawing.h"
#include "skin/fonts.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

using namespace find_dialog_ids;

constexpr int kTermLimit = 500;

constexpr int kHitHeight = 72;
constexpr int kHitsPerRow = 3;
constexpr Colour kWhite = 0xFFFFFF;
constexpr Colour kBlack = 0x000000;
constexpr Colour kCategoryColour = 0x0000FF;

Colour ScrollColour()
{
    return Darken(SystemColour(kSysColourButtonFace), 25);
}

constexpr std::string_view kGone = "Record is deleted by other user.";

}  // namespace

OccurrencesList::OccurrencesList()
    : RecordListView(kHitList, kHitHeight, kHitsPerRow, kWhite, kWhite, kScrollBarLeft, ScrollColour(), ScrollColour())
{
}

void OccurrencesList::DrawRecordItem(DeviceContext& dc, Colour background, int index, int state, const Rect& cell)
{
    if (state == kListEmpty) {
        dc.DrawText(cell, "No matching date has been found!", SmallFont(400), kBlack, kTextSingleLine | kTextNoPrefix);
        return;
    }
    if (state == kItemSelected)
        DrawSelectionFrame(dc, cell, background);
    NoteRecord note;
    const bool isThere = ReadItem(index, BytesOf(note));
    const std::string gone = GoneText(kGone);
    const NoteCellLook look{.font = &SmallFont(400),
                            .titleEllipsis = false,
                            .titleHeight = 12,
                            .attachmentIcon = false,
                            .categoryColour = kCategoryColour,
                            .goneText = gone,
                            .found = term};
    if (isThere)
        DrawNoteCell(dc, note, background, cell, look);
    else
        DrawGoneCell(dc, cell, look);
}

std::string OccurrencesList::ItemName(int index)
{
    NoteRecord note;
    if (!ReadItem(index, BytesOf(note)))
        return GoneText(kGone);
    return DecodeForDisplay(FieldText(note.title));
}

std::string OccurrencesList::ItemDetail(int index)
{
    NoteRecord note;
    if (!ReadItem(index, BytesOf(note)))
        return {};
    return DescribeNote(note);
}

// A hit chosen by a key counts as one that was pressed.
void OccurrencesList::OnKeySelected(int index)
{
    PostCommand(id, index, kListItemPressed);
}

void OccurrencesList::OnReturnKey(int selected)
{
    if (selected >= 0)
        PostCommand(id, selected, kListItemDoubleClicked);
    else
        PostCommand(kIdOk, 0);
}

FindDialog::FindDialog(TableFile* file, std::string_view categoryFilter)
    : list(std::make_unique<OccurrencesList>()), file(file), categoryFilter(categoryFilter)
{
}

FindDialog::~FindDialog() = default;

MessageParam FindDialog::OnInitDialog(WndMessage&)
{
    list->Create(this, kStyleDefault | kStyleTabStop);
    TakeReturnKey(list->Grid().window);
    PlaceList();
    Enable(kIdOk, false);
    Enable(kGoToButton, false);
    LimitItemText(window, kTermEdit, kTermLimit);
    if (!categoryFilter.empty())
        SetItemText(kCategoryText, categoryFilter);
    CentreOverParent();
    FocusItem(window, kTermEdit);
    return 0;
}

void FindDialog::PlaceList()
{
    const Rect client = GetClientArea();
    const int top = ItemRect(window, kTermEdit).bottom + 20;
    list->Move(4, top, client.Width() - 10, client.bottom - 5 - top, 1);
}

MessageParam FindDialog::OnCommand(WndMessage& record)
{
    switch (LowWord(record.wParam)) {
        case kTermEdit:
            Enable(kIdOk, !GetItemText(kTermEdit).empty());
            return 1;
        case kIdOk:
            Search();
            return 1;
        case kGoToButton:
            GoTo();
            return 1;
        case kIdCancel:
            EndDialog(0);
            return 1;
        case kHitList:
            return OnListNotification(HighWord(record.wParam), static_cast<int>(record.lParam), record.lParam);
        default:
            return MarlinDialog::OnCommand(record);
    }
}

void FindDialog::Search()
{
    if (RefuseSilentDrive(window, file))
        return;
    const std::string term(CutText(GetItemText(kTermEdit), kTermLimit - 1));
    if (!query)
        query = std::make_unique<RecordQuery>();
    ShowWaitCursor();
    list->SetSource(nullptr, nullptr);
    query->Reset();
    query->PrepareResults();
    query->AddTextTerm(kTitleOffset, kTitleSize, TermKind::Contains, term, Connective::Or);
    query->AddTextTerm(kTextOffset, kTextSize, TermKind::Contains, term, Connective::Or);
    if (!categoryFilter.empty()) {
        // Twice: neighbours are tied in pairs, and only a pair of And terms makes the category a condition of its own.
        for (int i = 0; i < 2; ++i)
            query->AddTextTerm(kCategoryOffset, kCategorySize, TermKind::Equal, categoryFilter, Connective::And);
    }
    file->RunQuery(*query);
    query->Sort(*file, kDateOffset, kDateSize, CompareDates);
    list->term = term;
    list->SetSource(file, query.get());
    list->SetCount(query->resultCount);
    RestoreCursor();

    selected = -1;
    SetWindowTitle(window,
                   "Occurrences " + std::to_string(query->resultCount) + (query->limitReached ? " of more" : ""));
    Enable(kGoToButton, false);
    FocusList();
}

MessageParam FindDialog::OnListNotification(int code, int index, MessageParam lParam)
{
    switch (code) {
        case kListItemPressed:
            if (index >= 0) {
                selected = index;
                Enable(kGoToButton, true);
            }
            return 1;
        case kListItemDoubleClicked:
            OpenHit();
            return 1;
        case kListReloaded:
            // The stored index may mean another note now.
            if (lParam == kReloaded || lParam == kReloadedAsked) {
                selected = list->GetSelected();
                Enable(kGoToButton, selected >= 0);
            }
            return 1;
        default:
            return 0;
    }
}

void FindDialog::OpenHit()
{
    if (RefuseSilentDrive(window, file))
        return;
    HeldNote held;
    const NoteResult taken = TakeForEdit(held, file, list->GetChosen());
    if (TellOutcome(window, file, taken)) {
        EditHeldNote(*this, held, held.note.date);
        list->RefreshAndSelect(BytesOf(held.note));
    } else if (taken.outcome == Outcome::Withdrawn) {
        Beep();
    } else if (taken.outcome == Outcome::Hidden) {
        list->RefreshNow();
    }
    FocusList();
}

void FindDialog::GoTo()
{
    if (RefuseSilentDrive(window, file) || !query || selected < 0 || selected >= query->resultCount)
        return;
    // A note deleted meanwhile is delivered all the same; the board then has nothing to select.
    file->ReadRecord(BytesOf(found), query->Results()[static_cast<std::size_t>(selected)]);
    list->SetSource(nullptr, nullptr);
    query.reset();
    EndDialog(1);
}

void FindDialog::FocusList()
{
    FocusWindow(list->Grid().window);
}

}  // namespace jotlet
