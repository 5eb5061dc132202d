#include "interchange/engine/delimited_reader.h"

#include <algorithm>
#include <utility>

#include "interchange/engine/import_text.h"

namespace jotlet {

int DelimitedReader::LoadText(const std::string& path)
{
    SetText({});
    std::string bytes;
    if (!ReadImportFile(path, bytes))
        return 0;
    SetText(std::move(bytes));
    return 1;
}

void DelimitedReader::SetText(std::string newText)
{
    text = std::move(newText);
    const std::size_t size = text.size();
    if (size > 0 && text[size - 1] != '\n' && (size < 2 || text[size - 2] != '\r'))
        text += "\r\n";
    Reset();
}

void DelimitedReader::Reset()
{
    pos = recordStart = fieldStart = fieldLength = 0;
    length = std::min(text.find('\0'), text.size());
}

int DelimitedReader::NextRecord()
{
    recordStart = pos;
    for (;;) {
        const Token token = ReadToken();
        if (token.code == kNoMore)
            return 0;
        if (token.code == kLastFieldOfRecord) {
            ++pos;
            return 1;
        }
    }
}

int DelimitedReader::NextField()
{
    const Token token = ReadToken();
    if (token.code == kNoMore)
        return kNoMore;
    fieldStart = token.start;
    fieldLength = token.length;
    if (token.code == kLastFieldOfRecord)
        ++pos;
    return token.code;
}

std::size_t DelimitedReader::CountRecords()
{
    Reset();
    std::size_t count = 0;
    while (NextRecord() == 1)
        ++count;
    return count;
}

std::size_t DelimitedReader::LastWholeLine() const
{
    return static_cast<std::size_t>(std::ranges::count(Text().substr(0, recordStart), '\n'));
}

char DelimitedReader::DetectSeparator(std::string_view text)
{
    const std::size_t at = text.find_first_of(",\t");
    return at == std::string_view::npos ? ',' : text[at];
}

char DelimitedReader::DetectQualifier(std::string_view text)
{
    return text.starts_with('"') ? '"' : '\0';
}

// One field from `pos`. Behind a record's last field `pos` stands on the LF, for the caller to step over.
DelimitedReader::Token DelimitedReader::ReadToken()
{
    if (pos >= length)
        return {};
    const char quote = qualifier != 0 ? qualifier : '"';
    return text[pos] == quote ? ReadQuoted(quote) : ReadPlain();
}

DelimitedReader::Token DelimitedReader::ReadQuoted(char quote)
{
    const std::size_t start = pos + 1;
    bool even = false;  // the double quotes so far, the opening one counted
    for (std::size_t at = start; at < length; ++at) {
        const bool endsRecord = EndsRecordAt(at);
        if (even && text[at - 1] == quote && (text[at] == separator || endsRecord)) {
            pos = at + 1;
            return {start, at - start - 1, endsRecord ? kLastFieldOfRecord : kField};
        }
        if (text[at] == '"')
            even = !even;
    }
    return {};
}

DelimitedReader::Token DelimitedReader::ReadPlain()
{
    const std::size_t start = pos;
    for (std::size_t at = start; at < length; ++at) {
        const bool endsRecord = EndsRecordAt(at);
        if (text[at] == separator || endsRecord) {
            pos = at + 1;
            return {start, at - start, endsRecord ? kLastFieldOfRecord : kField};
        }
    }
    return {};
}

bool DelimitedReader::EndsRecordAt(std::size_t at) const
{
    return text[at] == '\r' && at + 1 < length && text[at + 1] == '\n';
}

}  // namespace jotlet
