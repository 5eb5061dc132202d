#include "notes/notes_pane.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "notes/bin_slot.h"
#include "notes/model/note_record.h"
#include "notes/tell_outcome.h"
#include "notes/title_jump.h"
#include "platform/base/silent_drive.h"
#include "platform/base/text.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/menu.h"
#include "resources/command_ids.h"
#include "resources/string_ids.h"
#include "resources/string_table.h"
#include "skin/fonts.h"
#include "store/refresh_switch.h"
#include "toolkit/drag_commands.h"
#include "toolkit/main_window.h"

namespace jotlet {
namespace {

constexpr Colour kBoardColour = 0xC0FFFF;
constexpr Colour kScrollColour = 0xC3C3C3;
constexpr int kCellHeight = 80;
constexpr int kCellsPerRow = 3;
constexpr int kNoticeHeight = 14;
constexpr Colour kNoticeColour = 0x0000D4;

constexpr Colour kWhite = 0xFFFFFF;
constexpr Colour kStripColour = 0xC3C3C3;
constexpr Colour kDaySelected = 0xB2E2E1;
constexpr Colour kDayToday = 0x0000FF;
constexpr Colour kCalendarMenu = 0x0000D4;
constexpr Colour kTitleTabColour = 212;
constexpr Colour kDateTabColour = 45040;
constexpr Colour kBinFrame = 0x0372A5;
constexpr Colour kBinMark = 0x00AFF0;
constexpr int kTabWidth = 50;

// What the board, its tabs and categories, and the look for due alarms ask of all notes.
constexpr FieldRange kListedFields[] = {{kCategoryOffset, kCategorySize},
                                        {kDateOffset, kDateSize},
                                        {kAlarmStateOffset, 1},
                                        {kAlarmDateOffset, sizeof(DateValue)},
                                        {kTitleOffset, kTitleSize}};

constexpr int kCategoryString = 30;
constexpr Milliseconds kDayPeriod{10'000};

// Where the children stand in a client area of this size.
struct Layout {
    Rect list, categories, letters, calendar, tabs, bin;
};

Layout LayOut(Size client, int noticeHeight)
{
    const int w = client.width;
    const int h = client.height;
    return {Rect::At(5, 35 + noticeHeight, w - 114, h - 60 - noticeHeight),
            Rect::At(0, 0, w, 26),
            Rect::At(w - 103, 35, 103, 185),
            Rect::At(w - 108, 35, 106, 130),
            Rect::At(10, h - 20, w - 10, 20),
            Rect::At(w - 103, h - 92, 100, 72)};
}

void Place(MarlinWnd& child, const Rect& r)
{
    child.Move(r.left, r.top, std::max(r.Width(), 0), std::max(r.Height(), 0), 1);
}

std::string Text(int id)
{
    return std::string(LoadStringResource(id));
}

}  // namespace

NotesPane::NotesPane(const PaneColours& paneColours, std::string paneName)
    : MarlinPane(paneColours, std::move(paneName)),
      list(std::make_unique<NotesList>(kListId, kCellHeight, kCellsPerRow, kBoardColour, kBoardColour, kScrollBarLeft,
                                       kScrollColour, kScrollColour)),
      categoryMenu(std::make_unique<CategoryMenu>(kFirstCategoryId, kStripColour, kWhite, kWhite)),
      letterBar(std::make_unique<MarlinClassToDoPriority>(kLetterBarId, 'a', 'z', kBoardColour)),
      tabs(std::make_unique<TTabsWnd>(kTabsId, kBoardColour, kTabWidth)),
      bin(std::make_unique<MarlinClassWndBin>(kBinId, kBoardColour, kBinFrame, kBinMark))
{
    Today(today);
    paneDate = today;
    calendar = std::make_unique<MarliMiniCalendar>(kCalendarId, paneDate.day, paneDate.month, paneDate.year,
                                                   kBoardColour, kDaySelected, kDayToday, kCalendarMenu, kWhite);
    tabs->AddTab(kTitleTab, "Title", kTitleTabColour, kWhite);
    tabs->AddTab(kDateTab, "Date", kDateTabColour, kWhite);
    list->SetScrollColours(0xF3B993, 0xFFFFFF, 0x4454CE, 0xA1EFEE, 0xF3B993, 0xFFFFFF, 0x4454CE);
    list->EnableDrag();
}

NotesPane::~NotesPane() = default;

MessageParam NotesPane::OnCreate(WndMessage& record)
{
    list->Create(this);
    categoryMenu->Create(this);
    letterBar->Create(this);
    calendar->Create(this, kStyleChild);
    tabs->Create(this);
    bin->Create(this);
    StartTimer(window, kDayTimer, kDayPeriod);
    return MarlinPane::OnCreate(record);
}

MessageParam NotesPane::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    const Layout layout = LayOut({client.Width(), client.Height()}, noticeShown ? kNoticeHeight : 0);
    Place(*list, layout.list);
    Place(*categoryMenu, layout.categories);
    Place(*letterBar, layout.letters);
    Place(*calendar, layout.calendar);
    Place(*tabs, layout.tabs);
    Place(*bin, layout.bin);
    return 0;
}

void NotesPane::OnPaint(DeviceContext& dc, const PaintInfo& paint)
{
    MarlinPane::OnPaint(dc, paint);
    if (noticeShown)
        dc.DrawText(Rect::At(5, 32, GetClientArea().Width() - 114, kNoticeHeight),
                    "There are more notes than the " + std::to_string(kMaxResults) + " shown here.", SmallFont(400),
                    kNoticeColour, kTextSingleLine | kTextNoPrefix | kTextEndEllipsis);
}

// The list makes room for a line that says that the query was cut, while it is.
void NotesPane::FollowLimit()
{
    const bool cut = file && query && query->limitReached;
    if (std::exchange(noticeShown, cut) == cut)
        return;
    const Rect client = GetClientArea();
    Place(*list, LayOut({client.Width(), client.Height()}, cut ? kNoticeHeight : 0).list);
    Invalidate(nullptr, 1);
}

int NotesPane::OnEntered()
{
    FocusList();
    return 1;
}

int NotesPane::OnFileOpened(TableFile* newFile)
{
    Refresh(newFile);
    list->SetTopRow(0);
    return 1;
}

void NotesPane::CollectTabStops(TabStops& stops)
{
    list->CollectTabStops(stops);
    letterBar->CollectTabStops(stops);
    calendar->CollectTabStops(stops);
    bin->CollectTabStops(stops);
    tabs->CollectTabStops(stops);
    categoryMenu->CollectTabStops(stops);
}

bool NotesPane::OnDateTab() const
{
    return tabs->GetTabValue(tabs->GetSelected()) == kDateTab;
}

void NotesPane::FocusList()
{
    FocusWindow(list->Grid().window);
}

void NotesPane::Refresh(TableFile* newFile)
{
    isBehind = newFile == file && RefuseSilentDrive(MainWindow(), file);
    if (isBehind)
        return;
    file = newFile;
    if (!query) {
        Today(today);
        paneDate = today;
        query = std::make_unique<RecordQuery>();
        categoryMenu->LoadCategories(file);
        categoryMenu->Invalidate(nullptr, 0);
    } else {
        categoryMenu->ReloadCategories(file);
    }
    if (!file) {
        list->SetSource(nullptr, nullptr);
        list->SetCount(0);
        FollowLimit();
        return;
    }
    ShowWaitCursor();
    file->ExpectQueriesFor(kListedFields);
    query->Reset();
    query->PrepareResults();
    if (OnDateTab())
        query->AddDateTerm(kDateOffset, TermKind::Equal, paneDate.day, paneDate.month, paneDate.year, Connective::And);
    if (!categoryFilter.empty())
        query->AddTextTerm(kCategoryOffset, kCategorySize, TermKind::Equal, categoryFilter, Connective::And);
    if (query->termCount == 0)
        query->AddAllTerm();
    file->RunQuery(*query);
    if (OnDateTab())
        query->Sort(*file, kDateOffset, kDateSize, CompareDates);
    else
        query->Sort(*file, kTitleOffset, kTitleSize, CompareTitles);
    file->LetGoOfPages();
    list->SetSource(file, query.get());
    list->SetCount(query->resultCount);
    RestoreCursor();
    FollowLimit();
}

MessageParam NotesPane::OnCommand(WndMessage& record)
{
    const int id = LowWord(record.wParam);
    const int code = HighWord(record.wParam);
    if (id >= kFirstCategoryId && id <= kLastCategoryId) {
        OnCategory(reinterpret_cast<const char*>(record.lParam));
        return 0;
    }
    if (NeedsFile(id, code) && RefuseSilentDrive(MainWindow(), file))
        return 0;
    switch (id) {
        case kListId:
            return OnListNotification(code, static_cast<int>(record.lParam));
        case kCalendarId: {
            const DateValue picked = *reinterpret_cast<const DateValue*>(record.lParam);
            return OnCalendarNotification(code, picked);
        }
        case kTabsId:
            OnTabChanged(static_cast<int>(record.lParam));
            return 0;
        case kBinId:
            return OnBinCommand(record.lParam);
        case kLetterBarId:
            OnLetter(static_cast<int>(record.lParam & 0xFF));
            return 0;
        case kCommandNewNote:
            NewNote();
            return 0;
        case kCommandEditNote:
            EditNote();
            return 0;
        case kCommandDeleteNote:
            DeleteNote();
            return 0;
        case kCommandFind:
            FindNotes();
            return 0;
        case kCommandUndoDelete:
            PostRequest(window, kWmCommand, kBinId, kBinUndo);
            return 0;
        case kCommandCut:
            CutNote();
            return 0;
        case kCommandCopy:
            CopyNote();
            return 0;
        case kCommandPaste:
            PasteNote();
            return 0;
        case kCommandInternetEvents:
            InternetEvents();
            return 0;
        case kCommandOpenAttachment:
            OpenAttachment();
            return 0;
        case kCommandTyped:
            OnTyped(static_cast<char32_t>(record.lParam));
            return 0;
        case kCommandMoveToDay:
        case kCommandCopyToDay:
            OnMoveToDay(id == kCommandCopyToDay);
            return 0;
        default:
            return MarlinPane::OnCommand(record);
    }
}

// What can't be begun while the drive of the file doesn't answer.
bool NotesPane::NeedsFile(int id, int code)
{
    constexpr std::array kNeedIt = {kBinId,        kLetterBarId,       kCommandNewNote,        kCommandEditNote,
                                    kCommandCut,   kCommandDeleteNote, kCommandFind,           kCommandUndoDelete,
                                    kCommandCopy,  kCommandPaste,      kCommandInternetEvents, kCommandOpenAttachment,
                                    kCommandTyped, kCommandMoveToDay,  kCommandCopyToDay};
    return std::ranges::find(kNeedIt, id) != kNeedIt.end() ||
           (id == kCalendarId && (code == kDragMoveDrop || code == kDragCopyDrop));
}

MessageParam NotesPane::OnListNotification(int code, int item)
{
    if (code == kListItemDoubleClicked)
        PostRequest(window, kWmCommand, item >= 0 ? kCommandEditNote : kCommandNewNote, 0);
    else if (code == kListItemRightClicked)
        OpenPopup(item);
    else if (code == kListReloaded)
        FollowLimit();
    else if (code == kListFileLost && fileLost)
        fileLost();
    else if (code == kListDriveAnswers)
        OnDriveAnswers(item != 0);
    return 0;
}

void NotesPane::OnDriveAnswers(bool answers)
{
    if (driveAnswers)
        driveAnswers(answers);
    if (answers && isBehind)
        Refresh(file);
}

MessageParam NotesPane::OnCalendarNotification(int code, const DateValue& date)
{
    if (code == kDragMoveDrop)
        DropOnDay(date);
    else if (code == kDragCopyDrop)
        DropCopyOnDay(date);
    else
        ChooseDay(date);
    return 0;
}

MessageParam NotesPane::OnBinCommand(MessageParam what)
{
    if (what == kBinDropped)
        return DropOnBin();
    if (what == kBinUndo)
        UndoDelete();
    return 0;
}

void NotesPane::ChooseDay(const DateValue& day)
{
    paneDate = day;
    calendar->SetDate(day.year, day.month, day.day);
    Refresh(file);
    list->SetTopRow(0);
}

MessageParam NotesPane::OnTimer(WndMessage& record)
{
    if (record.wParam == kDayTimer)
        FollowToday();
    return 0;
}

// At midnight the day that was today until now gives way to the new one. Not under a note that is held or dragged: the
// next tick comes.
void NotesPane::FollowToday()
{
    DateValue now;
    Today(now);
    if (now == today || !IsRefreshEnabled() || list->Grid().dragging || (file && IsOnSilentDrive(file->Path())))
        return;
    const bool shown = paneDate == today;
    today = now;
    if (!shown)
        return;
    paneDate = now;
    calendar->SetDate(now.year, now.month, now.day);
    if (OnDateTab())
        ChooseDay(now);
}

void NotesPane::OnTabChanged(int value)
{
    if (value == kDateTab) {
        calendar->Show();
        letterBar->Hide();
    } else {
        letterBar->Show();
        calendar->Hide();
    }
    Refresh(file);
    list->SetTopRow(0);
}

void NotesPane::OnCategory(const char* text)
{
    if (categoryFilter == text)
        return;
    categoryFilter = CutText(text, kCategoryString - 1);
    if (categoryFilter == kAllCategories)
        categoryFilter.clear();
    Refresh(file);
    list->SetTopRow(0);
}

void NotesPane::OnLetter(int letter)
{
    if (file && query)
        list->SelectItem(FindTitleFrom(*file, *query, static_cast<char>(letter)));
}

void NotesPane::OnTyped(char32_t character)
{
    if (file && query)
        list->SelectItem(FindTitleWith(*file, *query, character));
}

std::uint64_t NotesPane::SelectedId() const
{
    NoteRecord note;
    return ReadChosen(note) ? note.uniqueId.Get() : 0;
}

bool NotesPane::SelectedHasAttachment() const
{
    NoteRecord note;
    return ReadChosen(note) && HasAttachment(note);
}

void NotesPane::OpenPopup(int item)
{
    const bool off = item < 0;
    const std::vector<MenuEntry> entries = {
        {Text(kStringNewNote), kCommandNewNote},
        {Text(kStringEditNote), kCommandEditNote, off},
        {Text(kStringDeleteNote), kCommandDeleteNote, off},
        {},
        {Text(kStringUndoDelete), kCommandUndoDelete, BinSlot().IsEmpty()},
        {},
        {Text(kStringCut), kCommandCut, off},
        {Text(kStringCopy), kCommandCopy, off},
        {Text(kStringPaste), kCommandPaste, NoteClipboard().IsEmpty()},
        {},
        {Text(kStringOpenAttachment), kCommandOpenAttachment, off || !SelectedHasAttachment()},
        {},
        {Text(kStringInternetEvents), kCommandInternetEvents, off || !editGroupEvent},
    };
    TrackPopupMenu(window, entries, list->PopupPoint(item));
}

}  // namespace jotlet
