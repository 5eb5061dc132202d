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
        bytes.reserve(wanted + 2);  // and the line end that the reader may add
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

void AppendUtf8(std::string& out, std::uint32_t point)
{
    if (point < 0x80) {
        out += static_cast<char>(point);
    } else if (point < 0x800) {
        out += static_cast<char>(0xC0 | (point >> 6));
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else if (point < 0x10000) {
        out += static_cast<char>(0xE0 | (point >> 12));
        out += static_cast<char>(0x80 | (point >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (point >> 18));
        out += static_cast<char>(0x80 | (point >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (point >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (point & 0x3F));
    }
}

// `units` begins behind the byte order mark; `high` is the place of the high byte in a pair. A lone surrogate becomes
// U+FFFD, and so does an odd byte at the end.
std::string FromUtf16(std::string_view units, std::size_t high)
{
    constexpr std::uint32_t kReplacement = 0xFFFD;
    const auto unitAt = [&](std::size_t at) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(units[at + high]) << 8 |
                                          static_cast<unsigned char>(units[at + 1 - high]));
    };
    std::string out;
    out.reserve(units.size() / 2 + units.size() / 16);
    std::size_t at = 0;
    while (at + 1 < units.size()) {
        std::uint32_t point = unitAt(at);
        at += 2;
        if (point >= 0xD800 && point <= 0xDFFF) {
            const std::uint32_t next = point <= 0xDBFF && at + 1 < units.size() ? unitAt(at) : 0;
            if (next >= 0xDC00 && next <= 0xDFFF) {
                point = 0x10000 + ((point - 0xD800) << 10) + (next - 0xDC00);
                at += 2;
            } else {
                point = kReplacement;
            }
        }
        AppendUtf8(out, point);
    }
    if (at < units.size())
        AppendUtf8(out, kReplacement);
    return out;
}

std::string WithCrLf(std::string text)
{
    const auto count = static_cast<std::size_t>(std::ranges::count(text, '\n'));
    if (count == 0 || text.find("\r\n") != std::string::npos)
        return text;
    std::string out;
    out.reserve(text.size() + count + 2);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t lineEnd = std::min(text.find('\n', at), text.size());
        out.append(text, at, lineEnd - at);
        if (lineEnd < text.size())
            out += "\r\n";
        at = lineEnd + 1;
    }
    return out;
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
        bytes = FromUtf16(view.substr(2), 1);
    else if (view.starts_with("\xFE\xFF"))
        bytes = FromUtf16(view.substr(2), 0);
    return lineEnds == LineEnds::Auto ? WithCrLf(std::move(bytes)) : bytes;
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
