#include "cli/json_output.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <nlohmann/json.hpp>
#include <utility>

#include "cli/note_values.h"
#include "cli/outcome.h"
#include "platform/base/text.h"
#include "store/passwords.h"

namespace jotlet {
namespace {

using Json = nlohmann::ordered_json;

std::string Shown(std::span<const char> field)
{
    return DecodeForDisplay(FieldText(field));
}

Json TextOrNull(const std::optional<std::string>& text)
{
    return text ? Json(*text) : Json(nullptr);
}

Json AlarmToJson(const NoteRecord& note)
{
    if (note.alarmState == kAlarmNone)
        return nullptr;
    return {{"state", note.alarmState},
            {"date", TextOrNull(FormatIsoDate(note.alarmDate))},
            {"time", TextOrNull(FormatIsoTime(note.alarmTime))},
            {"tone", Shown(note.toneFile)},
            {"start", note.startKind},
            {"target", Shown(note.startTarget)}};
}

Json AttachmentToJson(const NoteRecord& note)
{
    if (note.attachmentKind == kAttachmentNone)
        return nullptr;
    return {{"kind", note.attachmentKind}, {"path", Shown(note.attachmentPath)}};
}

Json NoteObject(const NoteRecord& note, RecordAddress address)
{
    return {{"id", FormatId(note.uniqueId)},
            {"address", address},
            {"title", Shown(note.title)},
            {"text", Shown(note.text)},
            {"category", Shown(note.category)},
            {"colour", FormatColour(note.colour)},
            {"date", TextOrNull(FormatIsoDate(note.date))},
            {"time", TextOrNull(FormatIsoTime(note.time))},
            {"confidential", note.confidential != 0},
            {"locked", note.locked != 0},
            {"alarm", AlarmToJson(note)},
            {"attachment", AttachmentToJson(note)},
            {"eventState", note.eventState},
            {"eventStatus", note.eventStatus},
            {"subject", Shown(note.subject)}};
}

std::string Dump(const Json& json)
{
    return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

// In this computer's time.
std::string IsoTime(std::int64_t seconds)
{
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    std::array<char, 32> text{};
    localtime_r(&time, &parts);
    std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    return text.data();
}

Json CopiesToJson(const std::vector<CopyInfo>& copies)
{
    Json list = Json::array();
    for (const CopyInfo& copy : copies)
        list.push_back({{"user", DecodeForDisplay(copy.user)},
                        {"host", DecodeForDisplay(copy.host)},
                        {"process", copy.process},
                        {"since", IsoTime(copy.since)},
                        {"editing", copy.editing}});
    return list;
}

// "ann@desk since 2026-11-23T08:15:00 (process 123), editing 2 notes"
std::string CopyText(const Json& copy)
{
    const std::size_t edited = copy["editing"].size();
    return copy["user"].get<std::string>() + "@" + copy["host"].get<std::string>() + " since " +
           copy["since"].get<std::string>() + " (process " + copy["process"].dump() + ")" +
           (edited == 0   ? ""
            : edited == 1 ? ", editing a note"
                          : ", editing " + std::to_string(edited) + " notes");
}

Json InfoObject(const FileInfo& info)
{
    const TableHeader& header = info.header;
    Json names = Json::array();
    for (int i = 0; i < info.categories.Count(); ++i)
        names.push_back(Shown(info.categories.entries[i].name));
    const NetworkPasswords passwords = PasswordsOf(header);
    return {{"headerSize", info.headerSize},
            {"categorySize", info.categorySize},
            {"recordSize", info.recordSize},
            {"fileType", Shown(header.fileType)},
            {"family", Shown(header.family)},
            {"version", std::uint32_t{header.version}},
            {"freeSlots", std::int32_t{header.freeSlots}},
            {"changeStamp", std::uint64_t{header.changeStamp}},
            {"openCount", std::max(std::uint32_t{header.openCount}, 1u) - 1},  // this opening is not counted
            {"slots", info.counts.slots},
            {"live", info.counts.live},
            {"locked", info.counts.locked},
            {"categories", names},
            {"passwords",
             {{"owner", !passwords.owner.empty()},
              {"assistant", !passwords.assistant.empty()},
              {"reader", !passwords.reader.empty()}}},
            {"copies", CopiesToJson(info.copies)}};
}

}  // namespace

std::string NoteJson(const NoteRecord& note, RecordAddress address)
{
    return Dump(NoteObject(note, address)) + '\n';
}

void NoteListJson::Add(const NoteRecord& note, RecordAddress address)
{
    text += text.empty() ? "[\n  " : ",\n  ";
    for (const char c : Dump(NoteObject(note, address))) {
        text += c;
        if (c == '\n')  // a line end of the form: those of texts are escaped
            text += "  ";
    }
}

std::string NoteListJson::Take()
{
    return text.empty() ? "[]\n" : std::exchange(text, {}) + "\n]\n";
}

std::string InfoJson(const FileInfo& info)
{
    return Dump(InfoObject(info)) + '\n';
}

std::string InfoText(const FileInfo& info)
{
    std::string text;
    const Json object = InfoObject(info);
    for (const auto& [name, value] : object.items()) {
        std::string line = name + ":";
        line.resize(std::max<std::size_t>(line.size() + 1, 15), ' ');
        if (name == "categories") {
            for (const auto& category : value)
                line += (&category == &value.front() ? "" : ", ") + category.get<std::string>();
        } else if (name == "passwords") {
            std::string set;
            for (const auto& [role, isSet] : value.items())
                set += isSet.get<bool>() ? (set.empty() ? "" : ", ") + role : "";
            line += set.empty() ? "none" : set;
        } else if (name == "copies") {
            for (const auto& copy : value)
                line += (&copy == &value.front() ? "" : "; ") + CopyText(copy);
            line += value.empty() ? "none listed" : "";
        } else {
            line += value.is_string() ? value.get<std::string>() : value.dump();
        }
        text += PlainText(line, Lines::Join) + '\n';
    }
    return text;
}

std::string ImportJson(std::size_t rows, std::size_t added, std::size_t dropped)
{
    return Dump(Json{{"rows", rows}, {"added", added}, {"dropped", dropped}}) + '\n';
}

}  // namespace jotlet
