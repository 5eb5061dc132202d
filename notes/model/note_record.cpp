#include "notes/model/note_record.h"

#include "platform/base/text.h"

namespace jotlet {

void InitNoteRecord(const TableFile& file, NoteRecord& note, const Clock& clock)
{
    note = {};
    InitRecordHeader(file, note, kNoteRecordSize, clock);
}

bool HasAttachment(const NoteRecord& note)
{
    return note.attachmentKind != kAttachmentNone && !FieldText(note.attachmentPath).empty();
}

int IsSameNote(const NoteRecord& first, const NoteRecord& second)
{
    const bool same = first.colour == second.colour && FieldText(first.title) == FieldText(second.title) &&
                      FieldText(first.text) == FieldText(second.text);
    return same ? 0 : -1;
}

}  // namespace jotlet
