// MarlinWndListView: the one list of the program, a grid of equal cells beside its own scroll bar.
//
// It holds no item data: a subclass draws each cell. Bound to a file and a query, a cell's index is an index into the
// query's result, every cell reads its record when it is painted, and the list follows the changes that other copies
// make: each tick of any list view's timer looks at all of them (RestartRefreshTimer tells how often). A file on a
// drive is looked at beside the window's thread, and read only when it has changed. While the drive doesn't answer,
// calls on it are refused (platform/base/silent_drive.h) and the list stays as it is.
//
// Owns:    grid and bar. Not the file and the query, which the binder keeps alive, or unbinds with nulls.
// Tells:   the parent, posted: codes 21, 22, 23 of marlin_wnd_list.h with the item; code 24 (kListReloaded) sent before
//          a reload and posted after it.
// Threads: one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "store/record_address.h"
#include "store/table_file.h"
#include "toolkit/marlin_class_wnd_scroll_bar.h"
#include "toolkit/marlin_wnd_list.h"
#include "toolkit/stamp_look.h"

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

inline constexpr int kScrollBarLeft = 1;  // any other side: right
// `state` of the drawing hooks.
inline constexpr int kItemPlain = 0;
inline constexpr int kItemSelected = 1;
inline constexpr int kListEmpty = -1;  // once, with index -1 and the whole grid

class MarlinWndListView : public MarlinWnd {
public:
    // 0 columns count as 1.
    MarlinWndListView(int id, int itemCount, int itemHeight, int columns, Colour oddColour, Colour evenColour,
                      int scrollSide, Colour arrowColour, Colour thumbColour);
    ~MarlinWndListView() override;

    void SetSource(TableFile* tableFile, RecordQuery* recordQuery);
    // Selection cleared, top row moved up where it would lie past the end.
    void SetCount(int count);
    void SetScrollColours(Colour face, Colour glyph, Colour frame, Colour track, Colour thumb, Colour grip,
                          Colour edge);
    void EnableDrag();

    int GetSelected() const { return list->selected; }
    // The record that was chosen, and not what another copy may have put into its place since. Nothing when no record
    // is selected; id 0 when it was gone already.
    std::optional<ChosenRecord> GetChosen() const;
    int GetCount() const { return list->ItemCount(); }
    // Selects and brings into view: an item of the first page always scrolls to the top, any other comes to the middle.
    // 1, or 0 when there is no such item. Tells nobody.
    int SelectItem(int index);
    // By the record's identity (`uniqueId`), one read an item. 1, or 0 when it is not in the result.
    int SelectRecord(std::span<const std::byte> record);
    int SelectRecord(std::uint64_t uniqueId);
    void SetTopRow(int row);
    int GetTopRow() const { return list->topRow; }

    // Runs the queries of all list views whose file changed since; nothing while refresh is suspended.
    void RefreshNow();
    void RefreshAndSelect(std::span<const std::byte> record);
    // By the settings' "NetworkRefresh", 1 to 60 seconds, 2 without it.
    void RestartRefreshTimer();
    static void RestartAllRefreshTimers();

    // For the drawing hooks, when the state is kItemSelected: a dotted edge, hard while the list has the focus.
    void DrawSelectionFrame(DeviceContext& dc, const Rect& rect, Colour colour);

    // The cell of an item in screen coordinates, cut to what is on view: where a popup opened by the keyboard goes.
    // Nothing when the item is not on view.
    std::optional<Rect> GetItemRect(int index) const;
    // True when the last notification 23 came from the menu key and not from the mouse.
    bool MenuByKey() const { return menuByKey; }
    // Where that popup opens, in screen coordinates: in the item's cell after the menu key, else at the cursor.
    Point PopupPoint(int index) const;
    // The grid: what takes the focus, and what a drag starts from.
    MarlinWndList& Grid() { return *list; }

    void PrepareClass(WindowClass& windowClass) override;
    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnClose(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnTimer(WndMessage& record) override;
    MessageParam OnSize(WndMessage& record) override;
    void CollectTabStops(TabStops& stops) override;

    // Hooks, for a subclass; the record forms are called when file and query are both set, the others otherwise.
    virtual void DrawItem(DeviceContext&, Colour /*background*/, int /*index*/, int /*state*/, const Rect&) {}
    virtual void DrawRecordItem(TableFile&, RecordQuery&, DeviceContext&, Colour /*background*/, int /*index*/,
                                int /*state*/, const Rect&)
    {
    }
    virtual void OnItemMouseMove(int /*x*/, int /*y*/, int /*index*/, const Rect&) {}
    virtual void OnRecordItemMouseMove(int, int, TableFile&, RecordQuery&, int, const Rect&) {}
    virtual void OnItemPress(int /*x*/, int /*y*/, int /*index*/, const Rect&) {}
    virtual void OnRecordItemPress(int, int, TableFile&, RecordQuery&, int, const Rect&) {}
    // Only on lists with dragging enabled.
    virtual void OnItemRelease(int /*x*/, int /*y*/, int /*index*/, const Rect&) {}
    virtual void OnRecordItemRelease(int, int, TableFile&, RecordQuery&, int, const Rect&) {}
    // A key moved the selection; the parent is not told of that.
    virtual void OnKeySelected(int /*index*/) {}
    // Enter, where TakeReturnKey gives it to the grid; -1: nothing is selected.
    virtual void OnReturnKey(int /*selected*/) {}
    // A key that the grid has no use for.
    virtual void OnOtherKey(int /*virtualKey*/) {}
    // A character was typed; no control character and no blank.
    virtual void OnCharacter(char32_t /*character*/) {}
    // What a screen reader says for an item; and for the list itself.
    virtual std::string ItemName(int index);
    // What else its cell shows: colours, marks.
    virtual std::string ItemDetail(int /*index*/) { return {}; }
    virtual std::string ListName() { return {}; }
    // What to do while the list has no items.
    virtual std::string EmptyHint() { return {}; }

    static constexpr int kBarWidth = 20;
    static constexpr int kBarId = 10;
    static constexpr int kRefreshTimerId = 100;
    static constexpr int kPatienceTimerId = 101;       // runs out when a look at the drive takes long
    static constexpr std::size_t kMaxListViews = 100;  // further ones live without refresh

protected:
    // The record of an item, for drawing and telling it. False when it is gone, can't be read, or there is none.
    bool ReadItem(int index, std::span<std::byte> record) const;
    // What stands in its cell then: `deleted`, unless the drive is to blame.
    std::string GoneText(std::string_view deleted) const;

    int id;
    std::unique_ptr<MarlinClassWndScrollBar> scrollBar;
    std::unique_ptr<MarlinWndList> list;
    TableFile* file = nullptr;
    RecordQuery* query = nullptr;

private:
    friend class MarlinWndList;
    enum class RefreshCause { Timer, Asked };

    void ScrollTo(int row);
    void OnBarMoved(int row);
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
    // Called where an item becomes the selected one.
    void RememberChosen();
    // The result's index of the record with this identity, -1 when it is not there.
    int FindRecord(std::uint64_t uniqueId) const;

    // The hooks in the form that fits.
    void Draw(DeviceContext& dc, Colour background, int index, int state, const Rect& rect);
    void Moved(Point p, int index, const Rect& rect);
    void Pressed(Point p, int index, const Rect& rect);
    void Released(Point p, int index, const Rect& rect);

    int scrollSide;
    std::optional<std::uint64_t> chosenId;
    bool menuByKey = false;
    bool refreshing = false;
    std::unique_ptr<StampLook> look;  // at `file`, on a drive
    bool driveAnswers = true;         // as last told
};

}  // namespace jotlet
