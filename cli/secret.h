// Where passwords come from: a file, the environment, standard input or a prompt; never the command line, which every
// user of the machine can read.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace jotlet {

// The first line of the file at `path`, without its line end. Nothing when it cannot be read.
std::optional<std::string> ReadPasswordFile(const std::string& path);

// Asks on the terminal without echo; `answer` stays empty where there is no terminal. False when the user gave up
// (Ctrl+C, or the end of the input).
bool PromptForPassword(const std::string& question, std::optional<std::string>& answer);

// One line of standard input without its line end. Where standard input is a terminal, `question` is shown and the
// typing is not. Nothing at the end of the input.
std::optional<std::string> ReadSecretLine(const std::string& question);

}  // namespace jotlet
