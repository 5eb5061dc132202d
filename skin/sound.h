// The program's sounds and the three switches of its effects.
#pragma once

#include <string>
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
// Where the tone of an alarm lies: one of those that ship beside the program by its bare name, anything else as it is.
std::string TonePath(std::string_view toneFile);

}  // namespace jotlet
