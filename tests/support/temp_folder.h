// A folder of its own for a test, removed with everything in it.
#pragma once

#include <stdlib.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/paths.h"

namespace jotlet::test {

class TempFolder {
public:
    TempFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "jotlet-test-XXXXXX").string();
        path = mkdtemp(pattern.data()) ? pattern : std::string();
    }
    ~TempFolder()
    {
        std::error_code ignored;
        if (!path.empty())
            std::filesystem::remove_all(path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Path() const { return path; }
    std::string File(const std::string& name) const { return path + "/" + name; }
    std::size_t FileCount() const
    {
        return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(path), {}));
    }

private:
    std::string path;
};

inline std::string ReadAll(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

inline void WriteAll(const std::string& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

// Lets the program, as everything sees it, lie in `folder` and keep its data there too, so that no test writes into its
// user's own. SetProgramPath({}) ends that.
inline void UsePortableProgram(const std::string& folder, const std::string& name = "jotlet")
{
    WriteAll(folder + "/portable", "");
    SetProgramPath(folder + "/" + name);
}

}  // namespace jotlet::test
