#pragma once

#include <memory>

#include "platform/desktop/qt/native_widget.h"

namespace jotlet {

struct ModalRun;

// A modal window or a box is open, and the widget lies in none of those that it lets through.
bool IsBlockedByModal(const QWidget& widget);
// The same, and while a menu is open: what the user asked for before it opened comes too late.
bool DropsRequests(const QWidget& widget);

// Held while a box, a chooser or a menu of the desktop's own runs its loop: no window of ours takes input then. A menu
// sees to the mouse and the keys itself.
class ForeignRun {
public:
    enum class Kind { Box, Menu };
    explicit ForeignRun(Kind kind = Kind::Box);
    ~ForeignRun();
    ForeignRun(const ForeignRun&) = delete;
    ForeignRun& operator=(const ForeignRun&) = delete;

private:
    const std::unique_ptr<ModalRun> run;
};

// Ends every nested loop: the modal runs give 0, boxes and choosers are answered as by Escape, menus close. Until
// FinishLeaving no new one opens.
void LeaveAllModals();
void FinishLeaving();
bool LeavingModals();

}  // namespace jotlet
