#include "skin/sound.h"

#include "platform/base/files.h"
#include "platform/base/paths.h"
#include "platform/desktop/shell.h"

namespace jotlet {
namespace {

// The suite's switches, read once at the start and at another copy's word.
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

std::string TonePath(std::string_view toneFile)
{
    std::string shipped = GetProgramFilePath(toneFile);
    const bool isBare = !toneFile.empty() && toneFile.find('/') == std::string_view::npos;
    return isBare && FileExists(shipped) == 1 ? shipped : std::string(toneFile);
}

void PlaySoundFile(std::string_view fileName)
{
    if (soundEnabled == 1)
        PlayWave(GetProgramFilePath(fileName));
}

}  // namespace jotlet
