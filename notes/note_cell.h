// How one note looks as a cell; the board and the hits of Find share it.
#pragma once

#include <string>
#include <string_view>

#include "notes/model/note_record.h"
#include "platform/desktop/device_context.h"

namespace jotlet {

struct NoteCellLook {
    const Font* font = nullptr;  // title and text
    bool titleEllipsis = true;
    int titleHeight = 14;  // from the title's top to the line
    bool attachmentIcon = true;
    Colour categoryColour = 0xFF0000;
    std::string_view goneText;    // shown instead of a note that was deleted
    std::string_view found = {};  // text to make easy to see; empty: none
};

// `cell` without its selection frame; `background` is the colour it was filled with.
void DrawNoteCell(DeviceContext& dc, const NoteRecord& note, Colour background, const Rect& cell,
                  const NoteCellLook& look);
void DrawGoneCell(DeviceContext& dc, const Rect& cell, const NoteCellLook& look);

// What a cell shows of a note besides its title and text, in words.
std::string DescribeNote(const NoteRecord& note);

// The cell less the frame and its margin.
Rect NoteCellInside(const Rect& cell);

}  // namespace jotlet
