#include "cli/secret.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstddef>

namespace jotlet {
namespace {

// A password line is short. What is longer is cut here and matches nothing.
constexpr std::size_t kMaxLineBytes = 4096;
constexpr char kInterrupt = 3;  // Ctrl+C

// Byte by byte, so that the next line is still there for the next reader.
std::optional<std::string> ReadLine(int descriptor)
{
    std::string line;
    char c = 0;
    ssize_t got = 0;
    while ((got = read(descriptor, &c, 1)) == 1 && c != '\n') {
        // A zero byte would hide what stands behind it in the file's field.
        if (line.size() < kMaxLineBytes && c != '\0')
            line += c;
        if (c == kInterrupt)
            break;
    }
    if (got != 1 && line.empty())
        return std::nullopt;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    return line;
}

// The terminal shows no typing while this lives, and Ctrl+C ends the line instead of the program, so that the echo
// comes back in every case.
class EchoOff {
public:
    explicit EchoOff(int descriptor) : descriptor(descriptor), isChanged(tcgetattr(descriptor, &oldMode) == 0)
    {
        if (!isChanged)
            return;
        termios quiet = oldMode;
        quiet.c_lflag &= ~static_cast<tcflag_t>(ECHO | ISIG);
        quiet.c_cc[VEOL] = kInterrupt;
        tcsetattr(descriptor, TCSAFLUSH, &quiet);
    }
    ~EchoOff()
    {
        if (isChanged)
            tcsetattr(descriptor, TCSAFLUSH, &oldMode);
    }
    EchoOff(const EchoOff&) = delete;
    EchoOff& operator=(const EchoOff&) = delete;

private:
    int descriptor;
    termios oldMode{};
    bool isChanged;
};

void Show(int descriptor, const std::string& text)
{
    [[maybe_unused]] const ssize_t shown = write(descriptor, text.data(), text.size());
}

std::optional<std::string> AskOn(int descriptor, const std::string& question)
{
    const EchoOff echoOff(descriptor);
    Show(descriptor, question);
    std::optional<std::string> answer = ReadLine(descriptor);
    Show(descriptor, "\n");
    if (answer && answer->find(kInterrupt) != std::string::npos)
        return std::nullopt;
    return answer;
}

}  // namespace

std::optional<std::string> ReadPasswordFile(const std::string& path)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    char probe = 0;
    const bool isReadable = read(descriptor, &probe, 0) == 0;  // a directory opens but does not read
    std::optional<std::string> line;
    if (isReadable)
        line = ReadLine(descriptor).value_or("");
    close(descriptor);
    return line;
}

bool PromptForPassword(const std::string& question, std::optional<std::string>& answer)
{
    const int terminal = open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY);
    if (terminal < 0)
        return true;
    answer = AskOn(terminal, question);
    close(terminal);
    return answer.has_value();
}

std::optional<std::string> ReadSecretLine(const std::string& question)
{
    return isatty(STDIN_FILENO) ? AskOn(STDIN_FILENO, question) : ReadLine(STDIN_FILENO);
}

}  // namespace jotlet
