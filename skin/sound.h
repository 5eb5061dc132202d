// The program's sounds and the three switches of its effects.
#pragma once

#include <string_view>

namespace jotlet {

// All three start on.
void SetSoundEnabled(int value);
void SetAnimationEnabled(int value);
void SetSplashEnabled(int value);
int IsSoundEnabled();
int IsAnimationEnabled();
int IsSplashEnabled();

// Plays a file beside the program, without waiting, when sound is enabled. A missing file plays nothing.
void PlaySoundFile(std::string_view fileName);

}  // namespace jotlet
