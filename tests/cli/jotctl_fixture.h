// Runs jotctl as a process on files of a temporary folder and looks at what it says and does.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace jotlet::test {

struct Outcome {
    int code = -1;  // the exit code; -1 when a signal ended the program
    std::string out;
    std::string err;

    nlohmann::json Json() const { return nlohmann::json::parse(out, nullptr, false); }
};

// For EXPECT_THAT(Run(...), ExitsWith(3)): shows what the program said when it is not so.
MATCHER_P(ExitsWith, code, "exits with " + std::to_string(code))
{
    *result_listener << "exit code " << arg.code << ", output: " << arg.out.substr(0, 2000)
                     << ", error: " << arg.err.substr(0, 2000);
    return arg.code == code;
}

// Fails with this code and tells it in one line that names `subject`.
MATCHER_P2(Complains, code, subject, "complains about " + std::string(subject))
{
    *result_listener << "exit code " << arg.code << ", output: " << arg.out.substr(0, 2000)
                     << ", error: " << arg.err.substr(0, 2000);
    return arg.code == code && arg.out.empty() && std::count(arg.err.begin(), arg.err.end(), '\n') == 1 &&
           arg.err.back() == '\n' && arg.err.starts_with("jotctl: ") && arg.err.find(subject) != std::string::npos;
}

using Arguments = std::vector<std::string>;

class JotctlTest : public testing::Test {
protected:
    JotctlTest();
    ~JotctlTest() override;

    // `environment` is added to a bare one, in which no terminal and no password is there.
    Outcome Run(const Arguments& arguments, const std::string& input = {},
                const std::map<std::string, std::string>& environment = {});
    // The same with a password in the environment.
    Outcome RunAs(const std::string& password, const Arguments& arguments);

    // Makes a file of notes without any, and gives its path.
    std::string NewFile(const std::string& name = "notes.jot");
    // Adds a note and gives its id. `more` holds further options.
    std::string Add(const std::string& title, const std::string& text = "text", const Arguments& more = {});
    // The titles that `list` or another command with --json shows, in its order.
    std::vector<std::string> Titles(Arguments arguments);
    std::vector<std::string> Titles() { return Titles({"list", file}); }
    nlohmann::json Info() { return Run({"info", file, "--json"}).Json(); }

    std::string Path(const std::string& name) const { return (folder / name).string(); }
    std::string Write(const std::string& name, const std::string& bytes);
    static std::string Read(const std::string& path);

    std::filesystem::path folder;
    std::string file;  // of the last NewFile
};

}  // namespace jotlet::test
