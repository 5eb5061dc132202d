#include "interchange/engine/import_text.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <new>
#include <utility>

#include "interchange/engine/delimited_reader.h"
#include "platform/base/file_system.h"
#include "platform/base/files.h"

namespace jotlet {

namespace {

constexpr std::size_t kChunk = std::size_t{1} << 20;

// Room to grow in the same bytes: other line ends, another encoding, the line end that the reader may add. What stays
// unused of it costs addresses and no memory; where even those are short, the growing copies.
void Reserve(std::string& bytes, std::size_t size)
{
    try {
        bytes.reserve(2 * size + 8);
    } catch (const std::bad_alloc&) {
        bytes.reserve(size + 2);
    }
}

ImportFileResult Read(const std::string& path, std::size_t limit, bool wholeFile, std::string& bytes)
{
    bytes.clear();
    ImportFileResult result;
    const auto fail = [&](ImportFileError error) {
        bytes = {};
        result.error = error;
        return result;
    };
    const auto refuse = [&](const char* operation, FileErrorKind kind, int systemError) {
        result.detail = {kind, operation, path, systemError};
        return fail(ImportFileError::System);
    };
    // Opened without our locks: a spreadsheet that holds its own on the file is no reason not to read it.
    const FileHandleOwner file(Files().Open(path, O_RDONLY, 0));
    FileIdentity identity;
    if (!file || Files().Identify(file.Get(), identity) != 0)
        return refuse("open", FileErrorKindOf(errno), errno);
    if (!identity.isRegular)
        return refuse("open", FileErrorKind::NotRegularFile, 0);
    const std::int64_t size = identity.size;
    if (wholeFile && static_cast<std::uint64_t>(size) > limit)
        return fail(ImportFileError::TooLarge);
    try {
        const std::size_t wanted = std::min(static_cast<std::size_t>(size), limit);
        Reserve(bytes, wanted);
        bytes.resize(wanted);
    } catch (const std::bad_alloc&) {
        return fail(ImportFileError::OutOfMemory);
    }
    // A file that grows meanwhile is taken as long as it was; one that shrinks, as short as it became.
    std::size_t done = 0;
    while (done < bytes.size()) {
        const std::int64_t got = FileRead(file.Get(), bytes.data() + done, std::min(kChunk, bytes.size() - done));
        if (got < 0)
            return refuse("read", FileErrorKindOf(errno), errno);
        if (got == 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    bytes.resize(done);
    return result;
}

// Writes the character at `at` and gives the place behind it.
std::size_t WriteUtf8(std::string& text, std::size_t at, std::uint32_t point)
{
    const auto put = [&](std::uint32_t byte) { text[at++] = static_cast<char>(byte); };
    if (point < 0x80) {
        put(point);
        return at;
    }
    if (point < 0x800) {
        put(0xC0 | point >> 6);
    } else {
        if (point < 0x10000) {
            put(0xE0 | point >> 12);
        } else {
            put(0xF0 | point >> 18);
            put(0x80 | (point >> 12 & 0x3F));
        }
        put(0x80 | (point >> 6 & 0x3F));
    }
    put(0x80 | (point & 0x3F));
    return at;
}

// Text behind its byte order mark becomes UTF-8 in the same bytes, so that a large file is held only once; `high` is
// the place of the high byte in a pair. A lone surrogate becomes U+FFFD, and so does an odd byte at the end.
void Utf16ToUtf8(std::string& text, std::size_t high)
{
    constexpr std::uint32_t kReplacement = 0xFFFD;
    // Two bytes become three at most. With the room for that in front, the writing never reaches what is still unread.
    const std::size_t room = text.size() / 2 + 4;
    text.insert(0, room, '\0');
    std::size_t at = room + 2;
    const auto unitAt = [&](std::size_t place) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(text[place + high]) << 8 |
                                          static_cast<unsigned char>(text[place + 1 - high]));
    };
    std::size_t end = 0;
    while (at + 1 < text.size()) {
        std::uint32_t point = unitAt(at);
        at += 2;
        if (point >= 0xD800 && point <= 0xDFFF) {
            const std::uint32_t next = point <= 0xDBFF && at + 1 < text.size() ? unitAt(at) : 0;
            if (next >= 0xDC00 && next <= 0xDFFF) {
                point = 0x10000 + ((point - 0xD800) << 10) + (next - 0xDC00);
                at += 2;
            } else {
                point = kReplacement;
            }
        }
        end = WriteUtf8(text, end, point);
    }
    if (at < text.size())
        end = WriteUtf8(text, end, kReplacement);
    text.resize(end);
}

// Whether the first line that ends outside quotes ends in LF alone. Quoted is what the reader takes as such.
bool EndsFirstLineWithLf(std::string_view text)
{
    const char separator = DelimitedReader::DetectSeparator(text);
    bool atFieldStart = true;
    bool isQuoted = false;
    bool isEven = false;  // the quotes of the field so far
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        const bool endsLine = c == '\n' || (c == '\r' && at + 1 < text.size() && text[at + 1] == '\n');
        if (atFieldStart) {
            isQuoted = c == '"';
            isEven = true;
        }
        if (isQuoted && isEven && !atFieldStart && text[at - 1] == '"' && (endsLine || c == separator))
            isQuoted = false;
        if (endsLine && !isQuoted)
            return c == '\n';
        if (c == '"')
            isEven = !isEven;
        atFieldStart = c == separator && !isQuoted;
    }
    return text.find("\r\n") == std::string_view::npos;
}

bool IsLoneLf(std::string_view text, std::size_t at)
{
    return text[at] == '\n' && (at == 0 || text[at - 1] != '\r');
}

// Grows in the same bytes, from the back.
void EndLinesWithCrLf(std::string& text)
{
    if (!EndsFirstLineWithLf(text))
        return;
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++at)
        count += IsLoneLf(text, at) ? 1 : 0;
    std::size_t from = text.size();
    text.resize(from + count);
    for (std::size_t to = text.size(); to > from;) {
        --from;
        const bool isLone = IsLoneLf(text, from);
        text[--to] = text[from];
        if (isLone)
            text[--to] = '\r';
    }
}

}  // namespace

ImportFileResult ReadImportFile(const std::string& path, std::string& bytes)
{
    return Read(path, kMaxImportBytes, true, bytes);
}

ImportFileResult ReadImportHead(const std::string& path, std::size_t limit, std::string& bytes)
{
    return Read(path, limit, false, bytes);
}

std::string PrepareImportText(std::string bytes, LineEnds lineEnds)
{
    const std::string_view view = bytes;
    if (view.starts_with("\xEF\xBB\xBF"))
        bytes.erase(0, 3);
    else if (view.starts_with("\xFF\xFE"))
        Utf16ToUtf8(bytes, 1);
    else if (view.starts_with("\xFE\xFF"))
        Utf16ToUtf8(bytes, 0);
    std::erase(bytes, '\0');
    if (lineEnds == LineEnds::Auto)
        EndLinesWithCrLf(bytes);
    return bytes;
}

ImportFileResult LoadImportText(DelimitedReader& reader, const std::string& path, LineEnds lineEnds)
{
    reader.SetText({});
    std::string bytes;
    ImportFileResult result = ReadImportFile(path, bytes);
    try {
        if (result)
            reader.SetText(PrepareImportText(std::move(bytes), lineEnds));
    } catch (const std::bad_alloc&) {
        reader.SetText({});
        result.error = ImportFileError::OutOfMemory;
    }
    return result;
}

}  // namespace jotlet
