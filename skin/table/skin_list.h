// Which skins there are, and which one is chosen. A skin is an ini file in the folder `Styles` beside the program, or
// in the one in the data folder, where a user can put skins of their own; the file's name is its identity.
//
// Errors: a missing folder gives an empty list; files that are no skins are passed over.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace jotlet {

inline constexpr std::size_t kMaxSkins = 499;
inline constexpr std::string_view kDefaultSkinFile = "1_Metallic.ini";

struct SkinEntry {
    std::string skinName;  // for the user, at most 254 bytes
    std::string skinFile;  // the file name alone
};

// `<program folder>/Styles`.
std::string GetStylesFolder();

// All skins that have a name, ordered by it without regard to case; at most kMaxSkins.
std::vector<SkinEntry> ListSkins();

// "CurrSkin" of the suite's settings, cut at 259 bytes; kDefaultSkinFile when that is missing or empty. The file may be
// missing, or have another case than the one on the disk.
std::string GetCurrentSkinFile();
// Writes it; 1, or 0 when the settings cannot be written. Tell the copies afterwards.
int SetCurrentSkinFile(std::string_view skinFile);

// The number of the entry of this file, compared without regard to case; -1 when there is none.
int FindSkin(const std::vector<SkinEntry>& skins, std::string_view skinFile);

// The full path of the ini file `skinFile`, found without regard to case where the exact name is not there; the user's
// own skins come first. Empty when there is none, or when the name is more than a file name.
std::string FindSkinPath(std::string_view skinFile);

// Replaces the name of a picture by its path: `<Styles folder>/<folder>/<fileName>`, in the Styles folder of the skin
// `skinPath`. Backslashes count as '/'. A missing file is looked for without regard to case. Empty when the path would
// leave the Styles folder, or when no such regular file is there.
void GetSkinBitmapPath(std::string& fileName, std::string_view folder, std::string_view skinPath);

}  // namespace jotlet
