#include "core/who_has_file.h"

#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <ranges>
#include <vector>

#include "notes/model/note_record.h"
#include "platform/base/calendar.h"
#include "platform/base/paths.h"
#include "platform/base/process_identity.h"
#include "platform/base/text.h"
#include "store/copies.h"

namespace jotlet {
namespace {

constexpr std::size_t kMostLines = 20;

bool IsThisCopy(const CopyInfo& copy)
{
    return copy.process == getpid() && copy.host == HostName();
}

std::string MomentText(std::int64_t seconds)
{
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    localtime_r(&time, &parts);
    std::string day;
    std::string hour;
    FormatDate(day, parts.tm_mday, parts.tm_mon + 1, parts.tm_year + 1900);
    FormatTime(hour, parts.tm_hour % 12, parts.tm_min, parts.tm_hour < 12 ? kBeforeNoon : kAfterNoon);
    return day + " " + hour;
}

std::string NoteText(const TableFile& file, RecordAddress address)
{
    NoteRecord note{};
    const bool isThere = file.RecordSize() == sizeof note && file.ReadRecord(BytesOf(note), address) == 1;
    const std::string title = isThere ? DecodeForDisplay(FieldText(note.title)) : "";
    if (title.empty() || (note.confidential != 0 && file.GetRole() != Role::Owner))
        return "a note";
    return "\"" + title + "\"";
}

std::string CopyText(const TableFile& file, const CopyInfo& copy)
{
    std::string text = DecodeForDisplay(copy.user) + " at " + DecodeForDisplay(copy.host);
    text += (IsThisCopy(copy) ? " (this window), since " : ", since ") + MomentText(copy.since);
    const char* before = ", editing ";
    for (const RecordAddress address : copy.editing) {
        text += before + NoteText(file, address);
        before = ", ";
    }
    return text;
}

}  // namespace

std::string WhoHasFileText(const TableFile& file)
{
    const std::vector<CopyInfo> copies = CopiesOf(file.Path());
    const std::string name = "\"" + DecodeForDisplay(GetBareFileName(file.Path())) + "\"";
    std::string text;
    if (std::ranges::none_of(copies, IsThisCopy))
        text = "Not everybody who has " + name +
               " can be told: this window could not enter the list that is kept beside the file.";
    else if (copies.size() == 1)
        text = "Nobody else has " + name + " open.";
    else
        text = name + " is open in " + std::to_string(copies.size()) + " windows:";
    for (const CopyInfo& copy : copies | std::views::take(kMostLines))
        text += "\r\n" + CopyText(file, copy);
    if (copies.size() > kMostLines)
        text += "\r\nand " + std::to_string(copies.size() - kMostLines) + " more";
    return text;
}

}  // namespace jotlet
