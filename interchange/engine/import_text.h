#pragma once

#include <cstddef>
#include <string>

#include "platform/base/file_error.h"

// From the bytes of a file to text that DelimitedReader understands.

namespace jotlet {

enum class ImportFileError {
    None,
    System,    // the system refused: see `detail`
    TooLarge,  // beyond kMaxImportBytes
    OutOfMemory,
};

struct ImportFileResult {
    ImportFileError error = ImportFileError::None;
    FileError detail;

    explicit operator bool() const { return error == ImportFileError::None; }
};

inline constexpr std::size_t kMaxImportBytes = (std::size_t{1} << 31) - 16;

// The whole of a regular file. `bytes` is empty after a failure.
ImportFileResult ReadImportFile(const std::string& path, std::string& bytes);

// The first `limit` bytes of the file, or fewer when it is shorter; for a look at a file of any size.
ImportFileResult ReadImportHead(const std::string& path, std::size_t limit, std::string& bytes);

enum class LineEnds {
    Auto,  // where the first line ends in LF alone, each lone LF is turned into CR LF
    CrLf,  // line ends stay as they are
};

// Drops a UTF-8 byte order mark, turns UTF-16 with one (either byte order) into UTF-8, takes out zero bytes, behind
// which no text would be seen, and sees to the line ends. The first line is the one that ends outside quotes. All other
// bytes stay: those that are no UTF-8 are text of Windows-1252.
std::string PrepareImportText(std::string bytes, LineEnds lineEnds = LineEnds::Auto);

class DelimitedReader;

// ReadImportFile and PrepareImportText into the reader, whose text is empty after a failure.
ImportFileResult LoadImportText(DelimitedReader& reader, const std::string& path, LineEnds lineEnds = LineEnds::Auto);

}  // namespace jotlet
