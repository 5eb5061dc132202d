// Settings and notes of versions that kept them beside the program.
#pragma once

namespace jotlet {

// Copies them to the data folder, which is then used from there on: Works with its notes, the contact book, both
// settings files. Nothing in the old place is changed. Does so while the data folder holds no settings of this program,
// so once; a copy that fails is left out, and a default file in the old place is then still opened there. Before
// anything else reads a setting.
void TakeOverOldPlace();

}  // namespace jotlet
