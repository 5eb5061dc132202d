// The commands of jotctl, a file a group. Each Add... declares its commands and their options on `app`; the one that
// the user named leaves what it does in `chosen`, to be run when the whole command line has been read.
#pragma once

#include <CLI/App.hpp>
#include <functional>

#include "cli/outcome.h"

namespace jotlet {

using Command = std::function<ExitCode()>;

void AddFileCommands(CLI::App& app, Command& chosen);         // new, info, check, compact
void AddPasswordCommand(CLI::App& app, Command& chosen);      // passwd
void AddReadCommands(CLI::App& app, Command& chosen);         // list, show, find
void AddChangeCommands(CLI::App& app, Command& chosen);       // add, edit, delete
void AddInterchangeCommands(CLI::App& app, Command& chosen);  // export, report, import
void AddRegisterCommand(CLI::App& app, Command& chosen);      // register

}  // namespace jotlet
