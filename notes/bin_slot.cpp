#include "notes/bin_slot.h"

namespace jotlet {

RecordHolder& BinSlot()
{
    // The bin and the clipboard outlive the board's file.
    static RecordHolder slot;
    return slot;
}

RecordHolder& NoteClipboard()
{
    static RecordHolder clipboard;
    return clipboard;
}

void RememberDeletedNote(const NoteRecord& record)
{
    BinSlot().Store(BytesOf(record), 0);
}

bool RestoreDeletedNote(NoteRecord& record)
{
    std::uint32_t size = 0;
    return BinSlot().GetSize(size) == 1 && size == sizeof record && BinSlot().Fetch(BytesOf(record)) == 1;
}

}  // namespace jotlet
