// The shared fonts, by role. They live from LoadSharedResources to FreeSharedResources and are never deleted by their
// users.
#pragma once

#include "platform/desktop/device_context.h"

namespace jotlet {

// `weight`: 400 or 700.
const Font& SmallFont(int weight);
const Font& SansFont(int weight);
const Font& ArialFont(int weight);
const Font& BigArialFont(int weight);
const Font& SmallLinkFont(int weight);
const Font& SansLinkFont(int weight);
const Font& ArialLinkFont(int weight);
const Font& BigArialLinkFont(int weight);

// A getter makes its font at the first call; this drops them all, before the Application ends.
void FreeFonts();

}  // namespace jotlet
