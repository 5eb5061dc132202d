#include "toolkit/marlin_wnd_list_view.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "platform/base/paths.h"
#include "skin/drawing.h"
#include "store/record_query.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr std::size_t kUniqueIdOffset = 6;  // in every record
constexpr int kSelectionPatternId = 2010;
constexpr int kSelectionSoftness = 40;
constexpr int kDefaultRefreshSeconds = 2;
constexpr int kMaxRefreshSeconds = 60;
constexpr Milliseconds kLookPatience{4000};

std::vector<MarlinWndListView*>& Registry()
{
    static std::vector<MarlinWndListView*> views;
    return views;
}

bool IsRegistered(const MarlinWndListView* view)
{
    return std::ranges::find(Registry(), view) != Registry().end();
}

double RowsOf(int count, int columns)
{
    return static_cast<double>(count) / columns;
}

std::uint64_t IdentityOf(std::span<const std::byte> record)
{
    std::uint64_t uniqueId = 0;
    if (record.size() >= kUniqueIdOffset + sizeof uniqueId)
        std::memcpy(&uniqueId, record.data() + kUniqueIdOffset, sizeof uniqueId);
    return uniqueId;
}

}  // namespace

MarlinWndListView::MarlinWndListView(int id, int itemCount, int itemHeight, int columns, Colour oddColour,
                                     Colour evenColour, int scrollSide, Colour arrowColour, Colour thumbColour)
    : id(id), scrollSide(scrollSide)
{
    columns = std::max(columns, 1);
    const double rows = RowsOf(itemCount, columns);
    list = std::make_unique<MarlinWndList>(*this, rows, itemHeight, columns, oddColour, evenColour);
    scrollBar = std::make_unique<MarlinClassWndScrollBar>(kBarId, rows, arrowColour, thumbColour);
    if (Registry().size() < kMaxListViews)
        Registry().push_back(this);
}

MarlinWndListView::~MarlinWndListView()
{
    std::erase(Registry(), this);
}

void MarlinWndListView::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "MarlinWndListView";
    windowClass.background = Background::White;
}

MessageParam MarlinWndListView::OnCreate(WndMessage&)
{
    list->Create(this);
    scrollBar->Create(this);
    RestartRefreshTimer();
    FocusWindow(list->window);
    return 0;
}

MessageParam MarlinWndListView::OnClose(WndMessage&)
{
    StopTimer(window, kRefreshTimerId);
    StopTimer(window, kPatienceTimerId);
    return 0;
}

MessageParam MarlinWndListView::OnSize(WndMessage&)
{
    const Rect client = GetClientArea();
    const bool barLeft = scrollSide == kScrollBarLeft;
    const int gridWidth = std::max(client.Width() - kBarWidth, 0);
    scrollBar->Move(barLeft ? 0 : gridWidth, 0, kBarWidth, client.Height(), 1);
    list->Move(barLeft ? kBarWidth : 0, 0, gridWidth, client.Height(), 1);
    return 0;
}

MessageParam MarlinWndListView::OnCommand(WndMessage& record)
{
    const int command = LowWord(record.wParam);
    switch (command) {
        case kBarId:
            OnBarMoved(static_cast<int>(record.lParam));
            break;
        case kListScrolled:
            scrollBar->SetPosition(static_cast<int>(record.lParam));
            break;
        case kListItemPressed:
            PostCommand(id, record.lParam, command);
            break;
        case kListItemDoubleClicked:
        case kListItemRightClicked:
            RequestCommand(id, record.lParam, command);
            break;
        default:
            break;
    }
    return 0;
}

void MarlinWndListView::OnBarMoved(int row)
{
    if (row == list->topRow || !(row < list->rows))
        return;
    list->topRow = row;
    list->Invalidate(nullptr, 0);
    AccessibleChanged(list->window);
}

void MarlinWndListView::SetSource(TableFile* tableFile, RecordQuery* recordQuery)
{
    const bool isOther = tableFile != file;
    if (isOther)
        StopLooking();
    file = tableFile;
    query = recordQuery;
    // Now, while the drive answers.
    if (isOther && file && file->IsOpen() && !file->IsOnThisMachine())
        MakeLook();
}

void MarlinWndListView::MakeLook()
{
    look = std::make_unique<StampLook>(*file, [this](const StampLook::Answer& answer) { OnLooked(answer); });
}

void MarlinWndListView::StopLooking()
{
    StopTimer(window, kPatienceTimerId);
    look.reset();
    driveAnswers = true;
}

void MarlinWndListView::SetCount(int count)
{
    const double rows = RowsOf(std::max(count, 0), list->Columns());
    list->rows = rows;
    list->selected = -1;
    list->topRow = ClampRow(list->topRow, rows);
    scrollBar->SetRows(rows);
    list->Invalidate(nullptr, 1);
    scrollBar->Invalidate(nullptr, 1);
    AccessibleChanged(list->window);
}

