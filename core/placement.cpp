#include "core/placement.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "core/frame_geometry.h"
#include "core/process.h"
#include "platform/base/paths.h"
#include "platform/base/session.h"

namespace jotlet {
namespace {

constexpr std::string_view kSection = "Preference";
constexpr std::array<std::string_view, 4> kKeys = {"WPLeft", "WPTop", "WPRight", "WPBottom"};
// A settings file may hold anything; no screen reaches further.
constexpr int kFarthest = 100'000;

// Each copy holds one place of this many; who finds another place taken is not alone. Copies beyond them go unseen.
constexpr std::size_t kPlaces = 8;

struct CopyPlaces {
    std::array<SessionGuard, kPlaces> guards;
    std::optional<std::size_t> mine;
};

CopyPlaces& ThePlaces()
{
    // The place that this copy holds among the copies, to its end.
    static CopyPlaces places;
    return places;
}

}  // namespace

bool AnotherCopyRuns()
{
    CopyPlaces& places = ThePlaces();
    bool others = false;
    for (std::size_t i = 0; i < kPlaces; ++i) {
        if (places.mine == i)
            continue;
        const GuardResult result = places.guards[i].Take(FrameClassName() + "_copy_" + std::to_string(i));
        others |= result == GuardResult::InUse;
        if (result == GuardResult::Taken && !places.mine)
            places.mine = i;
        else
            places.guards[i].Release();
    }
    return others;
}

std::optional<Rect> SavedPlacement(DesktopAt desktopAt)
{
    if (AnotherCopyRuns())
        return std::nullopt;
    const IniFile settings = GetModuleIniPath();
    std::array<int, 4> edges{};
    for (std::size_t i = 0; i < kKeys.size(); ++i) {
        if (!settings.IniReadInt(kSection, kKeys[i], edges[i]))
            return std::nullopt;
        edges[i] = std::clamp(edges[i], -kFarthest, kFarthest);
    }
    const auto [left, top, right, bottom] = edges;
    const Rect saved = Rect::At(left, top, std::clamp(right - left, kFrameSmall.width, kFrameLarge.width),
                                std::clamp(bottom - top, kFrameSmall.height, kFrameLarge.height));
    const Rect desktop = desktopAt(FrameHold(saved));
    if (left >= desktop.right || top >= desktop.bottom)
        return std::nullopt;
    return Rect::At(std::max(left, desktop.left), std::max(top, desktop.top), saved.Width(), saved.Height());
}

void StorePlacement(const Rect& window)
{
    const std::array<int, 4> edges = {window.left, window.top, window.right, window.bottom};
    std::array<ProfileEntry, 4> entries;
    for (std::size_t i = 0; i < kKeys.size(); ++i)
        entries[i] = {kKeys[i], std::to_string(edges[i])};
    GetModuleIniPath().IniWriteTexts(kSection, entries);
}

}  // namespace jotlet
