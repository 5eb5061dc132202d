// The command line of jotctl. Its source alone knows the library that reads it.
#pragma once

#include <functional>

#include "cli/outcome.h"

namespace jotlet {

// Done, and in `chosen` what the user asked for, to be run; nothing is to be run after --help, which has been printed.
// Usage when the command line makes no sense, with the reason told.
ExitCode ReadCommandLine(int argc, char** argv, std::function<ExitCode()>& chosen);

}  // namespace jotlet
