// Popup menus, built at each call and gone after it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/messages.h"

namespace jotlet {

struct MenuEntry {
    std::string text;  // "&New...\tCtrl+N": mnemonic and key; empty: separator
    int command = 0;
    bool greyed = false;
    bool checked = false;
};

enum class MenuButton { Left, LeftOrRight };

// Shows the menu with its left top corner at `screen` and returns after it closed. The chosen command is then posted to
// `owner` as kWmCommand (wParam the command, lParam 0).
void TrackPopupMenu(WindowHandle owner, const std::vector<MenuEntry>& entries, Point screen,
                    MenuButton choosing = MenuButton::Left);

// For tests: the next menu is not shown; `choose` gets its entries and answers with the index to pick, or nothing.
using MenuAnswer = std::optional<std::size_t> (*)(const std::vector<MenuEntry>& entries);
class ScopedMenuAnswer {
public:
    explicit ScopedMenuAnswer(MenuAnswer answer);
    ~ScopedMenuAnswer();
};

}  // namespace jotlet
