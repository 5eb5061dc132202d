// MarlinSpinButton: a little button with a glyph that repeats while it is held: at the press, after 500 ms, and then
// every 25 ms. It sends its id to the parent with the button (MarlinSpinButton*) in lParam.
#pragma once

#include "toolkit/marlin_wnd.h"

namespace jotlet {

// What the glyphs 1 to 5 show; any other number shows nothing.
inline constexpr int kGlyphUp = 1;
inline constexpr int kGlyphDown = 2;
inline constexpr int kGlyphLeft = 3;
inline constexpr int kGlyphRight = 4;
inline constexpr int kGlyphDot = 5;

class MarlinSpinButton : public MarlinWnd {
public:
    // The glyph is the id, too.
    MarlinSpinButton(int glyph, Colour colour) : MarlinSpinButton(glyph, colour, glyph) {}
    MarlinSpinButton(int glyph, Colour colour, int id) : id(id), glyph(glyph), colour(colour) {}

    virtual void SetColours(Colour face, Colour glyphPart, Colour frame);
    int Id() const { return id; }
    bool IsPressed() const { return pressed; }
    // What a screen reader calls it; empty: not shown to one.
    void SetName(std::string text) { name = std::move(text); }
    // Reachable by Tab; off at first. Space and Enter then press it once.
    void EnableKeyboard() { keyboard = true; }

    void PrepareClass(WindowClass& windowClass) override;
    void OnPaint(DeviceContext& dc, const PaintInfo& paint) override;
    MessageParam OnTimer(WndMessage& record) override;
    MessageParam OnLButtonDown(WndMessage& record) override;
    MessageParam OnLButtonUp(WndMessage& record) override;
    void OnCaptureLost() override;
    MessageParam OnKeyDown(WndMessage& record) override;
    void OnFocusChanged(bool focused) override;
    void CollectTabStops(TabStops& stops) override;
    void Describe(AccessibleDescription& description) override;

protected:
    int id;
    int glyph;
    Colour colour;
    bool pressed = false;
    Colour faceColour = kNoColour;
    Colour glyphColour = kNoColour;
    Colour frameColour = kNoColour;

private:
    void Tell();

    bool firstRepeat = false;
    bool keyboard = false;
    std::string name;
};

}  // namespace jotlet
