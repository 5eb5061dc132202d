#include "notes/notes_list.h"

#include "notes/model/note_record.h"
#include "notes/note_cell.h"
#include "platform/base/text.h"
#include "resources/command_ids.h"
#include "skin/fonts.h"
#include "store/record_query.h"
#include "store/table_file.h"

namespace jotlet {

void NotesList::DrawRecordItem(TableFile& noteFile, RecordQuery& notes, DeviceContext& dc, Colour background, int index,
                               int state, const Rect& cell)
{
    if (state == kItemSelected)
        DrawSelectionFrame(dc, cell, background);
    if (state == kListEmpty)
        return;
    const NoteCellLook look{.font = &SansFont(400), .goneText = "Record is deleted by another user."};
    NoteRecord note;
    if (noteFile.ReadListedRecord(BytesOf(note), notes.Results()[static_cast<std::size_t>(index)]) == 1)
        DrawNoteCell(dc, note, background, cell, look);
    else
        DrawGoneCell(dc, cell, look);
}

std::string NotesList::ItemName(int index)
{
    NoteRecord note;
    if (!file || !query || index < 0 || index >= query->resultCount ||
        file->ReadListedRecord(BytesOf(note), query->Results()[static_cast<std::size_t>(index)]) != 1)
        return "Record is deleted by another user.";
    return DecodeForDisplay(FieldText(note.title)) + ": " + DecodeForDisplay(FieldText(note.text));
}

std::string NotesList::ItemDetail(int index)
{
    NoteRecord note;
    if (!file || !query || index < 0 || index >= query->resultCount ||
        file->ReadListedRecord(BytesOf(note), query->Results()[static_cast<std::size_t>(index)]) != 1)
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
