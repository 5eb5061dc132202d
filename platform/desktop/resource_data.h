// Files that the program carries in itself and hands out as they are.
#pragma once

#include <string>
#include <string_view>

namespace jotlet {

// What the program tells the desktop about itself: "jotlet.desktop.in", "jotlet-mime.xml", "icon_1000.svg",
// "icon_1001.svg". Empty when there is no such file.
std::string DesktopResource(std::string_view name);

}  // namespace jotlet
