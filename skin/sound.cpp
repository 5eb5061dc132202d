#include "skin/sound.h"

#include "platform/base/paths.h"
#include "platform/desktop/shell.h"

namespace jotlet {
namespace {

int soundEnabled = 1;
int animationEnabled = 1;
int splashEnabled = 1;

}  // namespace

void SetSoundEnabled(int value)
{
    soundEnabled = value;
}
void SetAnimationEnabled(int value)
{
    animationEnabled = value;
}
void SetSplashEnabled(int value)
{
    splashEnabled = value;
}
int IsSoundEnabled()
{
    return soundEnabled;
}
int IsAnimationEnabled()
{
    return animationEnabled;
}
int IsSplashEnabled()
{
    return splashEnabled;
}

void PlaySoundFile(std::string_view fileName)
{
    if (soundEnabled == 1)
        PlayWave(GetProgramFilePath(fileName));
}

}  // namespace jotlet
