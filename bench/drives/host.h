// One host at random work on a note file that others work on too, journaling what it does.
#pragma once

#include <cstdint>
#include <string>

namespace jotlet {

struct WorkOrder {
    std::string file;
    char host = 'a';  // 'a' to 'c'
    unsigned seed = 1;
    int changes = 0;  // to be asked for, over all its lives
    int seconds = 0;  // no further change is begun after that
    std::string journal;
    int kills = 0;       // how often the host is killed at a random moment and started again
    std::string jotctl;  // the program to be called for each change; empty: one copy that keeps the file open
};

// A file with the notes that hosts count up together. 0, or an exit code.
int MakeFile(const std::string& path);
// Does what `order` says. 0, or an exit code.
int Work(const WorkOrder& order);

}  // namespace jotlet
