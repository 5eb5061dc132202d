#include "notes/open_target.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <string>

#include "notes/model/start_target.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/shell.h"
#include "skin/window_helpers.h"

namespace jotlet {
namespace {

bool EndsIn(std::string_view path, std::string_view extension)
{
    const auto isSame = [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; };
    return path.size() >= extension.size() && std::equal(extension.rbegin(), extension.rend(), path.rbegin(),
                                                         [&](char b, char a) { return isSame(a, b); });
}

}  // namespace

bool MayRun(std::string_view path)
{
    if (EndsIn(path, ".desktop") || EndsIn(path, ".jar"))
        return true;
    const std::string file(path);
    std::error_code error;
    return std::filesystem::is_regular_file(file, error) && access(file.c_str(), X_OK) == 0;
}

void OpenTarget(WindowHandle owner, std::string_view pathOrUrl)
{
    const std::string shown = "\"" + WithHiddenCharactersShown(pathOrUrl) + "\"";
    const std::string question = "This note names a program:\r\n" + shown +
                                 "\r\nA program can do anything that you can do, also harm. Start it only if you know "
                                 "who wrote it here.\r\n\r\nStart it?";
    if (MayRun(LocalTarget(pathOrUrl)) &&
        ShowBox(owner, question, "Pinwell", BoxIcon::Warning, BoxButtons::CancelOk) != Answer::Ok)
        return;
    if (!OpenWithDesktop(pathOrUrl))
        ShowTextMessage(owner, shown +
                                   "\r\ncannot be opened. Check that it is still there and that a program for it "
                                   "is installed.");
}

}  // namespace jotlet
