#include "cli/note_output.h"

#include "cli/note_values.h"
#include "cli/outcome.h"
#include "platform/base/text.h"

namespace jotlet {
namespace {

template <std::size_t Size>
std::string OneLine(const std::array<char, Size>& field)
{
    return PlainText(FieldText(field), Lines::Join);
}

std::string Line(std::string_view label, std::string_view value)
{
    std::string line(label);
    line.resize(14, ' ');
    return line.append(value) += '\n';
}

}  // namespace

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

}  // namespace jotlet
