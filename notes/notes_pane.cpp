#include "notes/notes_pane.h"

#include <algorithm>
#include <vector>

#include "notes/bin_slot.h"
#include "notes/model/note_record.h"
#include "notes/note_command_ids.h"
#include "platform/base/text.h"
#include "platform/desktop/cursor.h"
#include "platform/desktop/menu.h"
#include "resources/string_table.h"
#include "toolkit/drag_commands.h"

namespace jotlet {
namespace {

constexpr Colour kBoardColour = 0xC0FFFF;
constexpr Colour kScrollColour = 0xC3C3C3;
constexpr int kCellHeight = 80;
constexpr int kCellsPerRow = 3;

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

constexpr int kCategoryString = 30;

// Where the children stand in a client area of this size.
struct Layout {
    Rect list, categories, letters, calendar, tabs, bin;
};

Layout LayOut(Size client)
{
    const int w = client.width;
    const int h = client.height;
    return {Rect::At(5, 35, w - 114, h - 60), Rect::At(0, 0, w, 26),
            Rect::At(w - 103, 35, 103, 185),  Rect::At(w - 108, 35, 106, 130),
            Rect::At(10, h - 20, w - 10, 20), Rect::At(w - 103, h - 92, 100, 72)};
}

void Place(MarlinWnd& child, const Rect& r)
{
    child.Move(r.left, r.top, std::max(r.Width(), 0), std::max(r.Height(), 0), 1);
}

// The first characters of titles, as they are in the file now. Read note by note at first; a walk that goes on takes
// those of all notes in one pass over the file, which is many times faster than as many single reads.
class TitleStarts {
public:
    explicit TitleStarts(const TableFile& file) : file(file) {}

    char At(RecordAddress address)
    {
        if (++asked == kSingleReads)
            ReadAll();
        const auto known = std::ranges::lower_bound(all, address, {}, &Start::address);
        if (known != all.end() && known->address == address)
            return known->first;
        char first = 0;
        file.ReadField(BytesOf(first), {kTitleOffset, 1}, address);
        return first;
    }

private:
    static constexpr int kSingleReads = 200;
    struct Start {
        RecordAddress address;
        char first;
    };

    void ReadAll()
    {
        const FieldRange start{kTitleOffset, 1};
        file.ForEachRecord(
            std::span(&start, 1),
            [this](RecordAddress address, std::span<const std::byte> bytes) {
                all.push_back({address, static_cast<char>(bytes[0])});
                return true;
            },
            ScanScope::All);
    }

    const TableFile& file;
    int asked = 0;
    std::vector<Start> all;  // in file order
};

std::string Text(int id)
{
    return std::string(LoadStringResource(id));
}

}  // namespace

NotesPane::NotesPane(const PaneColours& paneColours, std::string paneName)
    : MarlinPane(paneColours, std::move(paneName)),
      list(std::make_unique<NotesList>(kListId, 0, kCellHeight, kCellsPerRow, kBoardColour, kBoardColour,
                                       kScrollBarLeft, kScrollColour, kScrollColour)),
      categoryMenu(std::make_unique<CategoryMenu>(kFirstCategoryId, kStripColour, kWhite, kWhite)),
      letterBar(std::make_unique<MarlinClassToDoPriority>(kLetterBarId, 'a', 'z', kBoardColour)),
      tabs(std::make_unique<TTabsWnd>(kTabsId, kBoardColour, kTabWidth)),
      bin(std::make_unique<MarlinClassWndBin>(kBinId, kBoardColour, kBinFrame, kBinMark))
{
    Today(paneDate);
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
    return MarlinPane::OnCreate(record);
}

MessageParam NotesPane::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    const Layout layout = LayOut({client.Width(), client.Height()});
    Place(*list, layout.list);
    Place(*categoryMenu, layout.categories);
    Place(*letterBar, layout.letters);
    Place(*calendar, layout.calendar);
    Place(*tabs, layout.tabs);
    Place(*bin, layout.bin);
    return 0;
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
    file = newFile;
    if (!query) {
        Today(paneDate);
        query = std::make_unique<RecordQuery>();
        categoryMenu->LoadCategories(file);
        categoryMenu->Invalidate(nullptr, 0);
    } else {
        categoryMenu->ReloadCategories(file);
    }
    if (!file) {
        list->SetSource(nullptr, nullptr);
        list->SetCount(0);
        return;
    }
    ShowWaitCursor();
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
}

