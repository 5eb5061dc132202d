#include "skin/fonts.h"

#include <array>
#include <memory>

namespace jotlet {
namespace {

struct Face {
    std::string_view name;
    int height;
    bool underline;
};

constexpr std::array kFaces = {
    Face{"Small Fonts", -9, false}, Face{"MS Sans Serif", -11, false}, Face{"Arial", 20, false},
    Face{"Arial", 35, false},       Face{"Small Fonts", -9, true},     Face{"MS Sans Serif", -11, true},
    Face{"Arial", 20, true},        Face{"Arial", 35, true},
};

// A slot for 400 and one for 700 of each face.
std::array<std::unique_ptr<Font>, kFaces.size() * 2> slots;

const Font& Shared(std::size_t face, int weight)
{
    auto& slot = slots[face * 2 + (weight == 400 ? 0 : 1)];
    if (!slot) {
        const Face& wanted = kFaces[face];
        slot =
            std::make_unique<Font>(FontDescription{std::string(wanted.name), wanted.height, weight, wanted.underline});
    }
    return *slot;
}

}  // namespace

const Font& SmallFont(int weight)
{
    return Shared(0, weight);
}
const Font& SansFont(int weight)
{
    return Shared(1, weight);
}
const Font& ArialFont(int weight)
{
    return Shared(2, weight);
}
const Font& BigArialFont(int weight)
{
    return Shared(3, weight);
}
const Font& SmallLinkFont(int weight)
{
    return Shared(4, weight);
}
const Font& SansLinkFont(int weight)
{
    return Shared(5, weight);
}
const Font& ArialLinkFont(int weight)
{
    return Shared(6, weight);
}
const Font& BigArialLinkFont(int weight)
{
    return Shared(7, weight);
}

void FreeFonts()
{
    for (auto& slot : slots)
        slot.reset();
}

}  // namespace jotlet
