// Pictures: bitmaps from the program's resources or from files, and icons. No handle outlives its object.
//
// A picture has logical pixels; one that was made at twice the size ("@2x") shows sharp on a screen of scale 2 and is
// fitted smoothly to scales between, any other is enlarged pixel by pixel.
#pragma once

#include <memory>
#include <string_view>

#include "platform/desktop/geometry.h"

namespace jotlet {

class Bitmap {
public:
    Bitmap();  // none
    ~Bitmap();
    Bitmap(Bitmap&&) noexcept;
    Bitmap& operator=(Bitmap&&) noexcept;
    Bitmap(const Bitmap&);  // a copy has pixels of its own
    Bitmap& operator=(const Bitmap&);

    // Empty bitmap of a size, all black.
    explicit Bitmap(Size size);
    // A picture of the program: "tbar1.bmp", or "2011" for a numbered one. None when there is no such picture.
    static Bitmap FromResource(std::string_view name);
    static Bitmap FromResource(int id);
    // A BMP (or PNG) file; none when it cannot be read. Files with sides over 4096 pixels are refused, and those of
    // more than `pixelsLeft` pixels; what is read is taken off it. So a small file never asks for much memory, and many
    // together don't either.
    static Bitmap FromFile(std::string_view path, int& pixelsLeft);

    bool IsNone() const;
    explicit operator bool() const { return !IsNone(); }
    Size GetSize() const;
    Colour Pixel(Point p) const;  // kNoColour outside or where fully transparent
    // Every pixel of exactly `from` becomes `to`. 1 when done or when the two are equal, 0 for no bitmap.
    int Replace(Colour from, Colour to);
    // Every pixel of exactly `key` becomes see-through.
    int MakeTransparent(Colour key);

    struct Data;
    const Data* GetData() const { return data.get(); }

private:
    std::unique_ptr<Data> data;
};

}  // namespace jotlet
