#include "cli/note_output.h"

#include <nlohmann/json.hpp>

#include "cli/note_values.h"
#include "cli/outcome.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

using Json = nlohmann::ordered_json;

template <std::size_t Size>
std::string Shown(const std::array<char, Size>& field)
{
    return DecodeForDisplay(FieldText(field));
}

template <std::size_t Size>
std::string OneLine(const std::array<char, Size>& field)
{
    return PlainText(FieldText(field), Lines::Join);
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

std::string Line(std::string_view label, std::string_view value)
{
    std::string line(label);
    line.resize(14, ' ');
    return line.append(value) += '\n';
}

}  // namespace

Json NoteToJson(const NoteRecord& note, RecordAddress address)
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

std::string NoteLine(const NoteRecord& note)
{
    return FormatId(note.uniqueId) + '\t' + FormatIsoDate(note.date).value_or("-") + '\t' + FormatColour(note.colour) +
           '\t' + OneLine(note.category) + '\t' + OneLine(note.title) + '\n';
}

std::string NotePage(const NoteRecord& note)
{
    std::string page = Line("Id:", FormatId(note.uniqueId));
    page += Line("Title:", OneLine(note.title));
    page += Line("Date:", FormatIsoDate(note.date).value_or("-"));
    page += Line("Category:", OneLine(note.category));
    page += Line("Colour:", FormatColour(note.colour));
    if (note.confidential != 0)
        page += Line("Confidential:", "yes");
    if (note.locked != 0)
        page += Line("Locked:", "yes, somebody is editing it");
    if (note.alarmState != kAlarmNone)
        page += Line("Alarm:", FormatIsoDate(note.alarmDate).value_or("-") + ' ' +
                                   FormatIsoTime(note.alarmTime).value_or("-") +
                                   (note.alarmState == kAlarmFired ? " (has fired)" : ""));
    if (HasAttachment(note))
        page += Line("Attachment:", OneLine(note.attachmentPath));
    if (note.subject[0] != 0)
        page += Line("Event:", OneLine(note.subject));
    return page + '\n' + PlainText(FieldText(note.text), Lines::Keep) + '\n';
}

std::string JsonText(const Json& json)
{
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace jotlet
