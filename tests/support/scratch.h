// A folder for one test, and an environment variable for one test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace jotlet::test {

class ScratchFolder {
public:
    ScratchFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "jotlet-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) != nullptr)
            path = pattern;
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        if (!path.empty())
            std::filesystem::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& Path() const { return path; }
    std::string File(std::string_view name) const { return path + '/' + std::string(name); }

private:
    std::string path;
};

inline std::string ReadAllBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

inline void WriteAllBytes(const std::string& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Sets a variable, or takes it away, until the end of the test.
class ScopedVariable {
public:
    ScopedVariable(std::string name, std::optional<std::string> value) : name(std::move(name))
    {
        if (const char* present = std::getenv(this->name.c_str()))
            before = present;
        Apply(value);
    }
    ~ScopedVariable() { Apply(before); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

private:
    void Apply(const std::optional<std::string>& value) const
    {
        if (value)
            setenv(name.c_str(), value->c_str(), 1);
        else
            unsetenv(name.c_str());
    }

    std::string name;
    std::optional<std::string> before;
};

}  // namespace jotlet::test
