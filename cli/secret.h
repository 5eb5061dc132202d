// Where passwords come from: a file, the environment, standard input or a prompt; never the command line, which every
// user of the machine can read.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace jotlet {

inline constexpr std::size_t kMaxPasswordBytes = 19;

// The first line of the file at `path`, without its line end. Nothing when it cannot be read.
std::optional<std::string> ReadPasswordFile(const std::string& path);

// Asks on the terminal without echo. Nothing when there is no terminal, or at the end of the input.
std::optional<std::string> PromptForPassword(const std::string& question);

// One line of standard input without its line end. Where standard input is a terminal, `question` is shown and the
// typing is not. Nothing at the end of the input.
std::optional<std::string> ReadSecretLine(const std::string& question);

}  // namespace jotlet
