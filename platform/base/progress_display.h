// Where a long operation on a file shows how far it is. The application gives one; without one it runs in silence.
#pragma once

#include <string>

namespace jotlet {

class ProgressDisplay {
public:
    virtual ~ProgressDisplay() = default;
    virtual void Open(const std::string& title, int steps) = 0;
    virtual void Step() = 0;
    virtual void Close() = 0;
    // A message that the user should read; also outside Open and Close.
    virtual void ShowText(const std::string& text) = 0;
};

}  // namespace jotlet
