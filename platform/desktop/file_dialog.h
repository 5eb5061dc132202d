// The desktop's file and folder choosers.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/desktop/messages.h"

namespace jotlet {

enum class FileDialogMode { Open, Save };

struct FileDialogRequest {
    FileDialogMode mode = FileDialogMode::Open;
    std::string title = {};
    std::string filter = {};     // pairs "Jotlet file (*.jot)|*.jot||"; the last character separates
    std::string extension = {};  // added to a typed name that has none; "*.*": none
    std::string folder = {};     // where it starts; empty: the current folder
    std::string fileName = {};   // proposed name
};

// The chosen path, or nothing. Open offers existing files only; Save asks before it overwrites.
std::optional<std::string> RunFileDialog(WindowHandle owner, const FileDialogRequest& request);
std::optional<std::string> RunFolderDialog(WindowHandle owner, std::string_view title, std::string_view start);

// While one lives, no chooser is shown: each takes the next answer of `answer`.
using FileDialogAnswer = std::function<std::optional<std::string>(const FileDialogRequest&)>;
class ScopedFileAnswer {
public:
    explicit ScopedFileAnswer(FileDialogAnswer answer);
    ~ScopedFileAnswer();
};

}  // namespace jotlet
