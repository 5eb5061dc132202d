// An environment variable for one test.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace jotlet::test {

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
