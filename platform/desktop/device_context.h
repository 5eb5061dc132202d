// What the toolkit draws on: a window's surface or a bitmap.
//
// Units:   logical pixels from the client area's (or the bitmap's) top left corner. Colours are 0x00BBGGRR.
// Lines:   one logical pixel wide, crisp, both ends included.
// Owns:    nothing that outlives the call that handed it out.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/desktop/bitmap.h"
#include "platform/desktop/geometry.h"

namespace jotlet {

// A face by role; a system without it uses the nearest one. Negative height: character height in pixels; positive: cell
// height. Weight 400 or 700.
struct FontDescription {
    std::string face;
    int height = -11;
    int weight = 400;
    bool underline = false;
    bool operator==(const FontDescription&) const = default;
};

class Font {
public:
    explicit Font(const FontDescription& description);
    ~Font();
    Font(const Font&) = delete;
    Font& operator=(const Font&) = delete;
    struct Data;
    const Data& GetData() const { return *data; }

private:
    std::unique_ptr<Data> data;
};

// Flags of DrawText; the numbers are those that stored draw flags use.
enum TextFlags : std::uint32_t {
    kTextLeft = 0,
    kTextTop = 0,
    kTextCentre = 1,
    kTextRight = 2,
    kTextVCentre = 4,
    kTextBottom = 8,
    kTextWordBreak = 16,
    kTextSingleLine = 32,
    kTextNoClip = 256,
    kTextNoPrefix = 2048,
    kTextEndEllipsis = 32768,
};

class DeviceContext {
public:
    virtual ~DeviceContext() = default;

    virtual void FillRect(const Rect& area, Colour colour) = 0;
    // The one-pixel outline of `area`, inside it.
    virtual void FrameRect(const Rect& area, Colour colour) = 0;
    // The same with a repeated pattern bitmap as brush, aligned to the area's corner.
    virtual void FrameRectPattern(const Rect& area, const Bitmap& pattern) = 0;
    virtual void DrawLine(int x1, int y1, int x2, int y2, Colour colour) = 0;

    // Text is UTF-8; bytes that are not show as Windows-1252 letters. Transparent background. One line or wrapped,
    // placed and cut as `flags` (TextFlags) say. Returns the height used.
    virtual int DrawText(const Rect& area, std::string_view text, const Font& font, Colour colour,
                         std::uint32_t flags) = 0;
    // The same, with `mark` behind every place where `found` stands, A to Z in either case. Where the first place would
    // not be seen the text is shown from there on, an ellipsis before it.
    virtual int DrawMarkedText(const Rect& area, std::string_view text, std::string_view found, const Font& font,
                               Colour colour, Colour mark, std::uint32_t flags) = 0;
    virtual Size MeasureText(std::string_view text, const Font& font) const = 0;
    virtual Size MeasureWrapped(std::string_view text, const Font& font, int width) const = 0;
    virtual int FontHeight(const Font& font) const = 0;  // line height, external leading included

    virtual void DrawBitmap(const Bitmap& bitmap, int x, int y) = 0;
    virtual void StretchBitmap(const Bitmap& bitmap, const Rect& area) = 0;
    // An icon of the program (resource group) at its small size, or at `size`.
    virtual void DrawIcon(int iconId, int x, int y, int size = 16) = 0;

    virtual void SetClip(const Rect& area) = 0;
    virtual void ClearClip() = 0;

    // A dotted rectangle that shows where the keyboard focus is.
    virtual void DrawFocusRect(const Rect& area, Colour colour) = 0;
};

// Draws into a bitmap instead of a window.
std::unique_ptr<DeviceContext> MakeBitmapContext(Bitmap& bitmap);

}  // namespace jotlet
