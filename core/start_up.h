#pragma once

namespace jotlet {

// The whole life of the desktop program; the exit code of the process. An argument is the note file to open; a copy
// started with one always runs, one started without ends at once, in silence, while another such copy runs.
int RunProgram(int argc, char** argv);

}  // namespace jotlet
