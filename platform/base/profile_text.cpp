// The text half of the settings files: finding and setting a key in a text, with no file in sight.
#include <optional>
#include <string>
#include <string_view>

#include "platform/base/profile.h"
#include "platform/base/text.h"

namespace jotlet {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Walks the lines of a text. A line's end may be LF, CR LF or CR.
class LineWalker {
public:
    explicit LineWalker(std::string_view text) : text(text)
    {
        if (text.starts_with(kByteOrderMark))
            next = kByteOrderMark.size();
    }

    bool Next()
    {
        if (next >= text.size())
            return false;
        begin = next;
        end = text.find_first_of("\r\n", begin);
        if (end == std::string_view::npos)
            end = next = text.size();
        else
            next = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
        return true;
    }

    std::string_view Line() const { return text.substr(begin, end - begin); }
    std::size_t Begin() const { return begin; }
    std::size_t End() const { return end; }         // behind the line's last byte, its line break not included
    std::size_t NextBegin() const { return next; }  // behind the line break

private:
    std::string_view text;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t next = 0;
};

// The name in a `[name]` line; nothing when the line is none.
std::optional<std::string_view> SectionName(std::string_view line)
{
    line = TrimBlanks(line);
    if (!line.starts_with('['))
        return std::nullopt;
    line.remove_prefix(1);
    return TrimBlanks(line.substr(0, line.find(']')));
}

bool LineHasKey(std::string_view line, std::string_view key)
{
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos || TrimBlanks(line).starts_with(';'))
        return false;
    return EqualsFolded(TrimBlanks(line.substr(0, equals)), key);
}

std::string_view Unquoted(std::string_view value)
{
    value = TrimBlanks(value.substr(0, value.find('\0')));
    const bool quoted = value.size() >= 2 && value.front() == value.back() && (value[0] == '"' || value[0] == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

// Where a key stands, or where it would go.
struct KeyPlace {
    bool found = false;
    bool sectionFound = false;
    std::size_t valueBegin = 0;  // behind the '='
    std::size_t valueEnd = 0;
    std::size_t insertAt = 0;  // behind the section's last line that isn't blank
};

KeyPlace FindKey(std::string_view text, std::string_view section, std::string_view key)
{
    KeyPlace place;
    bool inside = false;
    bool inFirst = false;  // new keys go to the first section of the name
    LineWalker walker(text);
    while (walker.Next()) {
        if (const auto name = SectionName(walker.Line())) {
            inside = EqualsFolded(*name, section);
            inFirst = inside && !place.sectionFound;
            place.sectionFound = place.sectionFound || inside;
        } else if (inside && LineHasKey(walker.Line(), key)) {
            place.found = true;
            place.valueBegin = walker.Begin() + walker.Line().find('=') + 1;
            place.valueEnd = walker.End();
            return place;
        }
        if (inFirst && !TrimBlanks(walker.Line()).empty())
            place.insertAt = walker.NextBegin();
    }
    return place;
}

std::string OneLine(std::string_view text)
{
    std::string line;
    for (const char c : text)
        if (c != '\r' && c != '\n' && c != '\0')
            line += c;
    return line;
}

std::string_view LineBreakOf(std::string_view text)
{
    const std::size_t first = text.find_first_of("\r\n");
    if (first == std::string_view::npos)
        return "\n";
    return text.substr(first, text.substr(first, 2) == "\r\n" ? 2 : 1);
}

}  // namespace

std::optional<std::string> FindProfileValue(std::string_view text, std::string_view section, std::string_view key)
{
    const KeyPlace place = FindKey(text, TrimBlanks(section), TrimBlanks(key));
    if (!place.found)
        return std::nullopt;
    return std::string(Unquoted(text.substr(place.valueBegin, place.valueEnd - place.valueBegin)));
}

std::string WithProfileValue(std::string_view text, std::string_view section, std::string_view key,
                             std::string_view value)
{
    const std::string sectionLine = OneLine(TrimBlanks(section));
    const std::string keyLine = OneLine(TrimBlanks(key));
    std::string written = OneLine(value);
    if (Unquoted(written) != written)
        written = '"' + written + '"';

    const KeyPlace place = FindKey(text, sectionLine, keyLine);
    std::string out(text);
    if (place.found)
        return out.replace(place.valueBegin, place.valueEnd - place.valueBegin, written);

    const std::string lineBreak(LineBreakOf(text));
    const auto isBreak = [](char c) { return c == '\r' || c == '\n'; };
    const std::size_t at = place.sectionFound ? place.insertAt : out.size();
    std::string added;
    if (at > 0 && !isBreak(out[at - 1]) && !(at == kByteOrderMark.size() && text.starts_with(kByteOrderMark)))
        added += lineBreak;
    if (!place.sectionFound)
        added += '[' + sectionLine + ']' + lineBreak;
    added += keyLine + '=' + written + lineBreak;
    return out.insert(at, added);
}

int TextToInt(std::string_view text)
{
    while (!text.empty() && (text[0] == ' ' || (text[0] >= '\t' && text[0] <= '\r')))
        text.remove_prefix(1);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    constexpr long long limit = 2147483648;
    long long number = 0;
    for (; !text.empty() && text[0] >= '0' && text[0] <= '9'; text.remove_prefix(1))
        if (number < limit)
            number = number * 10 + (text[0] - '0');
    number = number > limit ? limit : number;
    if (negative)
        return static_cast<int>(-number);
    return static_cast<int>(number == limit ? limit - 1 : number);
}

}  // namespace jotlet
