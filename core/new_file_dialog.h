// NewFileDialog: "Create New File". Ends with 1 when the file can be made; makes nothing itself.
#pragma once

#include <string>

#include "toolkit/marlin_dialog.h"

namespace jotlet {

class NewFileDialog : public MarlinDialog {
public:
    explicit NewFileDialog(std::string extension);

    // After an end with 1: the full path of the file that the user asked for.
    const std::string& Path() const { return path; }

    MessageParam OnInitDialog(WndMessage& record) override;
    MessageParam OnCommand(WndMessage& record) override;

private:
    void Browse();
    void Accept();

    std::string extension;
    std::string path;
};

// `<folder>/<name>.<extension>`.
std::string NewFilePath(std::string folder, std::string_view name, std::string_view extension);
// `folder` as a full path, with a leading "~" for the user's home.
std::string AbsoluteFolder(const std::string& folder);
// Whether a file of this path could be made: makes it and removes it again. Only for a path where nothing is.
bool CanMakeFile(const std::string& path);

}  // namespace jotlet
