#include "notes/notes_list.h"

#include "notes/model/note_record.h"
#include "notes/note_cell.h"
#include "platform/base/text.h"
#include "resources/command_ids.h"
#include "skin/fonts.h"
#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {
namespace {

constexpr std::string_view kGone = "Record is deleted by another user.";

}  // namespace

void NotesList::DrawRecordItem(DeviceContext& dc, Colour background, int index, int state, const Rect& cell)
{
    if (state == kItemSelected)
        DrawSelectionFrame(dc, cell, background);
    if (state == kListEmpty)
        return;
    NoteRecord note;
    const bool isThere = ReadItem(index, BytesOf(note));
    const std::string gone = GoneText(kGone);
    const NoteCellLook look{.font = &SansFont(400), .goneText = gone};
    if (isThere)
        DrawNoteCell(dc, note, background, cell, look);
    else
        DrawGoneCell(dc, cell, look);
}

std::string NotesList::ItemName(int index)
{
    NoteRecord note;
    if (!ReadItem(index, BytesOf(note)))
        return GoneText(kGone);
    return DecodeForDisplay(FieldText(note.title)) + ": " + DecodeForDisplay(FieldText(note.text));
}

std::string NotesList::ItemDetail(int index)
{
    NoteRecord note;
    if (!ReadItem(index, BytesOf(note)))
        return {};
    return DescribeNote(note);
}

void NotesList::OnOtherKey(int virtualKey)
{
    if (virtualKey == 'D' && IsKeyDown(kKeyControl))
        RequestCommand(IsKeyDown(kKeyShift) ? kCommandCopyToDay : kCommandMoveToDay, 0);
}

void NotesList::OnCharacter(char32_t character)
{
    PostCommand(kCommandTyped, static_cast<MessageParam>(character));
}

}  // namespace jotlet