void MarlinWndListView::SetScrollColours(Colour face, Colour glyph, Colour frame, Colour track, Colour thumb,
                                         Colour grip, Colour edge)
{
    scrollBar->SetColours(face, glyph, frame, track, thumb, grip, edge);
}

void MarlinWndListView::EnableDrag()
{
    list->dragEnabled = true;
}

int MarlinWndListView::SelectItem(int index)
{
    if (!list->IsItem(index))
        return 0;
    const int visible = list->GetClientArea().Height() / list->ItemHeight();
    const int row = index / list->Columns();
    list->Choose(index);
    ScrollTo(row < visible ? 0 : std::max(row - visible / 2, 0));
    return 1;
}

void MarlinWndListView::SetTopRow(int row)
{
    if (IsValidRow(row, list->rows) || row == 0)
        ScrollTo(row);
}

void MarlinWndListView::ScrollTo(int row)
{
    list->topRow = row;
    list->Invalidate(nullptr, 0);
    scrollBar->SetPosition(row);
    scrollBar->Invalidate(nullptr, 0);
    AccessibleChanged(list->window);
}

void MarlinWndListView::RememberChosen()
{
    chosenId.reset();
    const int index = list->selected;
    if (!Bound() || index < 0 || index >= query->resultCount)
        return;
    std::uint64_t id = 0;
    std::vector<std::byte> record = file->AllocRecordBuffer();
    if (file->ReadListedField(std::as_writable_bytes(std::span(&id, 1)), {kUniqueIdOffset, sizeof id},
                              query->Results()[static_cast<std::size_t>(index)]) == 1)
        chosenId = id;
    else if (!driveAnswers && ReadItem(index, record))
        chosenId = IdentityOf(record);
}

bool MarlinWndListView::ReadItem(int index, std::span<std::byte> record) const
{
    return Bound() && index >= 0 && index < query->resultCount &&
           file->ReadListedRecord(record, query->Results()[static_cast<std::size_t>(index)]) == 1;
}

std::string MarlinWndListView::GoneText(std::string_view deleted) const
{
    return driveAnswers ? std::string(deleted) : "The drive does not answer.";
}

std::optional<ChosenRecord> MarlinWndListView::GetChosen() const
{
    const int index = list->selected;
    if (!Bound() || index < 0 || index >= query->resultCount)
        return std::nullopt;
    return ChosenRecord{query->Results()[static_cast<std::size_t>(index)], chosenId.value_or(0)};
}

int MarlinWndListView::FindRecord(std::uint64_t uniqueId) const
{
    if (!Bound())
        return -1;
    const auto addresses = query->Results();
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        std::uint64_t found = 0;
        const FieldRange identity{kUniqueIdOffset, sizeof found};
        if (file->ReadListedField(std::as_writable_bytes(std::span(&found, 1)), identity, addresses[i]) == 1 &&
            found == uniqueId)
            return static_cast<int>(i);
    }
    return -1;
}

int MarlinWndListView::SelectRecord(std::uint64_t uniqueId)
{
    const int index = FindRecord(uniqueId);
    return index < 0 ? 0 : SelectItem(index);
}

int MarlinWndListView::SelectRecord(std::span<const std::byte> record)
{
    return SelectRecord(IdentityOf(record));
}

void MarlinWndListView::RestartRefreshTimer()
{
    StopTimer(window, kRefreshTimerId);
    int seconds = kDefaultRefreshSeconds;
    GetSuiteIniPath().IniReadInt("Preference", "NetworkRefresh", seconds);
    seconds = std::clamp(seconds, 1, kMaxRefreshSeconds);
    StartTimer(window, kRefreshTimerId, std::chrono::seconds(seconds));
}

void MarlinWndListView::RestartAllRefreshTimers()
{
    for (MarlinWndListView* view : Registry())
        view->RestartRefreshTimer();
}

MessageParam MarlinWndListView::OnTimer(WndMessage& record)
{
    if (record.wParam == kPatienceTimerId) {
        StopTimer(window, kPatienceTimerId);
        TellDrive(false);
    } else {
        RefreshAll(RefreshCause::Timer);
    }
    return 0;
}

void MarlinWndListView::RefreshNow()
{
    RefreshAll(RefreshCause::Asked);
}

void MarlinWndListView::RefreshAndSelect(std::span<const std::byte> record)
{
    RefreshNow();
    SelectRecord(record);
}

void MarlinWndListView::RefreshAll(RefreshCause cause)
{
    // A parent may destroy list views when it is told of a reload.
    const std::vector<MarlinWndListView*> views = Registry();
    for (MarlinWndListView* view : views) {
        if (!IsRegistered(view) || !view->Bound())
            continue;
        // Whether the drive answers is asked also while the lists stand still.
        if (cause == RefreshCause::Timer && !view->file->IsOnThisMachine())
            view->LookAtDrive();
        else if (view->MayRefresh())
            view->Refresh(cause);
    }
}

