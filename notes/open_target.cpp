#include "notes/open_target.h"

#include <strings.h>
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

// A path from the root, "scheme:" of two letters or more, or the beginning that only addresses have. Any other name
// would be tried as one of a server.
bool IsFullName(std::string_view text)
{
    const auto isSchemeLetter = [](unsigned char c) { return std::isalnum(c) || c == '+' || c == '-' || c == '.'; };
    const auto end = std::find_if_not(text.begin(), text.end(), isSchemeLetter);
    return (end != text.end() && *end == ':' && end - text.begin() > 1) || text.starts_with('/') ||
           (text.size() > 4 && strncasecmp(text.data(), "www.", 4) == 0);
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

void OpenTarget(WindowHandle owner, std::string_view pathOrUrl, TargetKind kind)
{
    const std::string shown = "\"" + WithHiddenCharactersShown(pathOrUrl) + "\"";
    const std::string question = "This note names a program:\r\n" + shown +
                                 "\r\nA program can do anything that you can do, also harm. Start it only if you know "
                                 "who wrote it here.\r\n\r\nStart it?";
    const std::string local = LocalTarget(pathOrUrl);
    const bool isMissing = local.empty() && kind == TargetKind::Document && !IsFullName(pathOrUrl);
    if (MayRun(local) && ShowBox(owner, question, "Pinwell", BoxIcon::Warning, BoxButtons::CancelOk) != Answer::Ok)
        return;
    if (isMissing || !OpenWithDesktop(pathOrUrl))
        ShowTextMessage(owner, shown +
                                   "\r\ncannot be opened. Check that it is still there and that a program for it "
                                   "is installed.");
}

}  // namespace jotlet
