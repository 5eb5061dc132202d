#include "toolkit/records/record_list_view.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/base/paths.h"
#include "store/record_query.h"
#include "store/refresh_switch.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr std::size_t kUniqueIdOffset = 6;  // in every record
constexpr int kDefaultRefreshSeconds = 2;
constexpr int kMaxRefreshSeconds = 60;
constexpr Milliseconds kLookPatience{4000};

std::vector<RecordListView*>& Registry()
{
    static std::vector<RecordListView*> views;
    return views;
}

bool IsRegistered(const RecordListView* view)
{
    return std::ranges::find(Registry(), view) != Registry().end();
}

std::uint64_t IdentityOf(std::span<const std::byte> record)
{
    std::uint64_t uniqueId = 0;
    if (record.size() >= kUniqueIdOffset + sizeof uniqueId)
        std::memcpy(&uniqueId, record.data() + kUniqueIdOffset, sizeof uniqueId);
    return uniqueId;
}

}  // namespace

RecordListView::RecordListView(int id, int itemHeight, int columns, Colour oddColour, Colour evenColour, int scrollSide,
                               Colour arrowColour, Colour thumbColour)
    : MarlinWndListView(id, 0, itemHeight, columns, oddColour, evenColour, scrollSide, arrowColour, thumbColour)
{
    if (Registry().size() < kMaxListViews)
        Registry().push_back(this);
}

RecordListView::~RecordListView()
{
    std::erase(Registry(), this);
}

MessageParam RecordListView::OnCreate(WndMessage& record)
{
    MarlinWndListView::OnCreate(record);
    RestartRefreshTimer();
    return 0;
}

MessageParam RecordListView::OnClose(WndMessage&)
{
    StopTimer(window, kRefreshTimerId);
    StopTimer(window, kPatienceTimerId);
    return 0;
}

void RecordListView::DrawItem(DeviceContext& dc, Colour background, int index, int state, const Rect& rect)
{
    if (Bound())
        DrawRecordItem(dc, background, index, state, rect);
}

void RecordListView::SetSource(TableFile* tableFile, RecordQuery* recordQuery)
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

void RecordListView::MakeLook()
{
    look = std::make_unique<StampLook>(*file, [this](const StampLook::Answer& answer) { OnLooked(answer); });
}

void RecordListView::StopLooking()
{
    StopTimer(window, kPatienceTimerId);
    look.reset();
    driveAnswers = true;
}

void RecordListView::OnChosen(int index)
{
    chosenId.reset();
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

bool RecordListView::ReadItem(int index, std::span<std::byte> record) const
{
    return Bound() && index >= 0 && index < query->resultCount &&
           file->ReadListedRecord(record, query->Results()[static_cast<std::size_t>(index)]) == 1;
}

std::string RecordListView::GoneText(std::string_view deleted) const
{
    return driveAnswers ? std::string(deleted) : "The drive does not answer.";
}

std::optional<ChosenRecord> RecordListView::GetChosen() const
{
    const int index = list->selected;
    if (!Bound() || index < 0 || index >= query->resultCount)
        return std::nullopt;
    return ChosenRecord{query->Results()[static_cast<std::size_t>(index)], chosenId.value_or(0)};
}

int RecordListView::FindRecord(std::uint64_t uniqueId) const
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

int RecordListView::SelectRecord(std::uint64_t uniqueId)
{
    const int index = FindRecord(uniqueId);
    return index < 0 ? 0 : SelectItem(index);
}

int RecordListView::SelectRecord(std::span<const std::byte> record)
{
    return SelectRecord(IdentityOf(record));
}

void RecordListView::RestartRefreshTimer()
{
    StopTimer(window, kRefreshTimerId);
    int seconds = kDefaultRefreshSeconds;
    GetSuiteIniPath().IniReadInt("Preference", "NetworkRefresh", seconds);
    seconds = std::clamp(seconds, 1, kMaxRefreshSeconds);
    StartTimer(window, kRefreshTimerId, std::chrono::seconds(seconds));
}

void RecordListView::RestartAllRefreshTimers()
{
    for (RecordListView* view : Registry())
        view->RestartRefreshTimer();
}

MessageParam RecordListView::OnTimer(WndMessage& record)
{
    if (record.wParam == kPatienceTimerId) {
        StopTimer(window, kPatienceTimerId);
        TellDrive(false);
    } else {
        RefreshAll(RefreshCause::Timer);
    }
    return 0;
}

void RecordListView::RefreshNow()
{
    RefreshAll(RefreshCause::Asked);
}

void RecordListView::RefreshAndSelect(std::span<const std::byte> record)
{
    RefreshNow();
    SelectRecord(record);
}

void RecordListView::RefreshAll(RefreshCause cause)
{
    // A parent may destroy list views when it is told of a reload.
    const std::vector<RecordListView*> views = Registry();
    for (RecordListView* view : views) {
        if (!IsRegistered(view) || !view->Bound())
            continue;
        // Whether the drive answers is asked also while the lists stand still.
        if (cause == RefreshCause::Timer && !view->file->IsOnThisMachine())
            view->LookAtDrive();
        else if (view->MayRefresh())
            view->Refresh(cause);
    }
}

bool RecordListView::MayRefresh() const
{
    // A list that an item is being dragged from keeps it selected until it is dropped.
    return Bound() && IsRefreshEnabled() && !refreshing && driveAnswers && !list->dragging;
}

void RecordListView::LookAtDrive()
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

void RecordListView::OnLooked(const StampLook::Answer& answer)
{
    StopTimer(window, kPatienceTimerId);
    TellDrive(answer.driveAnswers);
    if (answer.asksTable)
        look.reset();  // the table may open its file anew
    const bool isNews = answer.asksTable || (Bound() && answer.stamp != query->seenStamp);
    if (answer.driveAnswers && isNews && MayRefresh())
        Refresh(RefreshCause::Timer);
}

void RecordListView::TellDrive(bool answers)
{
    if (file)
        file->SetDriveAnswers(answers);
    if (answers == driveAnswers)
        return;
    driveAnswers = answers;
    list->Invalidate(nullptr, 0);  // cells that could not be read
    PostCommand(id, answers ? 1 : 0, kListDriveAnswers);
}

void RecordListView::Refresh(RefreshCause cause)
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

}  // namespace jotlet