bool MarlinWndListView::MayRefresh() const
{
    // A list that an item is being dragged from keeps it selected until it is dropped.
    return Bound() && IsRefreshEnabled() && !refreshing && driveAnswers && !list->dragging;
}

void MarlinWndListView::LookAtDrive()
{
    if (!look)
        MakeLook();
    if (look->IsUnderWay())
        return;
    if (look->Start())
        StartTimer(window, kPatienceTimerId, kLookPatience);
    else if (MayRefresh())
        Refresh(RefreshCause::Timer);
}

void MarlinWndListView::OnLooked(const StampLook::Answer& answer)
{
    StopTimer(window, kPatienceTimerId);
    TellDrive(answer.driveAnswers);
    if (answer.asksTable)
        look.reset();  // the table may open its file anew
    const bool isNews = answer.asksTable || (Bound() && answer.stamp != query->seenStamp);
    if (answer.driveAnswers && isNews && MayRefresh())
        Refresh(RefreshCause::Timer);
}

void MarlinWndListView::TellDrive(bool answers)
{
    if (file)
        file->SetDriveAnswers(answers);
    if (answers == driveAnswers)
        return;
    driveAnswers = answers;
    list->Invalidate(nullptr, 0);  // cells that could not be read
    PostCommand(id, answers ? 1 : 0, kListDriveAnswers);
}

void MarlinWndListView::Refresh(RefreshCause cause)
{
    if (!file->PathStillNamesThisFile()) {
        PostCommand(id, 0, kListFileLost);
        return;
    }
    const std::uint64_t stamp = file->GetChangeStamp();
    if (stamp == query->seenStamp)
        return;
    refreshing = true;
    SendCommand(id, cause == RefreshCause::Asked ? kReloadingAsked : kReloading, kListReloaded);
    if (!IsRegistered(this))
        return;
    refreshing = false;
    if (!Bound() || file->RunQuery(*query) != 1)
        return;
    ShowWaitCursor();
    if (query->Resort() == 1) {
        SetCount(query->resultCount);
        query->seenStamp = stamp;
        PostCommand(id, cause == RefreshCause::Asked ? kReloadedAsked : kReloaded, kListReloaded);
    }
    file->LetGoOfPages();
    RestoreCursor();
}

void MarlinWndListView::DrawSelectionFrame(DeviceContext& dc, const Rect& rect, Colour colour)
{
    Bitmap pattern = Bitmap::FromResource(kSelectionPatternId);
    const Colour soft = colour == kNoColour ? 0x808080 : Darken(colour, kSelectionSoftness);
    if (!pattern) {
        dc.FrameRect(rect, list->hasFocus ? 0 : soft);
        return;
    }
    if (colour != kNoColour)
        ReplaceColour(pattern, 0xFFFFFF, colour);
    if (!list->hasFocus)
        ReplaceColour(pattern, 0, soft);
    dc.FrameRectPattern(rect, pattern);
}

std::optional<Rect> MarlinWndListView::GetItemRect(int index) const
{
    if (!list->IsItem(index))
        return std::nullopt;
    const Rect client = list->GetClientArea();
    Rect cell = list->Geometry().CellRect(index);
    cell = {std::max(cell.left, client.left), std::max(cell.top, client.top), std::min(cell.right, client.right),
            std::min(cell.bottom, client.bottom)};
    if (cell.Empty())
        return std::nullopt;
    const Point corner = ClientToScreen(list->window, {cell.left, cell.top});
    return Rect::At(corner.x, corner.y, cell.Width(), cell.Height());
}

Point MarlinWndListView::PopupPoint(int index) const
{
    if (!menuByKey)
        return CursorPosition();
    if (const auto cell = GetItemRect(index))
        return {cell->left + cell->Width() / 2, cell->top + cell->Height() / 2};
    return ClientToScreen(list->window, {0, 0});
}

void MarlinWndListView::CollectTabStops(TabStops& stops)
{
    list->CollectTabStops(stops);
}

std::string MarlinWndListView::ItemName(int)
{
    return {};
}

void MarlinWndListView::Draw(DeviceContext& dc, Colour background, int index, int state, const Rect& rect)
{
    if (Bound())
        DrawRecordItem(*file, *query, dc, background, index, state, rect);
    else
        DrawItem(dc, background, index, state, rect);
}

void MarlinWndListView::Moved(Point p, int index, const Rect& rect)
{
    if (Bound())
        OnRecordItemMouseMove(p.x, p.y, *file, *query, index, rect);
    else
        OnItemMouseMove(p.x, p.y, index, rect);
}

void MarlinWndListView::Pressed(Point p, int index, const Rect& rect)
{
    if (Bound())
        OnRecordItemPress(p.x, p.y, *file, *query, index, rect);
    else
        OnItemPress(p.x, p.y, index, rect);
}

void MarlinWndListView::Released(Point p, int index, const Rect& rect)
{
    if (Bound())
        OnRecordItemRelease(p.x, p.y, *file, *query, index, rect);
    else
        OnItemRelease(p.x, p.y, index, rect);
}

}  // namespace jotlet
