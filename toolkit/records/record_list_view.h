// RecordListView: a list view of the records that a query found.
//
// A cell's index is an index into the query's result, every cell reads its record when it is painted, and the list
// follows the changes that other copies make: each tick of any list's timer looks at all of them (RestartRefreshTimer
// tells how often). A file on a drive is looked at beside the window's thread, and read only when it has changed. While
// the drive doesn't answer, calls on it are refused (platform/base/silent_drive.h) and the list stays as it is.
//
// Owns:    neither the file nor the query, which the binder keeps alive, or unbinds with nulls.
// Tells:   the parent, besides what a list view tells: code 24 (kListReloaded) sent before a reload and posted after
// it. Threads: one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "store/record_address.h"
#include "store/table_file.h"
#include "toolkit/marlin_wnd_list_view.h"
#include "toolkit/records/stamp_look.h"

namespace jotlet {

class RecordQuery;

// Code 24, and its lParam.
inline constexpr int kListReloaded = 24;
inline constexpr int kListFileLost = 25;      // posted at each refresh while the path of the table leads elsewhere
inline constexpr int kListDriveAnswers = 26;  // posted when that changes: 0 in lParam when the drive no longer answers
inline constexpr int kReloadedAsked = 0;      // after; the parent itself asked by RefreshNow
inline constexpr int kReloadingAsked = 1;     // before
inline constexpr int kReloaded = 2;           // after; another copy changed the file
inline constexpr int kReloading = 3;          // before

class RecordListView : public MarlinWndListView {
public:
    // As a list view's, without items.
    RecordListView(int id, int itemHeight, int columns, Colour oddColour, Colour evenColour, int scrollSide,
                   Colour arrowColour, Colour thumbColour);
    ~RecordListView() override;

    void SetSource(TableFile* tableFile, RecordQuery* recordQuery);

    // The record that was chosen, and not what another copy may have put into its place since. Nothing when no record
    // is selected; id 0 when it was gone already.
    std::optional<ChosenRecord> GetChosen() const;
    // By the record's identity (`uniqueId`), one read an item. 1, or 0 when it is not in the result.
    int SelectRecord(std::span<const std::byte> record);
    int SelectRecord(std::uint64_t uniqueId);

    // Runs the queries of all record lists whose file changed since; nothing while refresh is suspended.
    void RefreshNow();
    void RefreshAndSelect(std::span<const std::byte> record);
    // By the settings' "NetworkRefresh", 1 to 60 seconds, 2 without it.
    void RestartRefreshTimer();
    static void RestartAllRefreshTimers();

    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnClose(WndMessage& record) override;
    MessageParam OnTimer(WndMessage& record) override;
    void DrawItem(DeviceContext& dc, Colour background, int index, int state, const Rect& rect) final;
    void OnChosen(int index) override;

    // The drawing hook, called only while file and query are both set.
    virtual void DrawRecordItem(DeviceContext&, Colour /*background*/, int /*index*/, int /*state*/, const Rect&) {}

    static constexpr int kRefreshTimerId = 100;
    static constexpr int kPatienceTimerId = 101;       // runs out when a look at the drive takes long
    static constexpr std::size_t kMaxListViews = 100;  // further ones live without refresh

protected:
    // The record of an item, for drawing and telling it. False when it is gone, can't be read, or there is none.
    bool ReadItem(int index, std::span<std::byte> record) const;
    // What stands in its cell then: `deleted`, unless the drive is to blame.
    std::string GoneText(std::string_view deleted) const;

    TableFile* file = nullptr;
    RecordQuery* query = nullptr;

private:
    enum class RefreshCause { Timer, Asked };

    bool Bound() const { return file && query; }
    // One list view's turn in a refresh.
    void Refresh(RefreshCause cause);
    bool MayRefresh() const;
    // The timer's part where the file lies on a drive.
    void MakeLook();
    void LookAtDrive();
    void OnLooked(const StampLook::Answer& answer);
    void TellDrive(bool answers);
    void StopLooking();
    static void RefreshAll(RefreshCause cause);
    // The result's index of the record with this identity, -1 when it is not there.
    int FindRecord(std::uint64_t uniqueId) const;

    std::optional<std::uint64_t> chosenId;
    bool refreshing = false;
    std::unique_ptr<StampLook> look;  // at `file`, on a drive
    bool driveAnswers = true;         // as last told
};

}  // namespace jotlet
