// Modules with heavy libraries, loaded when they are first needed. They stand beside the program, or in its library
// folder once it is installed.
#pragma once

namespace jotlet {

// The function's address, or null when the module is missing or does not load.
void* FindPluginFunction(const char* module, const char* function);

// Lets Qt find its own kind of plugin there, such as "wayland-decoration-client/jotlet_decoration". False when it is
// missing.
bool OfferPlugin(const char* module);

}  // namespace jotlet
