// Which note file the program starts with. No window; the module asks for passwords and tells what went wrong.
#pragma once

#include <string>
#include <string_view>

namespace jotlet {

enum class StartSource {
    AskUser,      // the user must make a file
    CommandLine,  // opened without becoming the default
    Default,      // the file used last
    FirstRun,     // to be made, with example notes, at the default place
};

struct StartFile {
    StartSource source = StartSource::AskUser;
    std::string path;  // with AskUser: the file used last, which is gone, or nothing
};

// Looks at the command line and at "DefaulFile". A command line that names no existing file counts for nothing.
StartFile FindStartFile(std::string_view commandLine, std::string_view extension);

// Settings of the module.
void StoreDefaultFile(std::string_view path);
// The box "With example records": set unless the settings hold something other than "1".
bool WantsExamples();
void StoreWantsExamples(bool wanted);
// The number of the pane that was showing; 1 without one.
int StoredPaneIndex();
void StorePaneIndex(int index);

}  // namespace jotlet
