#include "cli/outcome.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/base/text.h"

namespace jotlet {
namespace {

// U+0080 to U+009F, in UTF-8 C2 80 to C2 9F, steer a terminal as escape sequences do.
bool IsHighControl(std::string_view text, std::size_t at)
{
    return text[at] == '\xC2' && at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0;
}

bool IsLowControl(char c)
{
    return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

}  // namespace

std::string PlainText(std::string_view text, Lines lines)
{
    const std::string shown = ToLf(DecodeForDisplay(text));
    std::string plain;
    plain.reserve(shown.size());
    for (std::size_t at = 0; at < shown.size(); ++at) {
        const char c = shown[at];
        if (c == '\n' || c == '\t') {
            plain += lines == Lines::Keep ? c : ' ';
        } else if (IsLowControl(c)) {
            plain += '?';
        } else if (IsHighControl(shown, at)) {
            plain += '?';
            ++at;
        } else {
            plain += c;
        }
    }
    return plain;
}

ExitCode Fail(ExitCode code, std::string_view subject, std::string_view message)
{
    std::string line = "jotctl: ";
    if (!subject.empty())
        line += PlainText(subject, Lines::Join) + ": ";
    line += PlainText(message, Lines::Join) + "\n";
    std::fwrite(line.data(), 1, line.size(), stderr);
    return code;
}

bool Print(std::string_view text)
{
    return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

ExitCode PrintResult(std::string_view text)
{
    // Who closes the pipe, as `head` does, has seen enough.
    if (Print(text) || errno == EPIPE)
        return ExitCode::Done;
    return Fail(ExitCode::Refused, "standard output", std::strerror(errno));
}

}  // namespace jotlet
