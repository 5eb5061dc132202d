// The pane named "Work": the board of notes of one file, its filters, and every command on a note.
//
// Each command that changes a note is made for a file that other copies use at the same time (notes/commands/). What
// the screen shows follows from the refresh alone; no note is kept in memory.
//
// Owns: its children and the query. Not the file, which the program's module keeps open.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "notes/category_menu.h"
#include "notes/marlin_class_wnd_bin.h"
#include "notes/notes_list.h"
#include "platform/base/calendar.h"
#include "store/record_query.h"
#include "store/table_file.h"
#include "toolkit/marli_mini_calendar.h"
#include "toolkit/marlin_class_to_do_priority.h"
#include "toolkit/marlin_pane.h"
#include "toolkit/tabs_wnd.h"

namespace jotlet {

class HeldNote;
struct NoteResult;

class NotesPane : public MarlinPane {
public:
    NotesPane(const PaneColours& colours, std::string name);
    ~NotesPane() override;

    NotesList& GetList() { return *list; }
    TTabsWnd& GetTabs() { return *tabs; }
    MarliMiniCalendar& GetCalendar() { return *calendar; }
    MarlinClassToDoPriority& GetLetterBar() { return *letterBar; }
    MarlinClassWndBin& GetBin() { return *bin; }
    CategoryMenu& GetCategoryMenu() { return *categoryMenu; }
    TableFile* GetFile() const { return file; }
    const DateValue& GetPaneDate() const { return paneDate; }
    const std::string& GetCategoryFilter() const { return categoryFilter; }
    // The note that was selected; nothing when none is.
    std::optional<ChosenRecord> Chosen() const;
    // The `uniqueId` of the selected note; 0 when none is selected or it can no longer be read.
    std::uint64_t SelectedId() const;

    // Runs the query anew for the tab, the date and the category, and shows its result.
    void Refresh(TableFile* newFile);

    // The window of a group event, hooked in by who knows it: works on the held note and saves it. Null: no such
    // command.
    std::function<NoteResult(MarlinWnd& parent, HeldNote& held)> editGroupEvent;
    // Called from the message loop when the path of the file no longer leads to it.
    std::function<void()> fileLost;
    // Called from the message loop when the drive of the file no longer answers, and when it does again.
    std::function<void(bool answers)> driveAnswers;

    MessageParam OnCreate(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;
    MessageParam OnSize(WndMessage& record) override;
    MessageParam OnTimer(WndMessage& record) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    int OnEntered() override;
    int OnFileOpened(TableFile* newFile) override;
    void CollectTabStops(TabStops& stops) override;

    // Control ids.
    static constexpr int kListId = 100;
    static constexpr int kCalendarId = 102;
    static constexpr int kTabsId = 103;
    static constexpr int kBinId = 107;
    static constexpr int kLetterBarId = 108;
    static constexpr int kFirstCategoryId = 500;
    static constexpr int kLastCategoryId = 530;
    static constexpr int kDayTimer = 109;
    // Values of the tabs.
    static constexpr int kTitleTab = 0;
    static constexpr int kDateTab = 1;

private:
    // What the user asked for (note_commands.cpp).
    void NewNote();
    void EditNote();
    void DeleteNote();
    void CutNote();
    void CopyNote();
    void PasteNote();
    void UndoDelete();
    void InternetEvents();
    void OpenAttachment();
    void FindNotes();
    int DropOnBin();
    void DropOnDay(const DateValue& day);
    void DropCopyOnDay(const DateValue& day);

    // Their steps.
    using DropCommand = NoteResult (*)(TableFile*, std::optional<ChosenRecord>, const DateValue&, NoteRecord&);
    bool RefuseReader();
    bool Tell(const NoteResult& result);
    bool RemoveAndKeep(HeldNote& held);
    bool ReadChosen(NoteRecord& note) const;
    void FinishDrop(const DateValue& day, DropCommand command, const char* sound);
    DateValue DateForNewNote() const;
    bool OnDateTab() const;
    void FocusList();
    void FollowLimit();

    // Notifications of the children.
    static bool NeedsFile(int id, int code);
    MessageParam OnListNotification(int code, int item);
    void OnDriveAnswers(bool answers);
    MessageParam OnCalendarNotification(int code, const DateValue& date);
    MessageParam OnBinCommand(MessageParam what);
    void OnTabChanged(int value);
    void OnLetter(int letter);
    void OnTyped(char32_t character);
    void OnCategory(const char* text);
    void OnMoveToDay(bool copy);
    void ChooseDay(const DateValue& day);
    void FollowToday();
    void OpenPopup(int item);
    bool SelectedHasAttachment() const;

    std::unique_ptr<RecordQuery> query;
    TableFile* file = nullptr;
    std::unique_ptr<NotesList> list;
    std::unique_ptr<CategoryMenu> categoryMenu;
    std::unique_ptr<MarlinClassToDoPriority> letterBar;
    std::unique_ptr<MarliMiniCalendar> calendar;
    std::unique_ptr<TTabsWnd> tabs;
    std::unique_ptr<MarlinClassWndBin> bin;
    DateValue paneDate;
    DateValue today;             // when it was last looked at
    std::string categoryFilter;  // empty: all
    bool isBehind = false;       // what is shown is not what was asked for: the drive did not answer
    bool noticeShown = false;    // that there are more notes than a query holds
};

}  // namespace jotlet
