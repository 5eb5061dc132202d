#include "notes/note_cell.h"

#include <algorithm>

#include "notes/model/palette.h"
#include "platform/base/text.h"
#include "skin/drawing.h"
#include "skin/fonts.h"

namespace jotlet {
namespace {

constexpr int kMarkBitmap = 2011;
constexpr int kMarkHalfWidth = 10;
constexpr int kMarkHeight = 14;
constexpr int kMarkShade = 60;
constexpr int kAlarmBitmap = 2014;
constexpr int kConfidentialBitmap = 2017;
constexpr int kAttachmentBitmap = 2018;
constexpr int kStripHeight = 12;

constexpr Colour kMarkBackgroundKey = kMagenta;
constexpr Colour kMarkColourKey = 0x00FF00;
constexpr Colour kMarkShadeKey = 0x000000;

constexpr Colour kTitleColour = 0xFF0000;
constexpr Colour kTextColour = 0x000000;
constexpr Colour kLineColour = 0xC0C0C0;
constexpr Colour kGoneColour = 0x0000FF;
constexpr Colour kFoundMark = 0x80FFFF;

void DrawMark(DeviceContext& dc, Colour noteColour, Colour background, const Rect& inside)
{
    Bitmap mark = Bitmap::FromResource(kMarkBitmap);
    // The shade first: a black note colour must not be taken for the key.
    ReplaceColour(mark, kMarkShadeKey, Darken(noteColour, kMarkShade) | 0x01000000);
    ReplaceColour(mark, kMarkBackgroundKey, background);
    ReplaceColour(mark, kMarkColourKey, noteColour);
    DrawBitmap(dc, mark, inside.left + inside.Width() / 2 - kMarkHalfWidth, inside.top);
}

// Draws an icon of the strip and gives the width that it takes.
int DrawStripIcon(DeviceContext& dc, int id, int x, int y, int width)
{
    Bitmap icon = Bitmap::FromResource(id);
    icon.MakeTransparent(kMagenta);
    DrawBitmap(dc, icon, x, y);
    return width;
}

void DrawStrip(DeviceContext& dc, const NoteRecord& note, const Rect& strip, const NoteCellLook& look)
{
    int x = strip.left;
    if (note.confidential != 0)
        x += DrawStripIcon(dc, kConfidentialBitmap, x, strip.top + 2, 12);
    if (note.alarmState != kAlarmNone)
        x += DrawStripIcon(dc, kAlarmBitmap, x, strip.top + 3, 14);
    if (look.attachmentIcon && HasAttachment(note))
        x += DrawStripIcon(dc, kAttachmentBitmap, x, strip.top + 2, 12);
    const std::string_view category = FieldText(note.category);
    if (!category.empty()) {
        const std::string label = "[" + std::string(category) + "]";
        dc.DrawText({x, strip.top, strip.right, strip.bottom}, label, SmallFont(400), look.categoryColour,
                    kTextSingleLine | kTextVCentre | kTextEndEllipsis | kTextNoPrefix);
    }
}

}  // namespace

Rect NoteCellInside(const Rect& cell)
{
    return cell.Inset(5, 1);
}

void DrawNoteCell(DeviceContext& dc, const NoteRecord& note, Colour background, const Rect& cell,
                  const NoteCellLook& look)
{
    Rect inside = NoteCellInside(cell);
    DrawMark(dc, note.colour & 0xFFFFFF, background, inside);

    inside.top += kMarkHeight;
    const std::uint32_t ellipsis = look.titleEllipsis ? std::uint32_t{kTextEndEllipsis} : 0;
    dc.DrawMarkedText({inside.left, inside.top, inside.right, inside.top + look.titleHeight}, FieldText(note.title),
                      look.found, *look.font, kTitleColour, kFoundMark,
                      kTextCentre | kTextSingleLine | kTextNoPrefix | ellipsis);
    inside.top += look.titleHeight;
    dc.DrawLine(inside.left, inside.top - 1, inside.right - 1, inside.top - 1, kLineColour);

    const Rect body{inside.left, inside.top, inside.right, inside.bottom - kStripHeight};
    // Whole lines only: a line cut through its middle reads as dirt.
    const int line = std::max(dc.FontHeight(*look.font), 1);
    const Rect lines{body.left, body.top, body.right, body.top + body.Height() / line * line};
    dc.DrawMarkedText(lines, FieldText(note.text), look.found, *look.font, kTextColour, kFoundMark,
                      kTextCentre | kTextWordBreak | kTextNoPrefix);
    DrawStrip(dc, note, {inside.left, body.bottom, inside.right, inside.bottom}, look);
}

void DrawGoneCell(DeviceContext& dc, const Rect& cell, const NoteCellLook& look)
{
    dc.DrawText(NoteCellInside(cell), look.goneText, *look.font, kGoneColour,
                kTextCentre | kTextWordBreak | kTextEndEllipsis | kTextNoPrefix);
}

std::string DescribeNote(const NoteRecord& note)
{
    std::string words = "other colour";
    for (const PaletteColour& one : kPalette) {
        if (one.colour == note.colour)
            words = one.name;
    }
    if (note.alarmState != kAlarmNone) {
        std::string day;
        std::string time;
        const DateValue date = note.alarmDate;
        const TimeValue at = note.alarmTime;
        FormatDateValue(day, date);
        FormatTimeShort(time, at.hour, at.minute, at.halfDay);
        words += (note.alarmState == kAlarmFired ? ", past alarm " : ", alarm ") + day + " " + time;
    }
    if (note.confidential != 0)
        words += ", confidential";
    if (HasAttachment(note))
        words += ", attachment";
    if (const std::string_view category = FieldText(note.category); !category.empty())
        words += ", category " + DecodeForDisplay(category);
    return words;
}

}  // namespace jotlet
