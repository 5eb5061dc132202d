// The panes of the program, in the order of their construction, and which one is current.
#pragma once

#include <span>
#include <string_view>

#include "platform/desktop/messages.h"

namespace jotlet {

class MarlinPane;

inline constexpr int kMaxPanes = 100;

int GetPaneCount();
int GetCurrentPaneIndex();
// 1, or 0 for an index outside the list, which is then ignored.
int SetCurrentPaneIndex(int index);
std::span<MarlinPane* const> GetPanes();
// Null while there is no pane.
MarlinPane* GetCurrentPane();
// The first pane of exactly that name, or null.
MarlinPane* FindPane(std::string_view name);
// Posts the record's message with its parameters to the pane. 1, or 0 when there is no such pane.
int PostToPane(std::string_view name, const WndMessage& record);

// Called by the panes themselves. A pane beyond the hundredth is not listed; listing one makes the first pane current.
void AddPane(MarlinPane* pane);
void RemovePane(MarlinPane* pane);

}  // namespace jotlet
