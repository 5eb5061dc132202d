// Settings text of any bytes: reading and setting keys neither crashes nor touches what was not set.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/base/profile.h"
#include "platform/base/text.h"

namespace {

void Check(bool holds)
{
    if (!holds)
        std::abort();
}

// The bytes of `text` that are no line breaks and no NULs: what setting a key keeps of a value.
std::string AsOneLine(std::string_view text)
{
    std::string line;
    for (const char c : text)
        if (c != '\r' && c != '\n' && c != '\0')
            line += c;
    return line;
}

}  // namespace

// The input is a key's value up to the first 0x01 byte, and the file's text after it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace jotlet;
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t split = input.find('\x01');
    const std::string_view value = input.substr(0, split);
    const std::string_view text = split == std::string_view::npos ? input : input.substr(split + 1);

    const auto neighbour = FindProfileValue(text, "Preference", "Sound");
    const auto elsewhere = FindProfileValue(text, "Gateway", "server");
    const std::string changed = WithProfileValue(text, "Preference", "CurrSkin", value);
    Check(FindProfileValue(changed, "preference", "currskin") == AsOneLine(value));
    Check(FindProfileValue(changed, "Preference", "Sound") == neighbour);
    Check(FindProfileValue(changed, "Gateway", "server") == elsewhere);
    Check(WithProfileValue(changed, "Preference", "CurrSkin", value) == changed);

    Check(IsValidUtf8(DecodeForDisplay(text)));
    const std::string_view cut = CutText(text, size / 2);
    Check(text.starts_with(cut) && (!IsValidUtf8(text) || IsValidUtf8(cut)));
    Check(ToCrLf(ToLf(text)) == ToCrLf(text));
    TextToInt(value);
    return 0;
}
