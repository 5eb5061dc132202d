#pragma once

#include <string>
#include <string_view>

#include "platform/base/file_error.h"
#include "platform/base/replace_file.h"

namespace jotlet {

// A text file being written in place of another. Until Finish has succeeded the old file stands as it was; without
// Finish nothing stays behind. A target that is no regular file (a pipe, a device) is written to at once.
//
// A target that anybody has open with our locks (a note file in use) is refused.
class ReportTarget {
public:
    // See Error for the outcome.
    explicit ReportTarget(const std::string& path);

    // False once anything has failed; later calls then do nothing.
    bool Append(std::string_view text);
    // The new text is on the disk, and then takes the old one's name.
    bool Finish();

    const FileError& Error() const { return error; }

private:
    bool StartFresh(unsigned mode);
    bool WriteOut();
    bool Fail(const char* operation, int systemError);

    std::string path;          // what the given path leads to
    FileHandleOwner old;       // keeps others away from the old file
    FileReplacement fresh;     // where the text goes, or
    FileHandleOwner straight;  // what is no regular file
    std::string pending;
    FileError error;
};

}  // namespace jotlet
