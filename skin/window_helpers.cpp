#include "skin/window_helpers.h"

#include <algorithm>
#include <string>

#include "platform/base/files.h"
#include "platform/base/paths.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "platform/desktop/system_metrics.h"
#include "resources/string_table.h"

namespace jotlet {
namespace {

constexpr std::string_view kCaption = "Pinwell";
constexpr std::size_t kMessageBytes = 255;

std::string MessageText(int stringId)
{
    return std::string(LoadStringResource(stringId).substr(0, kMessageBytes));
}

Point Middle(const Rect& r)
{
    return {r.left + r.Width() / 2, r.top + r.Height() / 2};
}

}  // namespace

void RectToScreen(WindowHandle window, Rect& rect)
{
    const Point topLeft = ClientToScreen(window, {rect.left, rect.top});
    const Point bottomRight = ClientToScreen(window, {rect.right, rect.bottom});
    rect = {topLeft.x, topLeft.y, bottomRight.x, bottomRight.y};
}

Point CentredPlace(const Rect& owner, Size window, const Rect& desktop)
{
    Point place{owner.left + owner.Width() / 2 - window.width / 2, owner.top + owner.Height() / 2 - window.height / 2};
    place.x = std::min(place.x, desktop.right - window.width);
    place.y = std::min(place.y, desktop.bottom - window.height);
    // Too large for the desktop: its left top corner stays reachable.
    return {std::max(place.x, desktop.left), std::max(place.y, desktop.top)};
}

void CentreOver(WindowHandle owner, WindowHandle window)
{
    const Rect whole = WindowRect(window);
    const Rect ownerRect = IsWindow(owner) ? WindowRect(owner) : DesktopRect(Middle(whole));
    const Point place = CentredPlace(ownerRect, {whole.Width(), whole.Height()}, DesktopRect(Middle(ownerRect)));
    MoveTo(window, Rect::At(place.x, place.y, whole.Width(), whole.Height()), false);
}

void ShowTextMessage(WindowHandle owner, std::string_view text)
{
    ShowBox(owner, text, kCaption, BoxIcon::Information, BoxButtons::Ok);
}

void ShowMessage(WindowHandle owner, int stringId)
{
    ShowTextMessage(owner, MessageText(stringId));
}

bool AskYesNo(WindowHandle owner, int stringId)
{
    return ShowBox(owner, MessageText(stringId), kCaption, BoxIcon::Question, BoxButtons::YesNo) == Answer::Yes;
}

void OpenDocument(std::string_view pathOrUrl)
{
    OpenWithDesktop(pathOrUrl);
}

void OpenMail(std::string_view address)
{
    OpenWithDesktop("mailto:" + std::string(address));
}

void OpenHelpPage(std::string_view page, bool /*useShell*/)
{
    const std::string path = GetHelpFilePath(page);
    if (FileExists(path) != 1) {
        ShowTextMessage(0, "Help file '" + path + "'\r\ndoes not exist.");
        return;
    }
    // The desktop's viewer serves both kinds of call: pages are plain HTML.
    OpenWithDesktop(path);
}

}  // namespace jotlet
