// Geometry and colours shared by everything that has a window.
//
// Units: logical pixels; a window on a screen of scale 2 has twice as many device pixels and the same logical ones.
#pragma once

#include <cstdint>
#include <iosfwd>

namespace jotlet {

struct Point {
    int x = 0;
    int y = 0;
    bool operator==(const Point&) const = default;
};

struct Size {
    int width = 0;
    int height = 0;
    bool operator==(const Size&) const = default;
};

// Half open: `right` and `bottom` lie just outside.
struct Rect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    static constexpr Rect At(int x, int y, int width, int height) { return {x, y, x + width, y + height}; }
    constexpr int Width() const { return right - left; }
    constexpr int Height() const { return bottom - top; }
    constexpr bool Empty() const { return right <= left || bottom <= top; }
    constexpr bool Contains(Point p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }
    constexpr Rect Moved(int dx, int dy) const { return {left + dx, top + dy, right + dx, bottom + dy}; }
    // Each edge moved inwards by its argument; negative ones widen.
    constexpr Rect Inset(int l, int t, int r, int b) const { return {left + l, top + t, right - r, bottom - b}; }
    constexpr Rect Inset(int dx, int dy) const { return Inset(dx, dy, dx, dy); }
    bool operator==(const Rect&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Point& p);
std::ostream& operator<<(std::ostream& out, const Size& s);
std::ostream& operator<<(std::ostream& out, const Rect& r);

// 0x00BBGGRR: red in the low byte.
using Colour = std::uint32_t;

// "No colour given", wherever a colour is optional.
inline constexpr Colour kNoColour = 0xFFFFFFFF;
// The key colour that glyph bitmaps use for "see through".
inline constexpr Colour kMagenta = 0xFF00FF;

constexpr Colour Rgb(int red, int green, int blue)
{
    return static_cast<Colour>((red & 255) | (green & 255) << 8 | (blue & 255) << 16);
}
constexpr int RedOf(Colour c)
{
    return static_cast<int>(c & 255);
}
constexpr int GreenOf(Colour c)
{
    return static_cast<int>(c >> 8 & 255);
}
constexpr int BlueOf(Colour c)
{
    return static_cast<int>(c >> 16 & 255);
}

}  // namespace jotlet
