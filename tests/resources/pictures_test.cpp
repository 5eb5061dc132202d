// The pictures, skins, sounds and desktop files that ship with the program, read as plain bytes.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace jotlet {
namespace {

namespace fs = std::filesystem;

const fs::path kResources = fs::path(JOTLET_SOURCE_DIR) / "resources";
const fs::path kPictures = kResources / "pictures";
const fs::path kBeside = kResources / "beside";

std::string ReadAll(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// An unsigned number of `bytes` bytes at `at`; 0 past the end, which no check below takes for a good value.
uint32_t Little(const std::string& data, size_t at, int bytes)
{
    uint32_t value = 0;
    for (int i = bytes - 1; i >= 0 && at + bytes <= data.size(); --i)
        value = value << 8 | static_cast<unsigned char>(data[at + i]);
    return value;
}

uint32_t Big(const std::string& data, size_t at)
{
    uint32_t value = 0;
    for (int i = 0; i < 4 && at + 4 <= data.size(); ++i)
        value = value << 8 | static_cast<unsigned char>(data[at + i]);
    return value;
}

struct Extent {
    uint32_t width = 0;
    uint32_t height = 0;
    bool operator==(const Extent&) const = default;
};
std::ostream& operator<<(std::ostream& out, const Extent& e)
{
    return out << e.width << " x " << e.height;
}

// What a PNG file says of itself; 0 x 0 for anything else.
Extent PngExtent(const std::string& name)
{
    const std::string data = ReadAll(kPictures / (name + ".png"));
    if (data.substr(0, 8) != "\x89PNG\r\n\x1a\n" || data.substr(12, 4) != "IHDR")
        return {};
    return {Big(data, 16), Big(data, 20)};
}

const std::map<std::string, Extent> kDrawings{{"close_button1", {15, 15}},
                                              {"close_button2", {15, 15}},
                                              {"close_button3", {15, 15}},
                                              {"maximize_button1", {15, 15}},
                                              {"maximize_button2", {15, 15}},
                                              {"maximize_button3", {15, 15}},
                                              {"minimize_button1", {15, 15}},
                                              {"minimize_button2", {15, 15}},
                                              {"minimize_button3", {15, 15}},
                                              {"tbar1", {556, 25}},
                                              {"tbar1_corner", {13, 25}},
                                              {"tbar2", {556, 26}},
                                              {"tbar2_corner", {13, 26}},
                                              {"section_button_up", {73, 19}},
                                              {"section_button_down", {73, 19}},
                                              {"splash", {261, 226}},
                                              {"recicle1", {42, 41}},
                                              {"recicle2", {42, 41}},
                                              {"4000", {107, 189}},
                                              {"5000", {29, 29}},
                                              {"2021", {137, 11}},
                                              {"2022", {275, 13}},
                                              {"4005", {272, 18}},
                                              {"cur_hand1", {32, 32}},
                                              {"cur_drag_true", {32, 32}},
                                              {"cur_drag_true_copy", {32, 32}},
                                              {"cur_drag_stop", {32, 32}}};

const std::map<std::string, Extent> kGlyphs{
    {"2001", {10, 8}}, {"2002", {10, 8}},  {"2003", {8, 10}},  {"2004", {8, 10}},  {"2005", {8, 8}},
    {"2010", {8, 8}},  {"2011", {21, 13}}, {"2012", {51, 18}}, {"2013", {28, 25}}, {"2014", {10, 8}},
    {"2017", {8, 9}},  {"2018", {8, 9}},   {"3500", {8, 4}},   {"3501", {8, 4}}};

TEST(Pictures, DrawingsHaveTheirExactSizeAndTwiceItForSharpScreens)
{
    for (const auto& [name, extent] : kDrawings) {
        EXPECT_EQ(PngExtent(name), extent) << name;
        EXPECT_EQ(PngExtent(name + "@2x"), (Extent{2 * extent.width, 2 * extent.height})) << name;
    }
}

// A recoloured glyph made at another scale would be blended, and its key colours no longer be found.
TEST(Pictures, GlyphsHaveTheirExactSizeAndNoSecondScale)
{
    for (const auto& [name, extent] : kGlyphs) {
        EXPECT_EQ(PngExtent(name), extent) << name;
        EXPECT_FALSE(fs::exists(kPictures / (name + "@2x.png"))) << name;
    }
}

// All colours of a picture that was stored without compression: one block behind the header chunk.
std::set<std::string> ColoursOf(const std::string& name)
{
    const std::string data = ReadAll(kPictures / (name + ".png"));
    const auto [width, height] = PngExtent(name);
    const size_t pixels = 48;
    if (data.substr(24, 2) != std::string("\x08\x02") || data.size() < pixels + (3 * width + 1) * height)
        return {"not stored as 24 bit pixels"};
    std::set<std::string> colours;
    for (size_t y = 0; y < height; ++y)
        for (size_t x = 0; x < width; ++x) {
            char text[8];
            const auto* p = reinterpret_cast<const unsigned char*>(&data[pixels + y * (3 * width + 1) + 1 + 3 * x]);
            std::snprintf(text, sizeof text, "#%02x%02x%02x", p[0], p[1], p[2]);
            colours.insert(text);
        }
    return colours;
}

// The program finds these colours by exact comparison; a blended edge would keep a fringe of magenta.
TEST(Pictures, GlyphsHoldOnlyTheKeyColoursThatTheProgramReplaces)
{
    using Set = std::set<std::string>;
    const std::string back = "#ff00ff", black = "#000000", white = "#ffffff", accent = "#ff0000";
    for (const char* name : {"2001", "2002", "2003", "2004", "2005"})
        EXPECT_EQ(ColoursOf(name), (Set{back, black})) << name;
    for (const char* name : {"3500", "3501"})
        EXPECT_EQ(ColoursOf(name), (Set{back, white})) << name;
    EXPECT_EQ(ColoursOf("2010"), (Set{black, white}));
    EXPECT_EQ(ColoursOf("2011"), (Set{back, "#00ff00", black}));
    EXPECT_EQ(ColoursOf("2012"), (Set{back, "#c0c0c0", accent, white}));
    EXPECT_EQ(ColoursOf("2013"), (Set{back, accent, white, black}));
    for (const char* name : {"2014", "2017", "2018"}) {
        const Set colours = ColoursOf(name);
        EXPECT_TRUE(colours.contains(back) && colours.size() >= 2) << name;
        for (const std::string& colour : colours)  // nothing that is nearly the key
            EXPECT_TRUE(colour == back || colour.substr(1, 2) < "f0" || colour.substr(5, 2) < "f0") << name << colour;
    }
}

TEST(Pictures, ProgramAndNoteFileHaveAnIconForEverySizeOfTheDesktop)
{
    for (const std::string icon : {"icon_1000", "icon_1001"}) {
        for (const uint32_t size : {16u, 24u, 32u, 48u, 64u, 128u, 256u})
            EXPECT_EQ(PngExtent(icon + "_" + std::to_string(size)), (Extent{size, size})) << icon;
        EXPECT_NE(ReadAll(kPictures / (icon + ".svg")).find("<svg"), std::string::npos) << icon;
    }
}

TEST(Pictures, IconsOfTheBarsAreMadeForBothScales)
{
    for (const auto& [icon, side] :
         std::map<int, uint32_t>{{2000, 16}, {2001, 16}, {2002, 16}, {2003, 16}, {2004, 16}, {2005, 16}, {3000, 12}})
        for (const uint32_t size : {side, 2 * side})
            EXPECT_EQ(PngExtent("icon_" + std::to_string(icon) + "_" + std::to_string(size)), (Extent{size, size}));
}

TEST(Pictures, EveryPictureIsListedForTheProgram)
{
    const std::string list = ReadAll(kResources / "pictures.qrc");
    EXPECT_NE(list.find("prefix=\"/pictures\""), std::string::npos);
    std::set<std::string> names{"cursors.txt"};
    for (const auto& entry : fs::directory_iterator(kPictures))
        if (entry.path().extension() == ".png")
            names.insert(entry.path().filename());
    for (const std::string& name : names)
        EXPECT_NE(list.find("alias=\"" + name + "\""), std::string::npos) << name;
    // and nothing is listed that is not there, which would break the build
    for (size_t at = list.find("<file"); at != std::string::npos; at = list.find("<file", at + 1)) {
        const size_t start = list.find('>', at) + 1;
        const std::string file = list.substr(start, list.find('<', start) - start);
        EXPECT_TRUE(fs::is_regular_file(kResources / file)) << file;
    }
}

TEST(Pictures, EveryCursorPointsAtAPixelOfItsOwn)
{
    std::istringstream lines(ReadAll(kPictures / "cursors.txt"));
    std::set<std::string> seen;
    std::string name;
    for (int x = -1, y = -1; lines >> name >> x >> y;) {
        EXPECT_EQ(PngExtent(name), (Extent{32, 32})) << name;
        EXPECT_TRUE(x >= 0 && x < 32 && y >= 0 && y < 32) << name;
        seen.insert(name);
    }
    EXPECT_EQ(seen, (std::set<std::string>{"cur_hand1", "cur_drag_true", "cur_drag_true_copy", "cur_drag_stop"}));
}

using Keys = std::map<std::string, std::string>;

Keys ReadSkin(const fs::path& path)
{
    Keys keys;
    std::istringstream lines(ReadAll(path));
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (const size_t at = line.find('='); at != std::string::npos)
            keys[line.substr(0, at)] = line.substr(at + 1);
    }
    return keys;
}

std::vector<fs::path> Skins()
{
    std::vector<fs::path> skins;
    for (const auto& entry : fs::directory_iterator(kBeside / "Styles"))
        if (entry.path().extension() == ".ini")
            skins.push_back(entry.path());
    return skins;
}

using Triple = std::array<int, 3>;

Triple ParseColour(const std::string& text)
{
    Triple c{-1, -1, -1};
    char comma = 0;
    std::istringstream(text) >> c[0] >> comma >> c[1] >> comma >> c[2];
    return c;
}

double Luminance(const Triple& colour)
{
    const auto linear = [](int v) {
        const double s = v / 255.0;
        return s <= 0.03928 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour[0]) + 0.7152 * linear(colour[1]) + 0.0722 * linear(colour[2]);
}

double Contrast(const Triple& a, const Triple& b)
{
    const double la = Luminance(a), lb = Luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

struct Bmp {
    std::string data;
    Extent extent;
    // 24 bit, not compressed, with all of its rows in the file.
    bool sane = false;
    Triple Pixel(uint32_t x, uint32_t y) const
    {
        const size_t stride = (extent.width * 3 + 3) / 4 * 4;
        const size_t at = Little(data, 10, 4) + (extent.height - 1 - y) * stride + 3 * x;
        return {static_cast<int>(Little(data, at + 2, 1)), static_cast<int>(Little(data, at + 1, 1)),
                static_cast<int>(Little(data, at, 1))};
    }
};

Bmp ReadBmp(const fs::path& path)
{
    Bmp bmp{ReadAll(path), {}, false};
    bmp.extent = {Little(bmp.data, 18, 4), Little(bmp.data, 22, 4)};
    const size_t stride = (bmp.extent.width * 3 + 3) / 4 * 4;
    bmp.sane = bmp.data.substr(0, 2) == "BM" && Little(bmp.data, 2, 4) == bmp.data.size() &&
               Little(bmp.data, 28, 2) == 24 && Little(bmp.data, 30, 4) == 0 &&
               bmp.data.size() == Little(bmp.data, 10, 4) + stride * bmp.extent.height;
    return bmp;
}

TEST(Skins, TheDefaultAndAtLeastFiveOthersAreOffered)
{
    EXPECT_EQ(ReadSkin(kBeside / "Styles" / "1_Metallic.ini")["name"], "Metallic");
    std::set<std::string> names;
    for (const fs::path& skin : Skins()) {
        EXPECT_TRUE(ReadAll(skin).starts_with("[Preference]")) << skin;
        names.insert(ReadSkin(skin)["name"]);
    }
    EXPECT_GE(names.size(), 6u);
    EXPECT_FALSE(names.contains(""));
}

TEST(Skins, EveryBitmapIsThereInTheSizeOfTheFrame)
{
    std::map<std::string, Extent> parts{
        {"bmpTitle_left", {4, 22}}, {"bmpTitle_right", {4, 22}}, {"bmpResize", {11, 11}}};
    for (const std::string button : {"Close", "Restore", "Minimize"})
        for (const char* state : {"_1", "_2", "_3"})
            parts["bmpButton" + button + state] = {15, 15};
    for (const fs::path& skin : Skins()) {
        Keys keys = ReadSkin(skin);
        const fs::path folder = kBeside / "Styles" / keys["folder"];
        for (const auto& [key, extent] : parts) {
            const Bmp bmp = ReadBmp(folder / keys[key]);
            EXPECT_TRUE(bmp.sane) << skin << key;
            EXPECT_EQ(bmp.extent, extent) << skin << key;
        }
        // stretched sideways only
        const Bmp title = ReadBmp(folder / keys["bmpTitle"]), bar = ReadBmp(folder / keys["bmpSubTitle"]);
        EXPECT_TRUE(title.sane && bar.sane) << skin;
        EXPECT_EQ(title.extent.height, 23u) << skin;
        EXPECT_EQ(bar.extent.height, 25u) << skin;
        EXPECT_TRUE(title.extent.width >= 64 && bar.extent.width >= 64) << skin;
    }
}

// Three decimal numbers of one byte each; 0x000005 is the value that stands for "not set".
TEST(Skins, EveryColourIsGivenAndCanBeToldFromUnset)
{
    for (const fs::path& skin : Skins()) {
        Keys keys = ReadSkin(skin);
        for (const std::string key : {"Back", "BackUp", "BackDown", "Title", "TitleUp", "TitleDown", "Frame", "FrameUp",
                                      "FrameDown", "TextTitle", "PanelFrame"}) {
            const Triple colour = ParseColour(keys["color" + key]);
            EXPECT_TRUE(std::ranges::all_of(colour, [](int v) { return v >= 0 && v <= 255; })) << skin << key;
            EXPECT_NE(colour, (Triple{5, 0, 0})) << skin << key;
        }
    }
}

// The rows in which the title text stands, whatever the texture does there.
TEST(Skins, TheTitleCanBeReadOnItsBackground)
{
    for (const fs::path& skin : Skins()) {
        Keys keys = ReadSkin(skin);
        const Triple text = ParseColour(keys["colorTextTitle"]);
        EXPECT_GE(Contrast(text, ParseColour(keys["colorTitle"])), 4.5) << skin;
        const Bmp title = ReadBmp(kBeside / "Styles" / keys["folder"] / keys["bmpTitle"]);
        ASSERT_TRUE(title.sane) << skin;
        int poor = 0, all = 0;
        for (uint32_t y = 7; y < 19; ++y)
            for (uint32_t x = title.extent.width / 4; x < title.extent.width * 3 / 4; ++x, ++all)
                poor += Contrast(text, title.Pixel(x, y)) < 4.5;
        EXPECT_LE(poor * 100, all) << skin << ": " << poor << " of " << all << " pixels";
    }
}

struct SoundCase {
    const char* name;
    double shortest;
    double longest;
};

// Plain PCM as every sound system plays it; begins and ends in silence, or it would click.
TEST(Sounds, AreShortSoftAndNotClipped)
{
    const SoundCase cases[] = {{"add", 0.06, 0.25},    {"move", 0.06, 0.25},   {"copy", 0.06, 0.25},
                               {"delete", 0.06, 0.25}, {"bindel", 0.06, 0.25}, {"open", 0.06, 0.25},
                               {"close", 0.06, 0.25},  {"select", 0.06, 0.25}, {"chpane", 0.06, 0.25},
                               {"Chime", 1, 2.5},      {"Marimba", 1, 2.5},    {"Bell", 1, 2.5}};
    for (const auto& [name, shortest, longest] : cases) {
        const std::string data = ReadAll(kBeside / (std::string(name) + ".wav"));
        ASSERT_GT(data.size(), 44u) << name;
        EXPECT_EQ(data.substr(0, 4) + data.substr(8, 8), "RIFFWAVEfmt ") << name;
        EXPECT_EQ(Little(data, 4, 4) + 8, data.size()) << name;
        EXPECT_EQ(Little(data, 20, 2), 1u) << name;   // PCM
        EXPECT_EQ(Little(data, 22, 2), 1u) << name;   // mono
        EXPECT_EQ(Little(data, 34, 2), 16u) << name;  // bits
        EXPECT_EQ(data.substr(36, 4), "data") << name;
        const size_t samples = (data.size() - 44) / 2;
        EXPECT_EQ(Little(data, 40, 4), samples * 2) << name;
        const double seconds = static_cast<double>(samples) / Little(data, 24, 4);
        EXPECT_TRUE(seconds >= shortest && seconds <= longest) << name << ": " << seconds << " s";
        int peak = 0;
        for (size_t i = 0; i < samples; ++i)
            peak = std::max(peak, std::abs(static_cast<int16_t>(Little(data, 44 + 2 * i, 2))));
        EXPECT_TRUE(peak > 4000 && peak < 23000) << name << ": " << peak;
        EXPECT_LT(std::abs(static_cast<int16_t>(Little(data, 44, 2))), 100) << name;
        EXPECT_LT(std::abs(static_cast<int16_t>(Little(data, data.size() - 2, 2))), 100) << name;
    }
}

// What src="", href="" and url() of a page name, pages of other sites left out.
std::set<std::string> References(const std::string& page)
{
    std::set<std::string> found;
    for (const auto& [before, after] : std::map<std::string, char>{{"src=\"", '"'}, {"href=\"", '"'}, {"url(", ')'}})
        for (size_t at = page.find(before); at != std::string::npos; at = page.find(before, at + 1)) {
            const size_t start = at + before.size();
            const std::string target = page.substr(start, page.find(after, start) - start);
            if (!target.starts_with("https:"))
                found.insert(target);
        }
    return found;
}

TEST(Help, EveryLinkAndIllustrationOfThePagesLeadsSomewhere)
{
    for (const char* name : {"notes.htm", "kestrel.htm"}) {
        const std::string page = ReadAll(kBeside / "Help" / name);
        EXPECT_TRUE(page.starts_with("<!DOCTYPE html>")) << name;
        int drawings = 0;
        for (const std::string& target : References(page)) {
            drawings += target.ends_with(".svg") || target.ends_with(".png");
            if (target.starts_with("#"))
                EXPECT_NE(page.find("id=\"" + target.substr(1) + "\""), std::string::npos) << name << target;
            else
                EXPECT_TRUE(fs::is_regular_file(kBeside / "Help" / target)) << name << target;
        }
        EXPECT_GT(drawings, 0) << name;
    }
}

}  // namespace
}  // namespace jotlet
