#include "toolkit/intro_picture.h"

namespace jotlet {
namespace {

constexpr int kPicture = 4000;
constexpr Colour kBack = 0xFFFFFF;
constexpr Colour kEdge = 0;

}  // namespace

void IntroPicture::PrepareClass(WindowClass& windowClass)
{
    windowClass.name = "IntroPicture";
    windowClass.background = Background::White;
}

void IntroPicture::OnPaint(DeviceContext& dc, const PaintInfo&)
{
    static const Bitmap picture = Bitmap::FromResource(kPicture);
    const Rect client = GetClientArea();
    const int right = client.right - 1;
    const int bottom = client.bottom - 1;
    dc.FillRect(client, kBack);
    dc.DrawBitmap(picture, 0, 0);
    dc.DrawLine(0, bottom, right, bottom, kEdge);
    dc.DrawLine(right, 0, right, bottom, kEdge);
}

void IntroPicture::Describe(AccessibleDescription& description)
{
    description.role = AccessibleRole::Picture;
    description.name = "Jotlet";
}

}  // namespace jotlet
