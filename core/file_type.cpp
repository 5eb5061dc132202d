#include "core/file_type.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>

#include "platform/base/paths.h"
#include "platform/base/replace_file.h"
#include "platform/base/start_program.h"
#include "platform/desktop/resource_data.h"

namespace jotlet {
namespace {

namespace fs = std::filesystem;

std::string DataHome()
{
    const char* set = std::getenv("XDG_DATA_HOME");
    if (set && set[0] == '/')
        return set;
    const char* home = std::getenv("HOME");
    return home && home[0] == '/' ? std::string(home) + "/.local/share" : std::string{};
}

void ReplaceAll(std::string& text, std::string_view what, std::string_view with)
{
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + with.size()))
        text.replace(at, what.size(), with);
}

std::string Read(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bool Replace(const DesktopFile& file)
{
    std::error_code failed;
    fs::create_directories(fs::path(file.path).parent_path(), failed);
    FileReplacement fresh;
    return fresh.Start(file.path, kBesideSuffix, kUsualMode) &&
           FileWriteWhole(fresh.Handle(), std::as_bytes(std::span(file.contents)), 0) && fresh.Finish();
}

}  // namespace

std::string ExecWord(std::string_view path)
{
    std::string word = "\"";
    for (const char c : path) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') {
            // Once for the quotes, once for the value of the line.
            word += c == '\\' ? "\\\\\\" : "\\\\";
        }
        word += c;
        if (c == '%')
            word += c;
    }
    return word + "\"";
}

std::vector<DesktopFile> DesktopFiles(std::string_view dataHome, std::string_view program, std::string_view extension)
{
    std::string entry = DesktopResource("jotlet.desktop.in");
    std::string type = DesktopResource("jotlet-mime.xml");
    if (entry.empty() || type.empty())
        return {};
    const std::string home(dataHome);
    ReplaceAll(entry, "@EXEC@", ExecWord(program));
    ReplaceAll(entry, "@ICON@", "jotlet");
    ReplaceAll(type, "*.jot\"", "*." + std::string(extension) + "\"");
    const std::string icons = home + "/icons/hicolor/scalable/";
    return {{home + "/applications/jotlet.desktop", entry},
            {home + "/mime/packages/jotlet.xml", type},
            {icons + "apps/jotlet.svg", DesktopResource("icon_1000.svg")},
            {icons + "mimetypes/application-x-jotlet-notes.svg", DesktopResource("icon_1001.svg")}};
}

int WriteDesktopFiles(const std::vector<DesktopFile>& files)
{
    int written = 0;
    for (const DesktopFile& file : files) {
        if (!file.contents.empty() && Read(file.path) != file.contents)
            written += Replace(file) ? 1 : 0;
    }
    return written;
}

int RegisterFileType(std::string_view extension)
{
    const std::string home = DataHome();
    if (home.empty())
        return 1;
    if (WriteDesktopFiles(DesktopFiles(home, GetProgramPath(), extension)) > 0) {
        StartProgram({"update-mime-database", home + "/mime"});
        StartProgram({"update-desktop-database", home + "/applications"});
    }
    return 1;
}

}  // namespace jotlet