MessageParam NotesPane::OnCommand(WndMessage& record)
{
    const int id = LowWord(record.wParam);
    const int code = HighWord(record.wParam);
    if (id >= kFirstCategoryId && id <= kLastCategoryId) {
        OnCategory(reinterpret_cast<const char*>(record.lParam));
        return 0;
    }
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
            Post(kWmCommand, kBinId, kBinUndo);
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
            if (internetEvents)
                internetEvents(*this);
            return 0;
        case kCommandOpenAttachment:
            OpenAttachment();
            return 0;
        case kCommandMoveToDay:
        case kCommandCopyToDay:
            OnMoveToDay(id == kCommandCopyToDay);
            return 0;
        default:
            return MarlinPane::OnCommand(record);
    }
}

MessageParam NotesPane::OnListNotification(int code, int item)
{
    if (code == kListItemDoubleClicked)
        Post(kWmCommand, item >= 0 ? kCommandEditNote : kCommandNewNote, 0);
    else if (code == kListItemRightClicked)
        OpenPopup(item);
    return 0;
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
}

void NotesPane::OnCategory(const char* text)
{
    if (categoryFilter == text)
        return;
    categoryFilter = CutText(text, kCategoryString - 1);
    if (categoryFilter == kAllCategories)
        categoryFilter.clear();
    Refresh(file);
}

void NotesPane::OnLetter(int letter)
{
    if (const int index = FindByLetter(letter); index >= 0)
        list->SelectItem(index);
}

int NotesPane::FindByLetter(int letter) const
{
    if (!file || !query)
        return -1;
    const auto upper = [](char c) { return static_cast<signed char>(c >= 'a' && c <= 'z' ? c - ('a' - 'A') : c); };
    const signed char wanted = upper(static_cast<char>(letter));
    TitleStarts starts(*file);
    int index = 0;
    for (const RecordAddress address : query->Results()) {
        if (upper(starts.At(address)) >= wanted)
            return index;
        ++index;
    }
    return index - 1;
}

std::uint64_t NotesPane::SelectedId() const
{
    std::uint64_t id = 0;
    if (const auto address = SelectedAddress();
        address && file->ReadField(BytesOf(id), {kUniqueIdOffset, sizeof id}, *address) == 1)
        return id;
    return 0;
}

bool NotesPane::SelectedHasAttachment() const
{
    NoteRecord note;
    const auto address = SelectedAddress();
    return address && file->ReadRecord(BytesOf(note), *address) == 1 && HasAttachment(note);
}

void NotesPane::OpenPopup(int item)
{
    const bool off = item < 0;
    const std::vector<MenuEntry> entries = {
        {Text(120), kCommandNewNote},
        {Text(121), kCommandEditNote, off},
        {Text(122), kCommandDeleteNote, off},
        {},
        {Text(140), kCommandUndoDelete, BinSlot().IsEmpty()},
        {},
        {Text(117), kCommandCut, off},
        {Text(118), kCommandCopy, off},
        {Text(119), kCommandPaste, NoteClipboard().IsEmpty()},
        {},
        {Text(142), kCommandOpenAttachment, off || !SelectedHasAttachment()},
        {},
        {Text(123), kCommandInternetEvents, off || !internetEvents},
    };
    TrackPopupMenu(window, entries, list->PopupPoint(item));
}

}  // namespace jotlet
